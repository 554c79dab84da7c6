#include "flightlog/log_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <unordered_map>

#include "common/date_time.h"
#include "common/run_error.h"
#include "common/text.h"
#include "flightlog/log_line.h"

namespace norvane {

namespace {

// Less waste than this is never worth moving the content.
constexpr std::size_t waste_tolerated = std::size_t{1} << 20;
// How far ahead the next rows' lines are fetched: after a sort they lie anywhere in the content.
constexpr std::size_t rows_ahead = 4;
constexpr std::size_t piece_size = std::size_t{1} << 20;

void Check_Column(std::size_t column) {
    if (column >= log_column_count) {
        throw Run_Error(error_number::subscript_out_of_range,
                        fmt::format("Log column {} of {}", column, log_column_count));
    }
}

/// The first bytes of a text as a number that compares as they do.
std::uint64_t First_Bytes(std::string_view text) {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < sizeof number; ++i)
        number = number << 8U | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
    return number;
}

struct Sorted_Row {
    std::int64_t moment = 0;
    /// Settles nearly every comparison without a look at the text, which is far away in memory.
    std::uint64_t first_bytes = 0;
    std::string_view text;
    std::size_t row = 0;
};

bool Comes_Before(const Sorted_Row& a, const Sorted_Row& b) {
    if (a.moment != b.moment)
        return a.moment < b.moment;
    if (a.first_bytes != b.first_bytes)
        return a.first_bytes < b.first_bytes;
    return a.text < b.text;
}

/// Moments of date texts. A log holds many flights of one day, so each text is read once.
class Moments {
  public:
    explicit Moments(std::string_view short_date) : m_short_date(short_date) {}
    std::int64_t Of(std::string_view text) {
        const auto [place, is_new] = m_known.try_emplace(std::string(text), 0);
        if (is_new) {
            const auto moment = Parse_Date_Time(text, m_short_date);
            place->second = moment ? Seconds_Of(*moment) : std::numeric_limits<std::int64_t>::max();
        }
        return place->second;
    }

  private:
    std::string_view m_short_date;
    std::unordered_map<std::string, std::int64_t> m_known;
};

}  // namespace

Log_Table::Log_Table(std::string content, std::vector<Line_Span> rows)
    : m_content(std::move(content)), m_rows(std::move(rows)) {}

std::string_view Log_Table::Stored_Line(std::size_t row) const {
    if (row >= m_rows.size()) {
        throw Run_Error(error_number::subscript_out_of_range,
                        fmt::format("Log row {} of {}", row, m_rows.size()));
    }
    return std::string_view(m_content).substr(m_rows[row].offset, m_rows[row].length);
}

std::string_view Log_Table::Get(std::size_t row, std::size_t column) const {
    Check_Column(column);
    return Field_Of(Stored_Line(row), column);
}

std::array<std::string_view, log_column_count> Log_Table::Cells(std::size_t row) const {
    std::array<std::string_view, log_column_count> cells;
    std::string_view rest = Stored_Line(row);
    for (std::string_view& cell : cells) {
        cell = Field_At(rest, 0);
        if (cell.size() == rest.size())
            break;
        rest.remove_prefix(cell.size() + 1);
    }
    return cells;
}

void Log_Table::Set(std::size_t row, std::size_t column, std::string_view text) {
    Check_Column(column);
    std::string line(Stored_Line(row));
    std::size_t begin = Begin_Of_Field(line, column);
    if (begin == std::string_view::npos) {
        line.append(column - Separators_In(line), field_separator);
        begin = line.size();
    }
    line.replace(begin, Field_At(line, begin).size(), Clean_Field(text, Field_Lines::one));
    Set_Line(row, line);
}

void Log_Table::Set_Line(std::size_t row, std::string_view line) {
    m_waste += Stored_Line(row).size();
    // The line may be a view into the content that is about to move.
    const std::string kept(First_Fields(line));
    m_rows[row] = {m_content.size(), kept.size()};
    m_content += kept;
    Drop_Waste();
}

void Log_Table::Resize(std::size_t rows) {
    for (std::size_t row = rows; row < m_rows.size(); ++row)
        m_waste += m_rows[row].length;
    m_rows.resize(rows);
    Drop_Waste();
}

void Log_Table::Delete_Row(std::size_t row) {
    m_waste += Stored_Line(row).size();
    m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(row));
    Drop_Waste();
}

void Log_Table::Clear() {
    *this = Log_Table();
}

bool Log_Table::Is_Blank(std::size_t row) const {
    return Stored_Line(row).find_first_not_of(field_separator) == std::string_view::npos;
}

void Log_Table::Append_Line(std::size_t row, std::string& out) const {
    const std::string_view line = Stored_Line(row);
    out += line;
    out.append(log_column_count - 1 - Separators_In(line), field_separator);
}

std::string Log_Table::Line(std::size_t row) const {
    std::string line;
    Append_Line(row, line);
    return line;
}

void Log_Table::Sort_By_Date(std::size_t date_column, std::size_t text_column,
                             std::string_view short_date) {
    Moments moments(short_date);
    Sort([&](std::string_view line) {
        return Sorted_Row{moments.Of(Field_Of(line, date_column)), 0, Field_Of(line, text_column)};
    });
}

void Log_Table::Sort_By_Text(std::size_t column) {
    Sort([&](std::string_view line) { return Sorted_Row{0, 0, Field_Of(line, column)}; });
}

template <class Key_Of>
void Log_Table::Sort(const Key_Of& key_of) {
    std::vector<Sorted_Row> order(m_rows.size());
    for (std::size_t row = 0; row < order.size(); ++row) {
        order[row] = key_of(Stored_Line(row));
        order[row].first_bytes = First_Bytes(order[row].text);
        order[row].row = row;
    }
    std::stable_sort(order.begin(), order.end(), Comes_Before);
    const std::vector<Line_Span> before = m_rows;
    std::transform(order.begin(), order.end(), m_rows.begin(),
                   [&](const Sorted_Row& sorted) { return before[sorted.row]; });
}

Log_Totals Log_Table::Totals(const Regional& regional) const {
    Decimal_Sum block_hours;
    Decimal_Sum flight_hours;
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        if (row + rows_ahead < m_rows.size())
            __builtin_prefetch(Stored_Line(row + rows_ahead).data());
        const std::string_view line = Stored_Line(row);
        const std::size_t begin = Begin_Of_Field(line, log_column::block_time);
        if (begin == std::string_view::npos)
            continue;
        const auto block = Field_At(line, begin);
        // The later column is looked for from the earlier one on.
        const auto flight =
            Field_Of(line.substr(begin), log_column::flight_time - log_column::block_time);
        block_hours.Add(Parse_Pilot_Number(block, regional).value_or(0));
        flight_hours.Add(Parse_Pilot_Number(flight, regional).value_or(0));
    }
    return {block_hours.Value(), flight_hours.Value()};
}

std::size_t Log_Table::Bytes_Held() const {
    return m_content.capacity() + m_rows.capacity() * sizeof(Line_Span);
}

void Log_Table::Drop_Waste() {
    if (m_waste < waste_tolerated || m_waste < m_content.size() / 2)
        return;
    std::string content;
    content.reserve(m_content.size() - m_waste);
    for (Line_Span& row : m_rows) {
        const std::size_t offset = content.size();
        content.append(m_content, row.offset, row.length);
        row.offset = offset;
    }
    m_content = std::move(content);
    m_waste = 0;
}

void For_Each_Piece(const Log_Table& table, const std::function<void(std::string_view)>& take) {
    std::string piece;
    for (std::size_t row = 0; row < table.Row_Count(); ++row) {
        if (row + rows_ahead < table.Row_Count())
            __builtin_prefetch(table.Get(row + rows_ahead, 0).data());
        if (table.Is_Blank(row))
            continue;
        table.Append_Line(row, piece);
        piece += cr_lf;
        if (piece.size() >= piece_size) {
            take(piece);
            piece.clear();
        }
    }
    if (!piece.empty())
        take(piece);
}

void Sort_XArray(Log_Table& table, int mode, std::string_view short_date) {
    if (mode == 0)
        table.Sort_By_Date(log_column::date, log_column::time_out, short_date);
    else if (mode == 1)
        table.Sort_By_Text(log_column::aircraft_type);
    else
        throw Run_Error(error_number::invalid_call, fmt::format("Sort mode {}", mode));
}

std::string Totals_Caption(const Log_Totals& totals, const Regional& regional) {
    constexpr std::size_t blanks_between = 12;
    return "Total Block Time: " + Format_Pilot(totals.block_hours, 1, regional) +
           std::string(blanks_between, ' ') +
           "Total Flight Time: " + Format_Pilot(totals.flight_hours, 1, regional);
}

}  // namespace norvane
