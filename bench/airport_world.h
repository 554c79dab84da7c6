#pragma once
// A program directory with a world file of 60,000 airports for the benchmarks, on disk as long as
// it is needed.

#include <filesystem>
#include <string>

namespace norvane {

inline constexpr int airports_in_world = 60'000;

class World_On_Disk {
  public:
    World_On_Disk();
    ~World_On_Disk();
    World_On_Disk(const World_On_Disk&) = delete;
    World_On_Disk& operator=(const World_On_Disk&) = delete;
    [[nodiscard]] const std::string& Content() const { return m_content; }
    [[nodiscard]] std::filesystem::path Path() const { return m_directory / "bin" / "fs9.wld"; }
    [[nodiscard]] const std::filesystem::path& Directory() const { return m_directory; }

  private:
    std::string m_content;
    std::filesystem::path m_directory;
};

}  // namespace norvane
