#pragma once
// A table of which the pilot selects a row: what is drawn of a `Row_List`. A click or the arrow
// keys choose, a double click or Enter activates, letters lead to the row whose first column begins
// with them. The model lives longer than the view.

#include <QKeySequence>
#include <QTreeView>
#include <utility>
#include <vector>

#include "common/controls.h"

namespace norvane {

class Row_List_View : public QTreeView {
  public:
    /// Which column takes the room that the others leave, and the first one of those that hold
    /// figures, which stand at the right.
    struct Columns {
        int wide = 0;
        int first_figure = 1000;
    };

    /// `caption` is the table's name for those who cannot see it.
    Row_List_View(Row_List& list, const QString& caption, Columns columns, QWidget* parent);

    /// A key that clicks a link while the table has the keyboard.
    void Set_Key(QKeySequence::StandardKey key, Link& link) { m_keys.emplace_back(key, &link); }
    /// Gives the table the keyboard, and selects its first row where none is.
    void Enter_List();

    void keyboardSearch(const QString& search) override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void selectionChanged(const QItemSelection& now, const QItemSelection& before) override;
    bool viewportEvent(QEvent* event) override;

  private:
    class Rows;

    [[nodiscard]] int Row_Height() const;
    [[nodiscard]] QSize Smallest_Size() const;
    void Show_Rows();
    void Show_State();
    void Measure();
    void Fit_Columns();
    bool Show_Whole_Text(const QHelpEvent& event);

    Row_List& m_list;
    Columns m_columns;
    Rows* m_rows;
    std::vector<int> m_widths;
    std::vector<std::pair<QKeySequence::StandardKey, Link*>> m_keys;
    /// What changes is not the pilot's doing; so while the view is made.
    bool m_following = true;
};

}  // namespace norvane
