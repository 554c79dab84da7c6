#include "acars/world_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <system_error>

#include "common/code_page.h"
#include "common/line_reader.h"
#include "common/number.h"
#include "common/text.h"

namespace norvane {

namespace {

constexpr double elevation_tolerance_ft = 10;
constexpr double reach_at_elevation_nm = 50;
constexpr double reach_at_another_nm = 5;
constexpr double nm_per_degree = 60;
constexpr std::size_t lines_between_yields = 256;
constexpr double lowest = std::numeric_limits<std::int32_t>::min();
constexpr double highest = std::numeric_limits<std::int32_t>::max();

/// A number of a world file, where "," is a decimal sign too.
std::optional<double> World_Number(std::string_view text) {
    double value = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (failure == std::errc() && end == text.data() + text.size() && std::isfinite(value))
        return value;
    return Parse_Number(Replace_All(text, ",", "."));
}

}  // namespace

std::optional<World_Texts> Split_World_Line(std::string_view line) {
    World_Texts texts;
    std::string_view* last = &texts.name;
    for (std::string_view* text :
         {&texts.latitude, &texts.longitude, &texts.elevation, &texts.icao, last}) {
        const auto end = line.find(field_separator);
        *text = line.substr(0, end);
        if (end == std::string_view::npos)
            return text == last ? std::optional(texts) : std::nullopt;
        line.remove_prefix(end + 1);
    }
    texts.rest = line;
    return texts;
}

bool Is_World_Comment(std::string_view line) {
    return line.empty() || Contains(line, "//");
}

std::optional<World_Line> Read_World_Line(std::string_view line, std::string_view& fault) {
    const auto texts = Split_World_Line(line);
    if (!texts) {
        fault = "fewer than five fields";
        return std::nullopt;
    }
    const auto latitude = World_Number(texts->latitude);
    const auto longitude = World_Number(texts->longitude);
    const auto elevation_ft = World_Number(texts->elevation);
    if (!latitude || !longitude || !elevation_ft) {
        fault = "latitude, longitude or elevation is not a number";
        return std::nullopt;
    }
    const double whole_ft = std::clamp(Round_Half_Even(*elevation_ft), lowest, highest);
    return World_Line{
        {*latitude, *longitude}, static_cast<std::int32_t>(whole_ft), texts->icao, texts->name};
}

void World_File::Load(const std::filesystem::path& file) {
    std::error_code failure;
    const auto size = std::filesystem::file_size(file, failure);
    const auto written = std::filesystem::last_write_time(file, failure);
    const bool unchanged = !failure && m_content && m_file == file && m_written == written &&
                           m_content->size() == size;
    if (unchanged)
        return;
    m_first_fault.clear();
    m_heights.clear();
    m_places.clear();
    m_content.reset();
    m_content = std::make_unique<const std::string>(Read_File(file));
    m_file = file;
    m_written = written;
    Parse();
}

void World_File::Parse() {
    Line_Reader reader(*m_content);
    while (reader.Next()) {
        const std::string_view line = reader.Line();
        if (Is_World_Comment(line))
            continue;
        std::string_view fault;
        if (const auto airport = Read_World_Line(line, fault)) {
            m_heights.push_back({airport->position.latitude, airport->elevation_ft});
            m_places.push_back({airport->position, airport->icao, airport->name});
        } else if (m_first_fault.empty()) {
            m_first_fault =
                fmt::format("{}, line {}: {}", From_Path(m_file), reader.Line_Number(), fault);
        }
    }
}

void World_File::Search(Nearest_Search& search, Equal_Distance rule,
                        const std::function<void()>& yield) const {
    for (std::size_t i = 0; i < m_places.size(); ++i) {
        if (yield && i % lines_between_yields == 0)
            yield();
        const auto& [latitude, elevation_ft] = m_heights[i];
        const bool at_elevation =
            std::abs(elevation_ft - search.ground_elevation_ft) < elevation_tolerance_ft;
        Nearest_Search::Candidate& best = at_elevation ? search.at_elevation : search.at_another;
        const double reach_nm = at_elevation ? reach_at_elevation_nm : reach_at_another_nm;
        // An airport farther north or south than the best one is away, or than one may be, needs
        // no trigonometry; the mile covers the rounding.
        const double north_nm = std::abs(latitude - search.from.latitude) * nm_per_degree;
        if (north_nm > std::min(static_cast<double>(best.distance_nm), reach_nm) + 1)
            continue;
        const Place& place = m_places[i];
        const double exact_nm = Great_Circle_Nm(search.from, place.position);
        if (!(exact_nm <= reach_nm))
            continue;
        const auto distance_nm = static_cast<std::int64_t>(std::llround(exact_nm));
        const bool nearer =
            distance_nm < best.distance_nm ||
            (rule == Equal_Distance::replaces_best && distance_nm == best.distance_nm);
        if (nearer)
            best = {distance_nm, true, std::string(place.icao), std::string(place.name)};
    }
}

}  // namespace norvane
