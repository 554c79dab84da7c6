// The windows as texts.

#include <fmt/format.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QFontInfo>
#include <QHeaderView>
#include <QLayout>
#include <QLineEdit>
#include <QStyle>

#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/text.h"
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
    const auto* list = qobject_cast<const QComboBox*>(&widget);
    for (int i = 0; list != nullptr && i < std::min(list->count(), 12); ++i)
        content += Quoted("", list->itemText(i));
    const auto* header = qobject_cast<const QHeaderView*>(&widget);
    for (int i = 0; header != nullptr && i < header->count(); ++i) {
        for (const int role : {Qt::DisplayRole, Qt::TextAlignmentRole})
            content +=
                Quoted("", header->model()->headerData(i, header->orientation(), role).toString());
        content += fmt::format(" {}", header->sectionSize(i));
    }
    return content;
}

/// What a kind of widget knows of itself, but for what it is as a rule.
std::string Properties(const QWidget& widget) {
    constexpr std::string_view names =
        "readOnly maxLength cursorPosition selectedText placeholderText echoMode checkable "
        "autoDefault default editable insertPolicy sizeAdjustPolicy minimumContentsLength "
        "maxVisibleItems currentIndex currentText modelColumn plainText wordWrap indent "
        "margin openLinks openExternalLinks textInteractionFlags selectionMode "
        "selectionBehavior editTriggers alternatingRowColors showGrid sortingEnabled "
        "horizontalScrollBarPolicy verticalScrollBarPolicy widgetResizable tabKeyNavigation "
        "tabChangesFocus minimum maximum value singleStep pageStep shortcut whatsThis "
        "accessibleDescription contextMenuPolicy focusPolicy inputMethodHints lineWrapMode "
        "undoRedoEnabled uniformRowHeights rootIsDecorated allColumnsShowFocus textElideMode "
        "mouseTracking acceptDrops styleSheet modal sizeGripEnabled minimumWidth "
        "minimumHeight maximumWidth maximumHeight cornerButtonEnabled stretchLastSection";
    std::string text;
    for (const std::string& name : Split(names, ' ')) {
        const std::string value =
            widget.property(name.c_str()).toString().simplified().toStdString();
        if (!Contains("  0 false 16777215 32767 Normal NoFocus ImhNone DefaultContextMenu ",
                      " " + value + " "))
            text += fmt::format(" {}={}", name, value);
    }
    const QSizePolicy policy = widget.sizePolicy();
    text += fmt::format(" grows {}/{}/{}/{}", int(policy.horizontalPolicy()),
                        int(policy.verticalPolicy()), policy.horizontalStretch(),
                        policy.verticalStretch());
    for (const auto attribute : {Qt::WA_TransparentForMouseEvents, Qt::WA_DeleteOnClose,
                                 Qt::WA_NoMousePropagation, Qt::WA_StyledBackground})
        text += widget.testAttribute(attribute) ? fmt::format(" attribute {}", int(attribute)) : "";
    if (widget.testAttribute(Qt::WA_SetCursor))
        text += fmt::format(" cursor {}", int(widget.cursor().shape()));
    if (const QLayout* layout = widget.layout()) {
        const QMargins room = layout->contentsMargins();
        text += fmt::format(" room {} {} {} {} {}", room.left(), room.top(), room.right(),
                            room.bottom(), layout->spacing());
    }
    return text;
}

/// The cells of what the pilot sees of a list, a line for each row: text, tool tip, alignment,
/// colours, what may be done with it.
std::string Cells(const QWidget& widget, const std::string& blanks) {
    const auto* view = qobject_cast<const QAbstractItemView*>(&widget);
    if (view == nullptr || view->model() == nullptr)
        return "";
    std::string text;
    for (int row = 0; row < std::min(view->model()->rowCount(), 12); ++row) {
        text += blanks + " |";
        for (int column = 0; column < view->model()->columnCount(); ++column) {
            const QModelIndex cell = view->model()->index(row, column);
            for (const int role :
                 {Qt::DisplayRole, Qt::EditRole, Qt::ToolTipRole, Qt::TextAlignmentRole,
                  Qt::CheckStateRole, Qt::AccessibleTextRole})
                text += Quoted("", cell.data(role).toString());
            for (const int role : {Qt::ForegroundRole, Qt::BackgroundRole})
                text += cell.data(role).isValid()
                            ? " " + cell.data(role).value<QBrush>().color().name().toStdString()
                            : "";
            text += fmt::format(" {:x}|", int(cell.flags()));
        }
        text += '\n';
    }
    return text;
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
            (window.hasFocus() ? " here" : "") + Dress(window) + Properties(window) + '\n' +
            Cells(window, std::string(static_cast<std::size_t>(2 * depth), ' '));
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
