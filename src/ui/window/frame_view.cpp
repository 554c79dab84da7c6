#include "ui/window/frame_view.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <algorithm>

#include "ui/controls/bind.h"
#include "ui/controls/elided_label.h"
#include "ui/window/look.h"
#include "ui/window/pictures.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

constexpr int picture_twips = 390;
/// Between a picture and its title, where the frame of the hovered item runs.
constexpr int title_gap = 4;
/// Left and right of a title, so that a long one is broken before it meets the bar's edge.
constexpr int title_margin = 4;
constexpr int heading_margin = 10;
constexpr int title_layout = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;
/// How much of the fore colour marks the active item's ground, of 255.
constexpr int active_tint = 48;

/// An area of the model in the pixels of `widget`.
QRect Pixels(const QWidget& widget, const Frame_Area& area) {
    const auto scaled = [&widget](int twips) { return Twips_To_Pixels(widget, twips); };
    const QPoint corner(scaled(area.left), scaled(area.top));
    // Ends are scaled, not lengths, so that neighbours meet without a gap.
    const QPoint end(scaled(area.left + area.width), scaled(area.top + area.height));
    return {corner, end - QPoint(1, 1)};
}

/// Where the pilot was in the panel, else its first control: the keyboard goes with the panel.
void Focus_Within(QWidget& view) {
    QWidget* at = view.focusWidget();
    if (at != nullptr && !at->isEnabled())
        at = nullptr;
    for (QWidget* next = view.nextInFocusChain(); at == nullptr && next != &view;
         next = next->nextInFocusChain()) {
        if (view.isAncestorOf(next) && next->isEnabled() && next->isVisibleTo(&view) &&
            (next->focusPolicy() & Qt::TabFocus) != 0)
            at = next;
    }
    if (at != nullptr)
        at->setFocus(Qt::ShortcutFocusReason);
}

}  // namespace

Frame_Bar::Frame_Bar(ucAppFrame& frame, QWidget* parent) : QWidget(parent), m_frame(frame) {
    setMouseTracking(true);
    for (std::size_t i = 1; i <= frame.Items().size(); ++i)
        new Frame_Item(frame, static_cast<int>(i), this);
    Keep(*this, frame.changed.Connect([this] { update(); }));
}

void Frame_Bar::paintEvent(QPaintEvent* /*event*/) {
    QPainter(this).fillRect(rect(), Setting_Color(m_frame.BackColor()));
}

void Frame_Bar::Keep_Mouse(bool kept) {
    if (kept == m_mouse_kept)
        return;
    m_mouse_kept = kept;
    if (kept)
        grabMouse();
    else
        releaseMouse();
}

void Frame_Bar::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    Keep_Mouse(
        m_frame.Bar_Mouse_Move(Pixels_To_Twips(*this, at.x()), Pixels_To_Twips(*this, at.y())));
}

void Frame_Bar::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const QPoint at = event->position().toPoint();
    m_frame.Bar_Mouse_Up(Pixels_To_Twips(*this, at.x()), Pixels_To_Twips(*this, at.y()));
}

void Frame_Bar::leaveEvent(QEvent* /*event*/) {
    m_frame.Bar_Mouse_Leave();
    Keep_Mouse(false);
}

Frame_Item::Frame_Item(ucAppFrame& frame, int position, QWidget* parent)
    : QAbstractButton(parent), m_frame(frame), m_index(static_cast<std::size_t>(position) - 1) {
    setText(To_Q(Item().Title));
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
    // The bar knows which item the mouse is on.
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setGeometry(Pixels(*this, ucAppFrame::Row_Area(position)));
    const auto show = [this] {
        setChecked(m_frame.ActiveKey() == Item().Key);
        update();
    };
    Keep(*this, frame.changed.Connect(show));
    Keep(*this, frame.ItemSelected.Connect([show](const std::string&) { show(); }));
    show();
    connect(this, &QAbstractButton::clicked, this, [this, show] {
        m_frame.SetActivePanel(Item().Key);
        show();
    });
}

const clsAppFrameItem& Frame_Item::Item() const {
    return m_frame.Items().at(m_index);
}

const QPixmap& Frame_Item::Picture(int size, const QColor& ink) {
    const qreal ratio = devicePixelRatioF();
    const bool kept = m_picture_ink == ink && m_picture.devicePixelRatio() == ratio &&
                      m_picture.size() == QSize(size, size) * ratio;
    if (!kept) {
        m_picture = Item_Picture(Item().IconIndex, size, ink, ratio);
        m_picture_ink = ink;
    }
    return m_picture;
}

void Frame_Item::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter)
        click();
    else if (key == Qt::Key_Down || key == Qt::Key_Right)
        focusNextPrevChild(m_index + 1 < m_frame.Items().size());
    else if ((key == Qt::Key_Up || key == Qt::Key_Left) && m_index > 0)
        focusNextPrevChild(false);
    else
        QAbstractButton::keyPressEvent(event);
}

void Frame_Item::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QColor ink =
        Ink_On(Setting_Color(m_frame.BackColor()), {Setting_Color(m_frame.ForeColor())});
    if (isChecked()) {
        QColor tint = ink;
        tint.setAlpha(active_tint);
        painter.fillRect(rect(), tint);
    }
    const int size = Twips_To_Pixels(*this, picture_twips);
    const QRect room = rect().adjusted(title_margin, 0, -title_margin, 0);
    const QRect words = fontMetrics().boundingRect(room, title_layout, text());
    const int top = (height() - size - title_gap - words.height()) / 2;
    const QRect picture((width() - size) / 2, top, size, size);
    painter.drawPixmap(picture, Picture(size, ink));
    painter.setPen(ink);
    if (m_frame.Hovered() == static_cast<int>(m_index) + 1)
        painter.drawRect(picture.adjusted(-4, -3, 3, 2));
    painter.drawText(
        QRect(room.left(), picture.bottom() + 1 + title_gap, room.width(), words.height()),
        title_layout, text());
    if (hasFocus()) {
        QPen dotted(ink, 1, Qt::DotLine);
        painter.setPen(dotted);
        painter.drawRect(rect().adjusted(2, 2, -3, -3));
    }
}

Frame_View::Frame_View(ucAppFrame& frame, QWidget* parent)
    : QWidget(parent),
      m_frame(frame),
      m_bar(new Frame_Bar(frame, this)),
      m_heading(new QLabel(this)),
      m_notice(new Elided_Label(Qt::ElideRight, this)) {
    QFont bold = m_heading->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.2);
    m_heading->setFont(bold);
    m_heading->setContentsMargins(heading_margin, 0, heading_margin, 0);
    m_heading->setAutoFillBackground(true);
    m_heading->setBackgroundRole(QPalette::Button);
    Bind(*m_heading, frame.lblHeading);
    // Ink and ground changed places: it stands out in every style, light or dark.
    bold.setPointSizeF(font().pointSizeF());
    m_notice->setFont(bold);
    m_notice->setContentsMargins(heading_margin, 0, heading_margin, 0);
    m_notice->setAutoFillBackground(true);
    m_notice->setBackgroundRole(QPalette::WindowText);
    m_notice->setForegroundRole(QPalette::Window);
    Bind(*m_notice, frame.lblNotice);
    Keep(*this, frame.lblNotice.changed.Connect([this] { Lay_Out(); }));
    Keep(*this, frame.changed.Connect([this] { Lay_Out(); }));
}

void Frame_View::Put(Frame_Panel& panel, QWidget* view) {
    view->setParent(this);
    m_views.push_back(view);
    Follow(*view, panel, [this, view, &panel] {
        // The panel that is left goes first, and the keyboard with it.
        if (!panel.Visible())
            m_keyboard_goes_along = view->isAncestorOf(QApplication::focusWidget());
        view->setVisible(panel.Visible());
        if (panel.Visible() && m_keyboard_goes_along)
            Focus_Within(*view);
    });
    Lay_Out();
}

void Frame_View::Focus_Panel() {
    for (QWidget* view : m_views) {
        if (!view->isHidden())
            Focus_Within(*view);
    }
}

void Frame_View::Activate(int position) {
    if (position >= 1 && position <= static_cast<int>(m_frame.Items().size()))
        m_frame.SetActivePanel(m_frame.Items()[static_cast<std::size_t>(position) - 1].Key);
}

QSize Frame_View::minimumSizeHint() const {
    QSize panel(0, 0);
    for (const QWidget* view : m_views)
        panel = panel.expandedTo(view->minimumSizeHint());
    return panel + QSize(Twips_To_Pixels(*this, ucAppFrame::bar_width),
                         Twips_To_Pixels(*this, ucAppFrame::heading_height));
}

void Frame_View::resizeEvent(QResizeEvent* /*event*/) {
    Lay_Out();
}

void Frame_View::Lay_Out() {
    const int width_twips = Pixels_To_Twips(*this, width());
    const int height_twips = Pixels_To_Twips(*this, height());
    m_bar->setGeometry(Pixels(*this, ucAppFrame::Bar_Area(width_twips, height_twips)));
    const QRect heading = Pixels(*this, ucAppFrame::Heading_Area(width_twips, height_twips));
    m_heading->setGeometry(heading);
    QRect notice = heading;
    const int words = m_heading->sizeHint().width();
    notice.setLeft(
        std::max(heading.left() + words, heading.right() + 1 - m_notice->sizeHint().width()));
    m_notice->setGeometry(notice);
    for (QWidget* view : m_views)
        view->setGeometry(Pixels(*this, ucAppFrame::Panel_Area(width_twips, height_twips)));
}

}  // namespace norvane
