#pragma once
// A flight log in memory: rows of 53 text cells, kept as the lines they were read as, so that a log
// takes little more room than its file. Owned by the flight log panel; the grid shows it in place.

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "common/number.h"
#include "flightlog/log_columns.h"

namespace norvane {

/// Hours: the sums of those cells that are numbers.
struct Log_Totals {
    double block_hours = 0;
    double flight_hours = 0;
};

class Log_Table {
  public:
    /// Where a row's line stands in a content: fields with "|" between them, at most 53, no line
    /// end. Fields missing at the end are empty.
    struct Line_Span {
        std::size_t offset = 0;
        std::size_t length = 0;
    };

    Log_Table() = default;
    /// A table of the lines at `rows` of `content`, which it takes over.
    Log_Table(std::string content, std::vector<Line_Span> rows);

    [[nodiscard]] std::size_t Row_Count() const { return m_rows.size(); }
    /// The cell's text, valid until the table is written to. A row or column outside raises 9, here
    /// and below.
    [[nodiscard]] std::string_view Get(std::size_t row, std::size_t column) const;
    /// All of a row's cells, for those who need many of them; valid as long as those of `Get`.
    [[nodiscard]] std::array<std::string_view, log_column_count> Cells(std::size_t row) const;
    /// "|" and line breaks are cleaned out of the text.
    void Set(std::size_t row, std::size_t column, std::string_view text);
    /// Replaces all cells of a row by the fields of a line; what is past the 53rd is dropped.
    void Set_Line(std::size_t row, std::string_view line);
    /// New rows at the end are empty.
    void Resize(std::size_t rows);
    void Delete_Row(std::size_t row);
    void Clear();
    /// All 53 cells are empty.
    [[nodiscard]] bool Is_Blank(std::size_t row) const;
    /// Adds the row to `out` with all 53 fields, 52 separators, without line end.
    void Append_Line(std::size_t row, std::string& out) const;
    [[nodiscard]] std::string Line(std::size_t row) const;

    /// Ascending by the moments of one column, by character code of another where they are equal;
    /// what is no date comes last, equal rows keep their order. Dates are read by the short date
    /// pattern.
    void Sort_By_Date(std::size_t date_column, std::size_t text_column,
                      std::string_view short_date);
    /// Ascending by character code; equal rows keep their order.
    void Sort_By_Text(std::size_t column);
    [[nodiscard]] Log_Totals Totals(const Regional& regional) const;
    /// Bytes the table holds, for those who watch its size.
    [[nodiscard]] std::size_t Bytes_Held() const;

  private:
    [[nodiscard]] std::string_view Stored_Line(std::size_t row) const;
    template <class Key_Of>
    void Sort(const Key_Of& key_of);
    void Drop_Waste();

    std::string m_content;
    std::vector<Line_Span> m_rows;
    /// Bytes of m_content that no row uses any more.
    std::size_t m_waste = 0;
};

/// Calls `take` with the rows as they stand in a log file, in pieces of about a megabyte: every row
/// but blank ones, each with all 53 fields and CR LF.
void For_Each_Piece(const Log_Table& table, const std::function<void(std::string_view)>& take);

/// Mode 0: by date, then by time out; mode 1: by aircraft type. Another mode raises 5.
void Sort_XArray(Log_Table& table, int mode, std::string_view short_date);

/// "Total Block Time: 1,234.5            Total Flight Time: 1,100.0".
[[nodiscard]] std::string Totals_Caption(const Log_Totals& totals, const Regional& regional);

}  // namespace norvane
