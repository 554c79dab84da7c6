#pragma once
// The flight log on paper: what the grid shows, in its widths. Columns that do not fit go on on
// further pages, which repeat the date and follow at once, so that the pages of a flight lie
// together. Cells are read
// from the table while their page is painted; nothing is built beforehand.

#include <QFont>
#include <QPrinter>
#include <QString>
#include <functional>
#include <vector>

#include "flightlog/grid_layout.h"
#include "flightlog/log_table.h"

namespace norvane {

/// The pages that the pilot asked for in the dialog of `printer`, in their order, each as often as
/// it is to be painted. Printers make copies and turn the order by themselves; a file does not.
[[nodiscard]] std::vector<int> Pages_To_Paint(const QPrinter& printer, int pages);

class Log_Printer {
  public:
    /// Paints with the page, the resolution and the fonts of `printer`. Table and layout are read
    /// as they are then; both live longer than this.
    Log_Printer(const Log_Table& table, const Grid_Layout& layout, QString heading,
                QPrinter& printer);

    /// At least one, even without columns.
    [[nodiscard]] int Pages() const;
    /// Paints pages, numbered from 1, in this order, and asks `goes_on` before each one, with how
    /// many are painted. False when the printer cannot be painted on, or the printing was ended.
    bool Print(const std::vector<int>& pages, const std::function<bool(int)>& goes_on);

  private:
    struct Column {
        std::size_t index = 0;
        /// In dots of the printer, at most the page's.
        int width = 0;
    };

    void Place_Columns(const Grid_Layout& layout);
    void Paint_Page(QPainter& painter, int page) const;
    void Paint_Captions(QPainter& painter, const std::vector<Column>& columns, int top) const;
    void Paint_Row(QPainter& painter, const std::vector<Column>& columns, std::size_t row,
                   int top) const;
    void Paint_Text(QPainter& painter, const QRect& cell, const QString& text) const;

    const Log_Table& m_table;
    const Grid_Layout& m_layout;
    QString m_heading;
    QPrinter& m_printer;
    QFont m_letters;
    QFont m_bold;
    QSize m_page;
    int m_gap = 0;
    int m_line = 0;
    /// Lines of flights on a page.
    std::size_t m_lines_a_page = 1;
    std::size_t m_rows;
    /// The columns of the pages that stand beside each other.
    std::vector<std::vector<Column>> m_across;
};

}  // namespace norvane
