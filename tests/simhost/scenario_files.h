#pragma once
// The scenarios that tests fly, a tank as clients read it, and figures that somebody has looked at.

#include <filesystem>
#include <string>

#include "common/file_writer.h"
#include "common/line_reader.h"
#include "simlink/offset_area.h"
#include "simlink/request_block.h"
#include "support/test_world.h"

namespace norvane::test {

inline const std::filesystem::path repository(NORVANE_SOURCE_DIR);
inline const std::filesystem::path aircraft_files = repository / "data/simulator";

inline std::filesystem::path Test_Scenario(const std::string& name) {
    return repository / "tests/data/scenarios" / (name + ".json");
}
inline const std::filesystem::path short_jet_file = Test_Scenario("short-jet");

inline std::filesystem::path Shipped_Scenario(const std::string& name) {
    return repository / "data/scenarios" / (name + ".json");
}

inline double Gallons(const Offset_Area& area, std::size_t tank) {
    const auto number = [&](std::uint32_t offset) {
        return static_cast<std::int32_t>(Load_U32(area.Bytes(offset, 4), 0));
    };
    return Tank_Gallons(number(All_Tanks().at(tank).level_offset),
                        number(All_Tanks().at(tank).capacity_offset));
}

inline double All_Gallons(const Offset_Area& area) {
    double gallons = 0;
    for (std::size_t tank = 0; tank < tank_count; ++tank)
        gallons += Gallons(area, tank);
    return gallons;
}

}  // namespace norvane::test
