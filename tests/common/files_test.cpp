#include <gmock/gmock.h>
#include <sys/stat.h>

#include <chrono>

#include "common/code_page.h"
#include "common/file_writer.h"
#include "common/find_file.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "support/test_world.h"

namespace norvane {
namespace {

namespace fs = std::filesystem;

class Files : public test::Test_World {
  protected:
    auto File_Count() const { return std::distance(fs::directory_iterator(directory), {}); }
    /// Whatever is done with files, none stays open.
    void TearDown() override {
        EXPECT_EQ(Open_Files(), m_open);
        Test_World::TearDown();
    }

  private:
    static std::ptrdiff_t Open_Files() {
        return std::distance(fs::directory_iterator("/proc/self/fd"), {});
    }
    std::ptrdiff_t m_open = Open_Files();
};

TEST_F(Files, Only_what_killed_writers_left_days_ago_is_swept_away) {
    const std::vector<std::string> kept{
        "My Flight Log.txt", ".notes.txt.backup", ".notes.txt.Backup", ".profile",
        ".txt.aB3dE",        "a.txt.aB3dEf",      ".a.txt.aB3d-f",     "..aB3dEf"};
    const auto old = fs::file_time_type::clock::now() - std::chrono::hours(25);
    for (const auto& name : kept)
        fs::last_write_time(Write(name, "x"), old);
    fs::create_directory(directory / ".a.txt.dIrEct");
    fs::last_write_time(directory / ".a.txt.dIrEct", old);
    Write(".a.txt.nEw123", "another program writes it now");
    const auto count = File_Count();
    fs::last_write_time(Write(".My Flight Log.txt.aB3dEf", "x"), old);
    fs::last_write_time(Write(".b.unsaved.ZZZZZ9", "x"), old);
    Sweep_Temporaries(directory);
    EXPECT_EQ(File_Count(), count);
}

TEST_F(Files, An_atomic_write_goes_where_a_link_leads_and_keeps_the_mode) {
    const auto file = Write("real/log.txt", "old");
    ::chmod(file.c_str(), 0640);
    fs::create_symlink(file, directory / "link.txt");
    Write_File_Atomically(directory / "link.txt", "new");
    EXPECT_TRUE(fs::is_symlink(directory / "link.txt"));
    EXPECT_EQ(Read("real/log.txt"), "new");
    struct stat status {};
    ::stat(file.c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
    fs::create_symlink("real/missing.txt", directory / "dangling.txt");
    Write_File_Atomically(directory / "dangling.txt", "new");
    EXPECT_TRUE(fs::is_symlink(directory / "dangling.txt"));
    EXPECT_EQ(Read("real/missing.txt"), "new");
}

TEST_F(Files, Are_read_whole_whatever_size_they_tell) {
    for (const std::size_t size : {0U, 1U, 2U, 4095U, 4096U, 70000U}) {
        std::string content;
        while (content.size() < size)
            content += static_cast<char>(content.size() % 251);
        EXPECT_EQ(Read_File(Write("file", content)), content) << size;
    }
    // The system tells of these that they are empty.
    const std::string maps = Read_File("/proc/self/maps");
    EXPECT_GT(maps.size(), 1000U);
    EXPECT_EQ(maps.back(), '\n');
    EXPECT_THROW(static_cast<void>(Read_File(directory)), Run_Error);
    EXPECT_THROW(static_cast<void>(Read_File(directory / "missing")), Run_Error);
}

TEST_F(Files, A_growing_file_goes_on_behind_its_last_whole_line) {
    for (const auto& [torn, whole] :
         {std::pair{"", ""}, {"a", ""}, {"a\n", "a\n"}, {"\n", "\n"}, {"a\nb\nc", "a\nb\n"}}) {
        Growing_File file(Write("grows", torn));
        file.Add("d\n");
        file.Sync();
        EXPECT_EQ(Read("grows"), std::string(whole) + "d\n");
    }
}

TEST_F(Files, Simulator_paths_are_found_whatever_their_letter_case) {
    Write("Sim/Aircraft/C172/aircraft.cfg", "x");
    EXPECT_EQ(Find_Path(services, directory, "SIM\\aircraft\\c172\\Aircraft.CFG"),
              directory / "Sim/Aircraft/C172/aircraft.cfg");
    EXPECT_EQ(Find_Path(services, directory, "sim\\none\\x"), directory / "Sim/none/x");
    Write("sim/other", "y");
    EXPECT_EQ(Find_Path(services, directory, "sIm"), directory / "Sim");
    EXPECT_EQ(Take_Errors().size(), 1U) << "two that differ in letter case only";
}

TEST_F(Files, Simulator_paths_lead_where_their_directories_are_mapped_to) {
    Write("drive/Sim/Aircraft/aircraft.cfg", "x");
    Write("scenery/=/File", "x");
    Write("relative/File", "x");
    services.program_directory = directory;
    for (const std::string& mapping : {"C:\\=" + (directory / "drive").string() + "/",
                                       "c:/sim/Scenery=" + (directory / "scenery").string(),
                                       "\\\\host\\share=" + directory.string()})
        services.path_mappings.push_back(Parse_Path_Mapping(mapping));
    const std::pair<std::string, std::string> paths[] = {
        {"C:\\SIM\\AIRCRAFT\\aircraft.CFG", "drive/Sim/Aircraft/aircraft.cfg"},
        {"c:/sim/aircraft", "drive/Sim/Aircraft"},
        {"C:\\Sim\\SCENERY\\=\\file", "scenery/=/File"},
        {"C:\\Sim\\Scenery2\\file", "drive/Sim/Scenery2/file"},
        {"C:\\Sim\\Scenery", "scenery"},
        {"C:\\Sim\\Scenery\\\\file", "scenery/file"},
        {"\\\\HOST\\Share\\relative\\file", "relative/File"},
        {"relative\\file", "relative/File"},
        {"D:\\Sim", "D:/Sim"},
        {"C:Sim", "C:Sim"},
    };
    for (const auto& [path, found] : paths)
        EXPECT_EQ(Find_Simulator_Path(services, path), directory / found) << path;

    EXPECT_EQ(Path_Mapping_Fault("Z:\\=/"), "");
    for (const std::string bad : {"", "C:\\", "=/x", "\\=/x", "C:=", "C:\\=drive_c"})
        EXPECT_NE(Path_Mapping_Fault(bad).find("is no mapping of directories"), std::string::npos)
            << bad;
}

TEST_F(Files, A_report_has_its_six_lines_and_a_box_only_when_asked) {
    const auto report = [&](Show show) {
        Log_Error(services, "ucFlightLog.Grid_Save()", {53, "File not found"}, show);
    };
    report(Show::silent);
    EXPECT_TRUE(desktop.boxes.empty());
    report(Show::box);
    report(Show::box);
    const auto entries = Take_Errors();
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[0],
              "20260314   Norvane has encountered an error: \r\n\r\n"
              "Error Source: ucFlightLog.Grid_Save()\r\nError Number: 53\r\n"
              "Error Description: File not found\r\n\r\n");
    ASSERT_EQ(desktop.boxes.size(), 1U) << "the same box within a minute";
    EXPECT_EQ(desktop.boxes[0].title, "Norvane Error");
    desktop.Run_For(std::chrono::minutes(1));
    report(Show::box);
    EXPECT_EQ(desktop.boxes.size(), 2U);
    Take_Errors();
}

TEST_F(Files, A_report_that_cannot_be_kept_is_swallowed_and_the_busy_cursor_goes) {
    class Full_Log : public Error_Log {
        void Append(const std::string& /*entry*/) override { throw Run_Error(61, "full"); }
    } full;
    Services broken{desktop, store, clock, full, {}, directory};
    desktop.busy = true;
    EXPECT_FALSE(Guarded(broken, "x.y()", Show::silent, [] { throw std::out_of_range("slot"); }));
    EXPECT_FALSE(desktop.busy);
}

}  // namespace
}  // namespace norvane
