#include "airport_world.h"

#include <fmt/format.h>
#include <unistd.h>

#include <random>
#include <system_error>

#include "common/file_writer.h"

namespace norvane {

namespace {

/// As in the real world, a good part of the airports stands near the sea.
std::string Random_World() {
    std::mt19937 random(8338);
    std::uniform_real_distribution<double> latitude(-60, 75);
    std::uniform_real_distribution<double> longitude(-180, 180);
    std::exponential_distribution<double> elevation_ft(1.0 / 1200);
    std::string world;
    for (int i = 0; i < airports_in_world; ++i) {
        world += fmt::format("{:.5f}|{:.5f}|{:.0f}|A{:05}|Airport Number {}\r\n", latitude(random),
                             longitude(random), elevation_ft(random), i, i);
    }
    return world;
}

}  // namespace

World_On_Disk::World_On_Disk()
    : m_content(Random_World()),
      m_directory(std::filesystem::temp_directory_path() /
                  ("norvane-bench-" + std::to_string(::getpid()))) {
    std::filesystem::create_directories(Path().parent_path());
    Write_File(Path(), m_content);
}

World_On_Disk::~World_On_Disk() {
    std::error_code ignored;
    std::filesystem::remove_all(m_directory, ignored);
}

}  // namespace norvane
