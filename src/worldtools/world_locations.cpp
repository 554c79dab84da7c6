#include "worldtools/world_locations.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

#include "acars/cls_acars.h"
#include "acars/world_file.h"
#include "common/file_writer.h"
#include "common/find_file.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"

namespace norvane {

namespace {

std::optional<World_Location> Read_Location(std::string_view line) {
    std::string_view unused;
    const auto airport = Read_World_Line(line, unused);
    if (!airport || Trimmed_View(airport->icao).empty())
        return std::nullopt;
    const World_Texts texts = *Split_World_Line(line);
    return World_Location{std::string(texts.latitude),  std::string(texts.longitude),
                          std::string(texts.elevation), std::string(texts.icao),
                          std::string(texts.name),      std::string(texts.rest)};
}

void Append_Line(std::string& content, std::string_view line) {
    content.append(line).append(cr_lf);
}

}  // namespace

World_Locations::World_Locations(std::filesystem::path file) : m_file(std::move(file)) {
    if (!std::filesystem::exists(m_file))
        return;
    for (std::string& line : Read_Lines(m_file)) {
        auto location = Is_World_Comment(line) ? std::nullopt : Read_Location(line);
        if (location) {
            m_locations.push_back(std::move(*location));
        } else {
            m_other_lines.push_back({m_locations.size(), std::move(line)});
        }
    }
}

void World_Locations::Add(World_Location location) {
    m_locations.push_back(std::move(location));
}

void World_Locations::Remove(std::size_t place) {
    if (place >= m_locations.size()) {
        throw Run_Error(error_number::subscript_out_of_range,
                        fmt::format("There is no location {}: the list has {} of them", place + 1,
                                    m_locations.size()));
    }
    m_locations.erase(m_locations.begin() + static_cast<std::ptrdiff_t>(place));
    for (Other_Line& line : m_other_lines) {
        if (line.locations_before > place)
            --line.locations_before;
    }
}

void World_Locations::Save() const {
    std::string content;
    auto other = m_other_lines.begin();
    for (std::size_t i = 0; i <= m_locations.size(); ++i) {
        for (; other != m_other_lines.end() && other->locations_before == i; ++other)
            Append_Line(content, other->text);
        if (i == m_locations.size())
            break;
        const World_Location& each = m_locations[i];
        Append_Line(content, fmt::format("{}|{}|{}|{}|{}|{}", each.latitude, each.longitude,
                                         each.elevation, each.icao, each.name, each.date_added));
    }
    std::filesystem::create_directories(m_file.parent_path());
    Write_File_Atomically(m_file, content);
}

std::string Location_Code(std::string_view typed) {
    return Upper(Trimmed_View(typed));
}

std::string_view Check_Location_Code(std::string_view code) {
    const auto is_good = [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-';
    };
    if (Is_Empty_Field(code))
        return "Please enter an ICAO Airport Code for the new location";
    if (!std::all_of(code.begin(), code.end(), is_good))
        return "An ICAO Airport Code is made of letters, digits and \"-\" only";
    return {};
}

Aircraft_Place Read_Aircraft_Place(clsACARS& engine) {
    std::string fault;
    const auto keep = [&](const std::string& text) { fault = text; };
    Connections connections;
    connections.Keep({engine.events.FSClosed.Connect(keep), engine.events.Error.Connect(keep)});
    Aircraft_Place place;
    engine.Get_Location(place.position, place.ground_elevation_ft);
    if (!fault.empty())
        throw Run_Error(error_number::other, fault);
    return place;
}

namespace {

/// Degrees to the decimetre: what the simulator gives beyond that is noise.
std::string Format_Degrees(double degrees) {
    constexpr double steps = 1e6;
    return Format_Significant(std::round(degrees * steps) / steps);
}

}  // namespace

World_Location Make_Location(Services& services, std::string_view icao, std::string_view name,
                             const Aircraft_Place& place) {
    return {Format_Degrees(place.position.latitude),
            Format_Degrees(place.position.longitude),
            Format_Whole(Round_Half_Even(place.ground_elevation_ft)),
            std::string(icao),
            std::string(name),
            Format_Date(services.clock.Local_Now().date, services.regional.short_date)};
}

std::string World_Airport_Name(Services& services, std::string_view world, std::string_view icao) {
    const std::string content =
        Read_File(Find_Path(services, services.program_directory, "bin\\" + std::string(world)));
    for (Line_Reader reader(content); reader.Next();) {
        const std::string_view line = reader.Line();
        if (!Contains(line, icao) || Is_World_Comment(line))
            continue;
        const auto texts = Split_World_Line(line);
        if (texts && texts->icao == icao)
            return std::string(texts->name);
    }
    return {};
}

}  // namespace norvane
