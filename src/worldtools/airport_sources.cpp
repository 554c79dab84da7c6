#include "worldtools/airport_sources.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/code_page.h"
#include "common/gzip_reader.h"
#include "common/number.h"
#include "common/run_error.h"
#include "common/text.h"
#include "worldtools/world_builder.h"

namespace norvane {

namespace {

constexpr std::string_view white_space = " \t";

/// Takes the next word off the line; empty at its end.
std::string_view Take_Word(std::string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(white_space), line.size()));
    const auto word = line.substr(0, line.find_first_of(white_space));
    line.remove_prefix(word.size());
    return word;
}

constexpr std::string_view land_airport = "1";
constexpr std::string_view seaplane_base = "16";
constexpr std::string_view heliport = "17";

/// Where a line of "apt.dat" has the places of a runway: words counted from 0, the line's code.
struct Runway_Line {
    std::string_view code;
    std::size_t number;
    std::size_t latitude;
    std::size_t longitude;
    /// Of the other end, 0 when the line names the middle.
    std::size_t other_latitude;
    std::size_t other_longitude;
    bool helipad;
};
constexpr std::array<Runway_Line, 4> runway_lines{{
    {"100", 8, 9, 10, 18, 19, false},
    {"101", 3, 4, 5, 7, 8, false},
    {"102", 1, 2, 3, 0, 0, true},
    // The old format; taxiways are lines of the same code.
    {"10", 3, 1, 2, 0, 0, false},
}};
constexpr std::string_view old_taxiway = "xxx";
constexpr std::size_t runway_words = 20;

std::optional<Position> Read_Position(std::string_view latitude, std::string_view longitude) {
    const auto north = Parse_Number(latitude);
    const auto east = Parse_Number(longitude);
    if (!north || !east || std::abs(*north) > 90 || std::abs(*east) > 180)
        return std::nullopt;
    return Position{*north, *east};
}

/// Between two places that are near each other, on two sides of the date line perhaps.
Position Middle(const Position& a, const Position& b) {
    double east = b.longitude;
    if (std::abs(east - a.longitude) > 180)
        east += east < 0 ? 360 : -360;
    double longitude = (a.longitude + east) / 2;
    if (std::abs(longitude) > 180)
        longitude += longitude < 0 ? 360 : -360;
    return {(a.latitude + b.latitude) / 2, longitude};
}

/// Gathers the lines of one airport after the other.
class Apt_Dat {
  public:
    explicit Apt_Dat(World_Builder& world) : m_world(world) {}

    void Take(std::string_view line, std::size_t line_number) {
        std::string_view rest = line;
        const auto code = Take_Word(rest);
        if (code.empty() || code.front() == '#')
            return;
        if (!std::all_of(code.begin(), code.end(), [](char c) { return c >= '0' && c <= '9'; })) {
            m_world.Skip(Skip_Reason::malformed_line, line_number);
            return;
        }
        if (code == land_airport || code == seaplane_base || code == heliport) {
            End_Airport();
            Begin_Airport(rest, line_number);
            m_airport.heliport = code == heliport;
            return;
        }
        const auto* runway = std::find_if(runway_lines.begin(), runway_lines.end(),
                                          [&](const auto& each) { return each.code == code; });
        // A runway after the first one cannot change anything, and most lines are of no runway.
        if (runway != runway_lines.end() && m_begun && (!m_placed || m_on_helipad))
            Take_Runway(*runway, line, line_number);
    }

    void End_Airport() {
        if (m_begun && m_placed) {
            m_world.Add(m_airport);
        } else if (m_begun) {
            m_world.Skip(Skip_Reason::no_position, m_airport.line);
        }
        m_begun = false;
        m_placed = false;
        m_on_helipad = false;
    }

  private:
    void Begin_Airport(std::string_view rest, std::size_t line_number) {
        const auto elevation_ft = Parse_Number(Take_Word(rest));
        if (!elevation_ft) {
            m_world.Skip(Skip_Reason::malformed_line, line_number);
            return;
        }
        Take_Word(rest);  // Whether there is a tower.
        Take_Word(rest);  // Obsolete.
        m_airport.code = Take_Word(rest);
        m_airport.name = rest;
        m_airport.elevation_ft = *elevation_ft;
        m_airport.line = line_number;
        m_begun = true;
    }

    void Take_Runway(const Runway_Line& runway, std::string_view line, std::size_t line_number) {
        std::array<std::string_view, runway_words> words;
        for (std::string_view& word : words)
            word = Take_Word(line);
        const auto number = words.at(runway.number);
        if (number.starts_with(old_taxiway))
            return;
        // In the old format a helipad is a runway "H1x".
        const bool helipad = runway.helipad || number.starts_with('H');
        if (helipad && m_placed)
            return;
        const auto end = Read_Position(words.at(runway.latitude), words.at(runway.longitude));
        const auto other =
            runway.other_latitude == 0
                ? end
                : Read_Position(words.at(runway.other_latitude), words.at(runway.other_longitude));
        if (!end || !other) {
            m_world.Skip(Skip_Reason::malformed_line, line_number);
            return;
        }
        m_airport.position = Middle(*end, *other);
        m_placed = true;
        m_on_helipad = helipad;
    }

    World_Builder& m_world;
    /// Of the airport that has begun.
    World_Airport m_airport;
    bool m_begun = false;
    bool m_placed = false;
    /// A runway that follows takes the place of a helipad.
    bool m_on_helipad = false;
};

enum class Csv_State { good, malformed, open_quotes };

/// Splits a record at its commas; a field in quotes may have commas, line breaks and doubled
/// quotes.
Csv_State Split_Csv(std::string_view record, std::vector<std::string>& fields) {
    fields.assign(1, {});
    std::size_t i = 0;
    const auto at = [&](char c) { return i < record.size() && record[i] == c; };
    for (;;) {
        if (at('"')) {
            for (++i; !at('"') || record.substr(i).starts_with("\"\""); ++i) {
                if (i >= record.size())
                    return Csv_State::open_quotes;
                fields.back() += record[i];
                if (at('"'))
                    ++i;
            }
            ++i;
        } else {
            const auto plain = record.substr(i, record.find(',', i) - i);
            if (Contains(plain, "\""))
                return Csv_State::malformed;
            fields.back() = plain;
            i += plain.size();
        }
        if (i >= record.size())
            return Csv_State::good;
        if (!at(','))
            return Csv_State::malformed;
        ++i;
        fields.emplace_back();
    }
}

/// A record longer than this has lost a quote.
constexpr std::size_t longest_record = 65536;

class Airports_Csv {
  public:
    /// False when the line is not the head of such a file.
    bool Read_Head(std::string_view line) {
        if (Split_Csv(line, m_columns) != Csv_State::good)
            return false;
        m_code = Column("icao_code");
        m_ident = Column("ident");
        m_type = Column("type");
        m_name = Column("name");
        m_latitude = Column("latitude_deg");
        m_longitude = Column("longitude_deg");
        m_elevation = Column("elevation_ft");
        return (m_ident || m_code) && m_name && m_latitude && m_longitude && m_elevation;
    }

    void Read(Gzip_Reader& lines, World_Builder& world) {
        while (lines.Next()) {
            if (Trimmed_View(lines.Line()).empty())
                continue;
            const std::size_t line_number = lines.Line_Number();
            std::string record(lines.Line());
            auto state = Split_Csv(record, m_fields);
            while (state == Csv_State::open_quotes && record.size() < longest_record &&
                   lines.Next()) {
                record.append("\n").append(lines.Line());
                state = Split_Csv(record, m_fields);
            }
            if (state == Csv_State::good && m_fields.size() == m_columns.size()) {
                Take(world, line_number);
            } else {
                world.Skip(Skip_Reason::malformed_line, line_number);
            }
        }
    }

  private:
    std::optional<std::size_t> Column(std::string_view name) const {
        const auto found = std::find(m_columns.begin(), m_columns.end(), name);
        if (found == m_columns.end())
            return std::nullopt;
        return static_cast<std::size_t>(found - m_columns.begin());
    }

    /// Empty when the file has no such column.
    std::string_view Field(std::optional<std::size_t> column) const {
        return column ? Trimmed_View(m_fields.at(*column)) : std::string_view();
    }

    void Take(World_Builder& world, std::size_t line_number) {
        const auto latitude = Field(m_latitude);
        const auto longitude = Field(m_longitude);
        const auto elevation = Field(m_elevation);
        const auto position = Read_Position(latitude, longitude);
        const auto elevation_ft = Parse_Number(elevation);
        if (Field(m_type) == "closed") {
            world.Skip(Skip_Reason::closed, line_number);
        } else if (latitude.empty() || longitude.empty()) {
            world.Skip(Skip_Reason::no_position, line_number);
        } else if (elevation.empty()) {
            world.Skip(Skip_Reason::no_elevation, line_number);
        } else if (!position || !elevation_ft) {
            world.Skip(Skip_Reason::malformed_line, line_number);
        } else {
            const auto code = Field(m_code);
            world.Add({std::string(code.empty() ? Field(m_ident) : code),
                       std::string(Field(m_name)), *position, *elevation_ft,
                       Field(m_type) == "heliport", line_number});
        }
    }

    std::vector<std::string> m_columns;
    std::vector<std::string> m_fields;
    std::optional<std::size_t> m_code;
    std::optional<std::size_t> m_ident;
    std::optional<std::size_t> m_type;
    std::optional<std::size_t> m_name;
    std::optional<std::size_t> m_latitude;
    std::optional<std::size_t> m_longitude;
    std::optional<std::size_t> m_elevation;
};

/// The head of "apt.dat": a line "I" or "A" for the line ends of its maker, then its version.
bool Is_Apt_Dat(std::string_view first, std::string_view second) {
    const auto maker = Trimmed_View(first);
    return (maker == "I" || maker == "A") && Parse_Int32(Take_Word(second)).has_value();
}

}  // namespace

void Read_Airports(const std::filesystem::path& file, World_Builder& world) {
    Gzip_Reader lines(file);
    const std::string first(lines.Next() ? lines.Line() : std::string_view());
    Airports_Csv csv;
    if (csv.Read_Head(first)) {
        csv.Read(lines, world);
        return;
    }
    if (!lines.Next() || !Is_Apt_Dat(first, lines.Line())) {
        throw Run_Error(error_number::type_mismatch,
                        From_Path(file) + ": Is neither an apt.dat nor an airports.csv");
    }
    Apt_Dat apt(world);
    while (lines.Next())
        apt.Take(lines.Line(), lines.Line_Number());
    apt.End_Airport();
}

}  // namespace norvane
