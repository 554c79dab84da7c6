#include "worldtools/world_builder.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "common/code_page.h"
#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/number.h"
#include "common/run_error.h"
#include "common/text.h"
#include "worldtools/airport_sources.h"
#include "worldtools/world_locations.h"

namespace norvane {

namespace {

/// About 10 cm.
constexpr int degree_decimals = 6;
constexpr double lowest_ft = -2000;
constexpr double highest_ft = 30000;

constexpr std::array<std::string_view, skip_reason_count> reason_texts{
    "lines that cannot be read",
    "airports without a code",
    "airports whose code has other characters than letters, digits and \"-\"",
    "airports without a position",
    "airports without an elevation, or with an impossible one",
    "airports that are closed",
    "heliports",
    "airports whose code an earlier one has",
};

bool Is_On_Earth(const Position& position) {
    return std::abs(position.latitude) <= 90 && std::abs(position.longitude) <= 180;
}

/// A name that can make its line neither longer by a field nor a comment.
std::string World_Text(std::string_view source) {
    std::string text = Clean_Field(From_Utf8(source), Field_Lines::one);
    std::replace(text.begin(), text.end(), '\t', ' ');
    while (Contains(text, "//"))
        text = Replace_All(text, "//", "/");
    return Trim(text);
}

/// The old file is kept once: building the same again leaves the older copy alone.
void Keep_Old(const std::filesystem::path& file, const std::string& content) {
    if (!std::filesystem::exists(file))
        return;
    const std::string old = Read_File(file);
    if (old == content)
        return;
    auto kept = file;
    kept += ".bak";
    Write_File_Atomically(kept, old);
}

}  // namespace

std::string_view Skip_Reason_Text(Skip_Reason reason) {
    return reason_texts.at(static_cast<std::size_t>(reason));
}

const Skipped& World_Builder::Skips(Skip_Reason reason) const {
    return m_skipped.at(static_cast<std::size_t>(reason));
}

void World_Builder::Skip(Skip_Reason reason, std::size_t line) {
    Skipped& skipped = m_skipped.at(static_cast<std::size_t>(reason));
    // Duplicates are met in the order of their codes.
    if (skipped.count == 0 || line < skipped.first_line)
        skipped.first_line = line;
    ++skipped.count;
}

void World_Builder::Add(World_Airport airport) {
    airport.code = Location_Code(From_Utf8(airport.code));
    airport.name = World_Text(airport.name);
    if (airport.heliport && m_heliports == Heliports::leave_out) {
        Skip(Skip_Reason::heliport, airport.line);
    } else if (airport.code.empty()) {
        Skip(Skip_Reason::no_code, airport.line);
    } else if (!Check_Location_Code(airport.code).empty()) {
        Skip(Skip_Reason::unusable_code, airport.line);
    } else if (!Is_On_Earth(airport.position)) {
        Skip(Skip_Reason::no_position, airport.line);
    } else if (airport.elevation_ft < lowest_ft || airport.elevation_ft > highest_ft) {
        Skip(Skip_Reason::no_elevation, airport.line);
    } else {
        m_airports.push_back(std::move(airport));
    }
}

void World_Builder::Sort() {
    std::stable_sort(m_airports.begin(), m_airports.end(),
                     [](const auto& a, const auto& b) { return a.code < b.code; });
    std::vector<World_Airport> kept;
    kept.reserve(m_airports.size());
    for (World_Airport& each : m_airports) {
        if (!kept.empty() && kept.back().code == each.code) {
            Skip(Skip_Reason::duplicate_code, each.line);
        } else {
            kept.push_back(std::move(each));
        }
    }
    m_airports = std::move(kept);
}

std::string World_Builder::Content() const {
    std::string content;
    for (const World_Airport& each : m_airports) {
        content +=
            fmt::format("{}|{}|{}|{}|{}\r\n", Format_Fixed(each.position.latitude, degree_decimals),
                        Format_Fixed(each.position.longitude, degree_decimals),
                        Format_Whole(each.elevation_ft), each.code, each.name);
    }
    return content;
}

World_Builder Build_World(const std::filesystem::path& from, const std::filesystem::path& to,
                          Heliports heliports) {
    std::error_code ignored;
    if (std::filesystem::equivalent(from, to, ignored)) {
        throw Run_Error(error_number::invalid_call,
                        From_Path(to) + ": A world file cannot be built over its own source");
    }
    World_Builder world(heliports);
    Read_Airports(from, world);
    world.Sort();
    if (world.Size() == 0) {
        throw Run_Error(error_number::invalid_call,
                        From_Path(from) + ": Holds no airport that a world file can have");
    }
    const std::string content =
        fmt::format("// Airports: built from {}\r\n",
                    Clean_Field(From_Path(from.filename()), Field_Lines::one)) +
        world.Content();
    Keep_Old(to, content);
    Write_File_Atomically(to, content);
    return world;
}

}  // namespace norvane
