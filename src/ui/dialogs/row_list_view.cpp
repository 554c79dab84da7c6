#include "ui/dialogs/row_list_view.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QToolTip>
#include <algorithm>

#include "ui/controls/bind.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

/// Between the texts of two columns.
constexpr int column_gap = 16;
/// Above and below the text of a row.
constexpr int row_margin = 3;
constexpr int fewest_rows = 6;
/// Columns are as wide as these many first rows need.
constexpr std::size_t measured_rows = 500;

}  // namespace

/// The rows as Qt asks for them; they stay where they are.
class Row_List_View::Rows : public QAbstractTableModel {
  public:
    Rows(const Row_List& list, Columns columns, Row_List_View* view)
        : QAbstractTableModel(view), m_view(*view), m_list(list), m_columns(columns) {}

    /// The rows are other ones.
    void Reset() {
        beginResetModel();
        endResetModel();
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_list.Rows().size());
    }
    [[nodiscard]] int columnCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_list.Captions().size());
    }
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
        const auto row = static_cast<std::size_t>(index.row());
        if (role == Qt::TextAlignmentRole)
            return Alignment(index.column());
        if (role == Qt::SizeHintRole)
            return QSize(0, m_view.Row_Height());
        if (role != Qt::DisplayRole || row >= m_list.Rows().size())
            return {};
        return To_Q(m_list.Rows()[row].at(static_cast<std::size_t>(index.column())));
    }
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override {
        if (orientation != Qt::Horizontal)
            return {};
        if (role == Qt::TextAlignmentRole)
            return Alignment(section);
        if (role != Qt::DisplayRole)
            return {};
        return To_Q(m_list.Captions().at(static_cast<std::size_t>(section)));
    }

  private:
    [[nodiscard]] QVariant Alignment(int column) const {
        const Qt::Alignment side =
            column >= m_columns.first_figure ? Qt::AlignRight : Qt::AlignLeft;
        return static_cast<int>(side | Qt::AlignVCenter);
    }

    const Row_List_View& m_view;
    const Row_List& m_list;
    Columns m_columns;
};

Row_List_View::Row_List_View(Row_List& list, const QString& caption, Columns columns,
                             QWidget* parent)
    : QTreeView(parent),
      m_list(list),
      m_columns(columns),
      m_rows(new Rows(list, columns, this)),
      m_widths(list.Captions().size()) {
    setAccessibleName(caption);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setModel(m_rows);
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    header()->setSectionsClickable(false);
    header()->setHighlightSections(false);
    header()->setFixedHeight(Row_Height());
    header()->setSectionResizeMode(QHeaderView::Fixed);
    header()->setSectionResizeMode(columns.wide, QHeaderView::Stretch);
    Keep(*this, list.rows_changed.Connect([this] { Show_Rows(); }));
    Show_Rows();
    Follow(*this, list, [this] { Show_State(); });
    setMinimumSize(Smallest_Size());
    m_following = false;
}

int Row_List_View::Row_Height() const {
    return fontMetrics().height() + 2 * row_margin;
}

/// Every caption can be read, and some rows.
QSize Row_List_View::Smallest_Size() const {
    const int count = header()->count();
    int widest = 0;
    for (int column = 0; column < count; ++column)
        widest = std::max(widest, header()->sectionSizeHint(column));
    return {count * widest + verticalScrollBar()->sizeHint().width() + 2 * frameWidth(),
            (fewest_rows + 1) * Row_Height() + 2 * frameWidth()};
}

void Row_List_View::Show_Rows() {
    {
        const QScopedValueRollback following(m_following, true);
        m_rows->Reset();
        if (m_list.Selected() < 0)
            scrollToTop();
    }
    Show_State();
    Measure();
    Fit_Columns();
}

void Row_List_View::Show_State() {
    const QScopedValueRollback following(m_following, true);
    setEnabled(m_list.Enabled());
    setVisible(m_list.Visible());
    const QModelIndexList selected = selectionModel()->selectedRows();
    const int shown = selected.isEmpty() ? -1 : selected.constFirst().row();
    if (shown == m_list.Selected())
        return;
    if (m_list.Selected() < 0)
        clearSelection();
    else
        setCurrentIndex(m_rows->index(m_list.Selected(), 0));
}

/// Columns never become narrower again: a search that finds less must not make them jump.
void Row_List_View::Measure() {
    const QFontMetrics metrics = fontMetrics();
    const std::size_t count = std::min(m_list.Rows().size(), measured_rows);
    for (std::size_t column = 0; column < m_widths.size(); ++column) {
        if (static_cast<int>(column) == m_columns.wide)
            continue;
        int& width = m_widths[column];
        width = std::max(width, header()->sectionSizeHint(static_cast<int>(column)));
        for (std::size_t row = 0; row < count; ++row) {
            const QString text = To_Q(m_list.Rows()[row][column]);
            width = std::max(width, metrics.horizontalAdvance(text) + column_gap);
        }
    }
}

void Row_List_View::Fit_Columns() {
    const int count = static_cast<int>(m_widths.size());
    for (int column = 0; column < count; ++column) {
        if (column != m_columns.wide) {
            const int wanted = m_widths[static_cast<std::size_t>(column)];
            header()->resizeSection(column, std::min(wanted, viewport()->width() / count));
        }
    }
}

void Row_List_View::resizeEvent(QResizeEvent* event) {
    Fit_Columns();
    QTreeView::resizeEvent(event);
}

void Row_List_View::Enter_List() {
    setFocus();
    if (m_list.Selected() < 0 && !m_list.Rows().empty())
        setCurrentIndex(m_rows->index(0, 0));
}

void Row_List_View::selectionChanged(const QItemSelection& now, const QItemSelection& before) {
    QTreeView::selectionChanged(now, before);
    if (m_following)
        return;
    const QModelIndexList rows = selectionModel()->selectedRows();
    m_list.Choose(rows.isEmpty() ? -1 : rows.constFirst().row());
}

void Row_List_View::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    for (const auto& [sequence, link] : m_keys) {
        if (event->matches(sequence)) {
            link->Click();
            return;
        }
    }
    if (key == Qt::Key_Return || key == Qt::Key_Enter)
        m_list.Activate();
    else if ((key == Qt::Key_Down || key == Qt::Key_Up) && m_list.Selected() < 0 &&
             currentIndex().isValid())
        // The row with the keyboard, which nobody has selected yet, comes first.
        setCurrentIndex(currentIndex());
    else
        QTreeView::keyPressEvent(event);
}

void Row_List_View::mouseDoubleClickEvent(QMouseEvent* event) {
    QTreeView::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton && indexAt(event->pos()).isValid())
        m_list.Activate();
}

void Row_List_View::keyboardSearch(const QString& search) {
    // A click may have left the keyboard in another column.
    selectionModel()->setCurrentIndex(currentIndex().siblingAtColumn(0),
                                      QItemSelectionModel::NoUpdate);
    QTreeView::keyboardSearch(search);
}

bool Row_List_View::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip)
        return Show_Whole_Text(static_cast<const QHelpEvent&>(*event));
    return QTreeView::viewportEvent(event);
}

/// A text that is cut off is shown in full.
bool Row_List_View::Show_Whole_Text(const QHelpEvent& event) {
    const QModelIndex index = indexAt(event.pos());
    const QString text = index.data().toString();
    const bool is_cut =
        fontMetrics().horizontalAdvance(text) + column_gap / 2 > visualRect(index).width();
    if (is_cut)
        QToolTip::showText(event.globalPos(), Qt::convertFromPlainText(text), this);
    else
        QToolTip::hideText();
    return true;
}

}  // namespace norvane
