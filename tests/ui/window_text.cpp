// The windows as texts.

#include <fmt/format.h>

#include <QFontInfo>
#include <QHeaderView>
#include <QLineEdit>
#include <QStyle>

#include "common/file_writer.h"
#include "common/line_reader.h"
#include "ui/ui_world.h"

namespace norvane::test {
namespace {

std::string Quoted(const char* what, const QString& text) {
    return text.isEmpty() ? "" : fmt::format(" {}\"{}\"", what, text.simplified().toStdString());
}

std::string Content(const QWidget& widget) {
    std::string content;
    if (const auto* label = qobject_cast<const QLabel*>(&widget))
        content = Quoted("", label->text()) +
                  fmt::format(" {:x} {} {}", int(label->alignment()), int(label->textFormat()),
                              label->buddy() == nullptr ? "" : Name(*label->buddy()));
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        content = Quoted("", button->text()) + (button->isChecked() ? " on" : "");
    if (const auto* edit = qobject_cast<const QLineEdit*>(&widget))
        content = Quoted("", edit->text());
    const auto* header = qobject_cast<const QHeaderView*>(&widget);
    for (int i = 0; header != nullptr && i < header->count(); ++i) {
        for (const int role : {Qt::DisplayRole, Qt::TextAlignmentRole})
            content +=
                Quoted("", header->model()->headerData(i, header->orientation(), role).toString());
        content += fmt::format(" {}", header->sectionSize(i));
    }
    return content;
}

std::string Dress(const QWidget& widget) {
    const auto* around = widget.parentWidget();
    std::string dress;
    if (around != nullptr && widget.font() != around->font())
        dress += " font " + widget.font().toString().section(',', 0, 4).toStdString();
    if (widget.autoFillBackground())
        dress += ' ' + widget.palette().color(widget.backgroundRole()).name().toStdString();
    const auto* frame = qobject_cast<const QFrame*>(&widget);
    return dress + (frame == nullptr ? "" : fmt::format(" frame {:x}", frame->frameStyle()));
}

}  // namespace

void Set_Known_Look() {
    QFont font("DejaVu Sans", 9);
    font.setHintingPreference(QFont::PreferNoHinting);
    EXPECT_TRUE(QFontInfo(font).exactMatch()) << "the package fonts-dejavu-core is missing";
    // What messages are written in.
    QFont::insertSubstitution("Courier New", "DejaVu Sans Mono");
    QApplication::setStyle("Fusion");
    QApplication::setPalette(QApplication::style()->standardPalette());
    QApplication::setFont(font);
}

std::string Window_Text(const QWidget& window, int depth) {
    if (!window.isVisible())
        return "";
    // Where a window stands on the screen is its desktop's business.
    const QRect place(window.isWindow() ? QPoint() : window.pos(), window.size());
    std::string text(static_cast<std::size_t>(2 * depth), ' ');
    text += window.metaObject()->className();
    for (const int figure : {place.x(), place.y(), place.width(), place.height()})
        text += fmt::format(" {}", figure);
    text += Quoted("", window.windowTitle()) + Quoted("named ", window.accessibleName()) +
            Content(window) + Quoted("tip ", window.toolTip()) +
            (window.isEnabled() ? "" : " off") +
            ((window.focusPolicy() & Qt::TabFocus) != 0 ? " tab" : "") +
            (window.hasFocus() ? " here" : "") + Dress(window) + '\n';
    for (const auto* part : window.findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        text += part->isWindow() ? "" : Window_Text(*part, depth + 1);
    return text;
}

std::string Drawing_Text(const QImage& image, int square) {
    std::string text;
    for (int top = 0; top < image.height(); top += square, text += '\n') {
        for (int left = 0; left < image.width(); left += square) {
            const QImage part = image.copy(left, top, square, square);
            const QRgb color =
                part.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).pixel(0, 0);
            text += qAlpha(color) < 16 ? ' ' : static_cast<char>('A' + qGray(color) / 16);
        }
    }
    return text;
}

void Expect_Look(const std::string& name, const std::string& seen, int tolerance) {
    const auto alike = [tolerance](char one, char other) {
        return one == other || (std::min(one, other) >= 'A' && std::abs(one - other) <= tolerance);
    };
    const std::string golden = NORVANE_SOURCE_DIR "/tests/data/windows/" + name + ".txt";
    const std::string wanted = Read_File(golden);
    if (std::equal(wanted.begin(), wanted.end(), seen.begin(), seen.end(), alike))
        return;
    const std::string file = testing::TempDir() + name + ".txt";
    Write_File(file, seen);
    ADD_FAILURE() << "compare " << golden << " with " << file;
}

}  // namespace norvane::test
