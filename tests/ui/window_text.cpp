#include "ui/window_text.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFontInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QStyle>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string_view>

#include "common/file_writer.h"
#include "common/line_reader.h"
#include "ui/controls/value_label.h"
#include "ui/ui_world.h"

namespace norvane::test {

namespace {

QString Quoted(const char* what, const QString& text) {
    return text.isEmpty() ? QString()
                          : QString(" %1\"%2\"").arg(what, QString(text).replace('\n', ' '));
}

QString Place(const QRect& place) {
    return QString(" %1,%2 %3x%4")
        .arg(place.x())
        .arg(place.y())
        .arg(place.width())
        .arg(place.height());
}

QString Said_By(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        const QString side = Qt::Alignment(label->alignment()) == (Qt::AlignLeft | Qt::AlignVCenter)
                                 ? QString()
                                 : QString(" side %1").arg(int(label->alignment()), 0, 16);
        return Quoted("", label->text()) + side +
               (label->textFormat() == Qt::PlainText ? " plain" : "") +
               (label->wordWrap() ? " wraps" : "") +
               Quoted("for ", label->buddy() == nullptr ? QString() : To_Q(Name(*label->buddy())));
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        return Quoted("", button->text()) + (button->isChecked() ? " on" : "");
    if (const auto* edit = qobject_cast<const QLineEdit*>(&widget))
        return Quoted("", edit->text()) + (edit->isReadOnly() ? " fixed" : "");
    if (const auto* list = qobject_cast<const QComboBox*>(&widget))
        return Quoted("", list->currentText());
    const auto* header = qobject_cast<const QHeaderView*>(&widget);
    QString sections;
    for (int i = 0; header != nullptr && i < header->count() && !header->isHidden(); ++i) {
        const auto of = [&](int role) {
            return header->model()->headerData(i, header->orientation(), role);
        };
        if (!header->isSectionHidden(i))
            sections +=
                QString(" [%1 %2 %3]")
                    .arg(of(Qt::DisplayRole).toString(), of(Qt::TextAlignmentRole).toString())
                    .arg(header->sectionSize(i));
    }
    return sections;
}

QString Line_Of(const QWidget& widget) {
    const auto* of_window = widget.parentWidget();
    QString line = widget.metaObject()->className() + Place(widget.geometry());
    if (of_window == nullptr || widget.isWindow())
        line = QString("%1 %2x%3")
                   .arg(widget.metaObject()->className())
                   .arg(widget.width())
                   .arg(widget.height()) +
               Quoted("", widget.windowTitle());
    line += Quoted("named ", widget.accessibleName()) + Said_By(widget) +
            Quoted("tip ", widget.toolTip());
    line += widget.isEnabled() ? "" : " off";
    line += (widget.focusPolicy() & Qt::TabFocus) != 0 ? " tab" : "";
    line += widget.hasFocus() ? " here" : "";
    if (of_window != nullptr && widget.font() != of_window->font())
        line += " font " + widget.font().toString().section(',', 0, 4);
    if (of_window != nullptr && widget.backgroundRole() != of_window->backgroundRole())
        line += QString(" ground %1").arg(widget.backgroundRole());
    if (widget.autoFillBackground())
        line += " filled " + widget.palette().color(widget.backgroundRole()).name();
    if (const auto* view = qobject_cast<const QAbstractItemView*>(&widget))
        line += QString(" choice %1%2%3")
                    .arg(view->selectionMode())
                    .arg(view->selectionBehavior())
                    .arg(view->alternatingRowColors() ? " striped" : "");
    if (const auto* frame = qobject_cast<const QFrame*>(&widget);
        frame != nullptr && frame->frameShape() != QFrame::NoFrame)
        line += QString(" frame %1").arg(frame->frameStyle(), 0, 16);
    return line;
}

void Add(const QWidget& widget, int depth, QString& text) {
    if (!widget.isVisible())
        return;
    text += QString(2 * depth, ' ') + Line_Of(widget) + '\n';
    for (const QObject* child : widget.children()) {
        if (const auto* part = qobject_cast<const QWidget*>(child);
            part != nullptr && !part->isWindow())
            Add(*part, depth + 1, text);
    }
}

}  // namespace

Known_Look::Known_Look() : m_font(QApplication::font()) {
    QFont font("DejaVu Sans", 9);
    font.setHintingPreference(QFont::PreferNoHinting);
    EXPECT_TRUE(QFontInfo(font).exactMatch()) << "the package fonts-dejavu-core is missing";
    // What messages are written in.
    QFont::insertSubstitution("Courier New", "DejaVu Sans Mono");
    QApplication::setStyle("Fusion");
    QApplication::setPalette(QApplication::style()->standardPalette());
    QApplication::setFont(font);
}

Known_Look::~Known_Look() {
    QApplication::setFont(m_font);
}

std::string Window_Text(const QWidget& window) {
    QString text;
    Add(window, 0, text);
    return text.toStdString();
}

std::string Drawing_Text(const QImage& image, int square) {
    std::string text;
    for (int top = 0; top < image.height(); top += square, text += '\n') {
        for (int left = 0; left < image.width(); left += square) {
            const QImage part = image.copy(left, top, square, square)
                                    .scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            const QRgb color = part.pixel(0, 0);
            text += qAlpha(color) < 16 ? ' ' : "0123456789abcdef"[qGray(color) / 16];
        }
    }
    return text;
}

namespace {

void Expect_Golden(const std::string& name, const std::string& seen,
                   const std::function<bool(char, char)>& alike) {
    const std::string golden = NORVANE_SOURCE_DIR "/tests/data/windows/" + name + ".txt";
    const std::string wanted = std::filesystem::exists(golden) ? Read_File(golden) : "";
    if (std::equal(wanted.begin(), wanted.end(), seen.begin(), seen.end(), alike))
        return;
    const auto file = std::filesystem::path(testing::TempDir()) / (name + ".txt");
    Write_File(file, seen);
    ADD_FAILURE() << "compare " << golden << " with " << file;
}

}  // namespace

void Expect_Look(const std::string& name, const std::string& seen) {
    Expect_Golden(name, seen, std::equal_to<>());
}

void Expect_Drawing(const std::string& name, const std::string& seen) {
    const std::string_view steps = "0123456789abcdef";
    Expect_Golden(name, seen, [steps](char one, char other) {
        const auto a = static_cast<int>(steps.find(one));
        const auto b = static_cast<int>(steps.find(other));
        return one == other || (a >= 0 && b >= 0 && std::abs(a - b) == 1);
    });
}

}  // namespace norvane::test
