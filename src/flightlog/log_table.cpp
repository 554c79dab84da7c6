#include "flightlog/log_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "common/date_time.h"
#include "common/run_error.h"
#include "common/text.h"

namespace norvane {

namespace {

// Less waste than this is never worth moving the content.
constexpr std::size_t waste_tolerated = std::size_t{1} << 20;
constexpr std::size_t piece_size = std::size_t{1} << 20;

/// The place of the separator before which `fields` fields stand; npos when there are fewer.
std::size_t End_Of_Fields(std::string_view line, std::size_t fields) {
    std::size_t place = std::string_view::npos;
    for (std::size_t i = 0; i < fields; ++i) {
        place = line.find(field_separator, place + 1);
        if (place == std::string_view::npos)
            return place;
    }
    return place;
}

/// Where a field begins; npos when the line ends before it.
std::size_t Begin_Of_Field(std::string_view line, std::size_t column) {
    if (column == 0)
        return 0;
    const std::size_t before = End_Of_Fields(line, column);
    return before == std::string_view::npos ? before : before + 1;
}

std::string_view Field_At(std::string_view line, std::size_t begin) {
    return line.substr(begin, line.find(field_separator, begin) - begin);
}

std::size_t Separators_In(std::string_view line) {
    return static_cast<std::size_t>(std::count(line.begin(), line.end(), field_separator));
}

void Check_Column(std::size_t column) {
    if (column >= log_column_count) {
        throw Run_Error(error_number::subscript_out_of_range,
                        fmt::format("Log column {} of {}", column, log_column_count));
    }
}

struct Key_Value {
    std::int64_t moment = 0;
    std::string_view text;
};

struct Keyed_Row {
    std::array<Key_Value, 2> keys;
    Log_Table::Line_Span span;
};

bool Comes_Before(const Keyed_Row& a, const Keyed_Row& b) {
    for (std::size_t k = 0; k < a.keys.size(); ++k) {
        if (a.keys.at(k).moment != b.keys.at(k).moment)
            return a.keys.at(k).moment < b.keys.at(k).moment;
        const int order = a.keys.at(k).text.compare(b.keys.at(k).text);
        if (order != 0)
            return order < 0;
    }
    return false;
}

/// Reads dates, remembering the last one: a log holds many flights of the same day in a row.
class Date_Keys {
  public:
    explicit Date_Keys(std::string_view pattern) : m_pattern(pattern) {}
    std::int64_t Of(std::string_view text) {
        if (text != m_text || text.empty()) {
            const auto moment = Parse_Date_Time(text, m_pattern);
            m_moment = moment ? Seconds_Of(*moment) : std::numeric_limits<std::int64_t>::max();
            m_text = text;
        }
        return m_moment;
    }

  private:
    std::string_view m_pattern;
    std::string_view m_text;
    std::int64_t m_moment = 0;
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
    const std::string_view line = Stored_Line(row);
    const std::size_t begin = Begin_Of_Field(line, column);
    return begin == std::string_view::npos ? std::string_view() : Field_At(line, begin);
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
    const std::string kept(line.substr(0, End_Of_Fields(line, log_column_count)));
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

void Log_Table::Sort(std::span<const Sort_Key> keys, std::string_view short_date) {
    std::vector<Keyed_Row> order(m_rows.size());
    for (std::size_t k = 0; k < keys.size(); ++k) {
        Date_Keys dates(short_date);
        for (std::size_t row = 0; row < order.size(); ++row) {
            const std::string_view text = Get(row, keys[k].column);
            Key_Value& value = order[row].keys.at(k);
            if (keys[k].kind == Key_Kind::date)
                value.moment = dates.Of(text);
            else
                value.text = text;
        }
    }
    for (std::size_t row = 0; row < order.size(); ++row)
        order[row].span = m_rows[row];
    std::stable_sort(order.begin(), order.end(), Comes_Before);
    for (std::size_t row = 0; row < order.size(); ++row)
        m_rows[row] = order[row].span;
}

Log_Totals Log_Table::Totals(const Regional& regional) const {
    Log_Totals totals;
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        const auto block = Get(row, log_column::block_time);
        const auto flight = Get(row, log_column::flight_time);
        totals.block_hours += Parse_Pilot_Number(block, regional).value_or(0);
        totals.flight_hours += Parse_Pilot_Number(flight, regional).value_or(0);
    }
    return totals;
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
    constexpr std::array by_date{Sort_Key{log_column::date, Key_Kind::date},
                                 Sort_Key{log_column::time_out, Key_Kind::text}};
    constexpr std::array by_type{Sort_Key{log_column::aircraft_type, Key_Kind::text}};
    if (mode == 0)
        table.Sort(by_date, short_date);
    else if (mode == 1)
        table.Sort(by_type, short_date);
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
