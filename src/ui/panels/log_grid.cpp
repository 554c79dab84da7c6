#include "ui/panels/log_grid.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <algorithm>
#include <array>

#include "ui/controls/bind.h"
#include "ui/panels/log_cell_editor.h"
#include "ui/panels/log_grid_model.h"
#include "ui/window/look.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

/// Of the window's letters.
constexpr qreal letters_size = 0.85;
/// What a line needs beside its letters.
constexpr int line_gap = 4;

/// The decimal key of the numeric keypad, whatever sign the country has on it.
bool Is_Keypad_Decimal(const QKeyEvent& key) {
    return key.modifiers().testFlag(Qt::KeypadModifier) &&
           (key.key() == Qt::Key_Period || key.key() == Qt::Key_Comma);
}

}  // namespace

Log_Grid::Log_Grid(ucFlightLog& log, QWidget* parent)
    : QTableView(parent),
      m_log(log),
      m_model(new Log_Grid_Model(log, this)),
      m_menu(new QMenu(this)),
      m_hint(new QLabel(viewport())) {
    setModel(m_model);
    setItemDelegate(new Log_Cell_Editor(log, *m_model, this));
    setAccessibleName("Flight log");
    setFrameShape(QFrame::NoFrame);
    setWordWrap(false);
    // The columns' widths are meant for small letters.
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * letters_size);
    setFont(small);
    horizontalHeader()->setFont(small);
    verticalHeader()->setFont(small);
    // Tab leaves the grid; while a cell is edited it goes on to the next one.
    setTabKeyNavigation(false);
    setAlternatingRowColors(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                    QAbstractItemView::AnyKeyPressed);
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setWordWrap(true);
    m_hint->setEnabled(false);
    m_hint->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_hint->setText(
        "No flights yet. They come here when they are logged, or are typed into the "
        "line above.");
    Make_Headers();
    Make_Menu();
    Keep(*this, log.layout_changed.Connect([this] { Apply_Layout(); }));
    Keep(*this, log.table_changed.Connect([this] {
        Show_Current_Row();
        Show_Hint();
    }));
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this] { Show_Current_Row(); });
    Apply_Layout();
    setCurrentIndex(m_model->index(0, 0));
    Show_Hint();
}

void Log_Grid::Make_Headers() {
    QHeaderView& columns = *horizontalHeader();
    columns.setHighlightSections(false);
    columns.setSectionsClickable(true);
    columns.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&columns, &QHeaderView::sectionClicked, this,
            [this](int column) { m_log.Header_Click(static_cast<std::size_t>(column)); });
    connect(&columns, &QHeaderView::sectionResized, this,
            [this](int column, int, int pixels) { Keep_Width(column, pixels); });
    connect(&columns, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& place) { Open_Column_Menu(place); });
    QHeaderView& rows = *verticalHeader();
    rows.setHighlightSections(false);
    rows.setMinimumSectionSize(fontMetrics().height() + line_gap);
    rows.setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
    connect(&rows, &QHeaderView::sectionResized, this,
            [this](int, int, int pixels) { Keep_Row_Height(pixels); });
}

void Log_Grid::Make_Menu() {
    const std::array commands = {&m_log.mnuPopReport,   &m_log.mnuPopPlan,   &m_log.mnuPopCopy,
                                 &m_log.mnuPopTakeBack, &m_log.mnuPopDelete, &m_log.mnuPopExit};
    for (Menu_Command* command : commands) {
        if (command != commands.front())
            m_menu->addSeparator();
        Bind(*m_menu->addAction(QString()), *command);
    }
}

void Log_Grid::Apply_Layout() {
    const Grid_Layout& layout = m_log.Layout();
    m_applying = true;
    for (int column = 0; column < m_model->columnCount(); ++column) {
        const Grid_Column& shown = layout.columns.at(static_cast<std::size_t>(column));
        setColumnHidden(column, !shown.visible);
        if (shown.visible)
            setColumnWidth(column, Twips_To_Pixels(*this, shown.width_twips));
    }
    verticalHeader()->setDefaultSectionSize(std::max(
        verticalHeader()->minimumSectionSize(), Twips_To_Pixels(*this, layout.row_height_twips)));
    m_applying = false;
}

/// The pilot's width. A column that is left alone keeps its twips, whatever pixels they are here.
void Log_Grid::Keep_Width(int column, int pixels) {
    if (!m_applying && pixels > 0) {
        m_log.Layout().columns.at(static_cast<std::size_t>(column)).width_twips =
            Pixels_To_Twips(*this, pixels);
    }
}

/// All lines have one height: that of the line whose edge the pilot draws.
void Log_Grid::Keep_Row_Height(int pixels) {
    if (m_applying || pixels <= 0)
        return;
    m_log.Layout().row_height_twips = Pixels_To_Twips(*this, pixels);
    Apply_Layout();
}

/// Which columns the log itself has are shown; the pilot's and the airline's own go by their
/// captions.
void Log_Grid::Open_Column_Menu(const QPoint& place) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (std::size_t column = 0; column < log_column::first_optional; ++column) {
        Grid_Column& shown = m_log.Layout().columns.at(column);
        QAction* action =
            menu->addAction(To_Q(m_log.Layout().Distinct_Caption(column)).replace('&', "&&"));
        action->setCheckable(true);
        action->setChecked(shown.visible);
        connect(action, &QAction::toggled, this, [this, &shown](bool visible) {
            shown.visible = visible;
            Apply_Layout();
        });
    }
    menu->popup(horizontalHeader()->mapToGlobal(place));
}

void Log_Grid::Show_Current_Row() {
    m_log.Set_Current_Row(m_model->Row_Of(currentIndex()));
}

void Log_Grid::Show_Hint() {
    m_hint->setGeometry(viewport()->rect());
    m_hint->setVisible(m_log.Table().Row_Count() == 0);
}

void Log_Grid::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    Show_Hint();
}

/// F2 edits a cell here; it is a key of the window's everywhere else.
bool Log_Grid::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        if (key.key() == Qt::Key_F2 && key.modifiers() == Qt::NoModifier) {
            event->accept();
            return true;
        }
    }
    return QTableView::event(event);
}

void Log_Grid::keyPressEvent(QKeyEvent* event) {
    if (Is_Keypad_Decimal(*event) && state() != QAbstractItemView::EditingState) {
        m_log.Delete_LogEntry();
        return;
    }
    // What is the menu key's equal elsewhere begins no edit.
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
        const QPoint place = visualRect(currentIndex()).center();
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, place, viewport()->mapToGlobal(place));
        contextMenuEvent(&menu);
        return;
    }
    QTableView::keyPressEvent(event);
}

void Log_Grid::contextMenuEvent(QContextMenuEvent* event) {
    const bool by_mouse = event->reason() == QContextMenuEvent::Mouse;
    const QModelIndex under = by_mouse ? indexAt(event->pos()) : currentIndex();
    if (!under.isValid())
        return;
    setCurrentIndex(under);
    if (m_log.Prepare_Pop_Up()) {
        m_menu->popup(by_mouse ? event->globalPos()
                               : viewport()->mapToGlobal(visualRect(under).center()));
    }
}

}  // namespace norvane
