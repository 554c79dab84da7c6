// The file of a log: what is read from any bytes, what is written, what is kept beside it.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <random>

#include "common/log_error.h"
#include "common/text.h"
#include "flightlog/log_file.h"
#include "flightlog/log_keeping.h"
#include "flightlog/log_reading.h"
#include "flightlog/log_world.h"

namespace norvane {
namespace {

namespace fs = std::filesystem;
using test::Full_Line;

class Log_File_Test : public test::Test_World {
  protected:
    Log_File_Test() { fs::create_directories(directory / "logs"); }
    [[nodiscard]] fs::path Log() const { return directory / "logs" / "A.txt"; }
    /// As the panel does: what went wrong is told once everything is taken over.
    bool Load() {
        for (const auto& [procedure, error] : file.Load_XArray(table))
            Log_Error(services, procedure, error, Show::box);
        return file.Loaded_To_Its_End();
    }
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& item : fs::directory_iterator(directory / "logs"))
            names.push_back(item.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }
    /// What the error log says, in one text.
    std::string Errors() { return Join(Take_Errors(), ""); }

    Log_File file{services, directory / "logs" / "A.txt"};
    Log_Table table;
};

TEST_F(Log_File_Test, Lines_become_rows_of_53_fields_whatever_ends_them) {
    const std::string copied = "3/1/2008|c" + std::string(51, '|') + "last|";
    Write("logs/A.txt",
          "\xEF\xBB\xBF"
          "1/1/2008|a|N1|KJFK|Kennedy\r\n\r\n2/1/2008|b|\xE9\n" +
              copied + "\r4/1/2008|d");
    ASSERT_TRUE(Load());
    EXPECT_EQ(table.Row_Count(), 4U);
    EXPECT_EQ(table.Get(2, 52), "last");
    file.Save_XArray(table);
    const std::string saved = Full_Line("1/1/2008|a|N1|KJFK|Kennedy") +
                              Full_Line("2/1/2008|b|\xE9") + copied.substr(0, copied.size() - 1) +
                              "\r\n" + Full_Line("4/1/2008|d");
    EXPECT_EQ(Read("logs/A.txt"), saved);
    EXPECT_EQ(Read("templog.txt"), saved);
    EXPECT_EQ(Names(), (std::vector<std::string>{"A.bak", "A.txt"}));
    EXPECT_TRUE(Contains(Read("logs/A.bak"), copied));
}

TEST_F(Log_File_Test, What_has_no_place_in_the_table_is_kept_with_its_line_numbers_once) {
    const std::string full = "1/1/2008" + std::string(52, '|') + "x";
    const std::string long_line = full + "|54|55";
    const std::string content = "|no date|\xE9\r\n" + full + "||\r\n\r\n|\r\n" + long_line + "\n|z";
    Write("logs/A.txt", content);
    ASSERT_TRUE(Load());
    EXPECT_EQ(table.Row_Count(), 2U);
    EXPECT_EQ(table.Get(1, 52), "x");
    const std::string kept = "|no date|\xE9\r\n|\r\n" + long_line + "\r\n|z\r\n";
    EXPECT_EQ(Read("logs/A.skipped"), kept);
    const std::string errors = Errors();
    EXPECT_TRUE(Contains(errors, "modFunctions.Load_XArray()")) << errors;
    EXPECT_TRUE(Contains(errors, "lines without a date: 1, 4, 6")) << errors;
    EXPECT_TRUE(Contains(errors, "lines with more than 53 fields: 5")) << errors;

    // Loading again keeps nothing twice, and what is new joins what is there.
    ASSERT_TRUE(Load());
    EXPECT_EQ(Read("logs/A.skipped"), kept);
    Write("logs/A.txt", "|new\n|z\n");
    ASSERT_TRUE(Load());
    EXPECT_EQ(Read("logs/A.skipped"), kept + "|new\r\n");
    Errors();
}

TEST_F(Log_File_Test, Lines_that_could_not_be_kept_stop_the_save_that_would_drop_them) {
    Write("logs/A.txt", "|no date\r\n1/1/2008|a\r\n");
    fs::create_directories(directory / "logs" / "A.skipped" / "x");
    ASSERT_TRUE(Load());
    EXPECT_THROW(file.Save_XArray(table), Run_Error);
    EXPECT_EQ(Read("logs/A.txt"), "|no date\r\n1/1/2008|a\r\n");
    fs::remove_all(directory / "logs" / "A.skipped");
    file.Save_XArray(table);
    EXPECT_EQ(Read("logs/A.skipped"), "|no date\r\n");
    EXPECT_EQ(Read("logs/A.txt"), Full_Line("1/1/2008|a"));
    EXPECT_TRUE(Contains(Errors(), "modFunctions.Keep_Skipped()"));
}

TEST_F(Log_File_Test, Any_bytes_load_and_every_line_is_a_row_or_kept) {
    std::string binary;
    std::mt19937 random(99);
    for (int i = 0; i < 200'000; ++i)
        binary += static_cast<char>(random() % 64 == 0 ? '|' : random() % 256);
    const std::string one_line(10'000'000, 'x');
    const std::vector<std::string> contents{"", "\r\n", "\xEF\xBB\xBF", "1/1/2008", "1/1/2008|a|b",
                                            binary, one_line, std::string(10'000'000, '|'),
                                            std::string("1/1/2008|a\0b|\0\r\n", 16),
                                            // As slow as a square of its size to a careless reader.
                                            std::string(3'000'000, '\r') + "1/1/2008\r"};
    for (const std::string& content : contents) {
        std::size_t lines = 0;
        std::size_t undated = 0;
        for (const std::string& line : Split(Replace_All(content, "\r", "\n"), '\n')) {
            lines += line.empty() || line == "\xEF\xBB\xBF" ? 0 : 1;
            undated += line.starts_with('|') ? 1 : 0;
        }
        Write("logs/A.txt", content);
        ASSERT_TRUE(Load());
        EXPECT_EQ(table.Row_Count(), lines - undated) << content.substr(0, 20);
        file.Save_XArray(table);
        // What was saved is loaded as it was.
        const std::string saved = Read("logs/A.txt");
        ASSERT_TRUE(Load());
        file.Save_XArray(table);
        EXPECT_TRUE(Read("logs/A.txt") == saved) << content.substr(0, 20);
        Take_Errors();
    }
}

TEST_F(Log_File_Test, NUL_bytes_of_a_log_survive) {
    const std::string line("1/1/2008|a\0b", 12);
    Write("logs/A.txt", line);
    ASSERT_TRUE(Load());
    file.Save_XArray(table);
    EXPECT_EQ(Read("logs/A.txt"), Full_Line(line));
}

TEST_F(Log_File_Test, A_missing_log_leaves_the_table_and_is_created_by_the_save) {
    table.Resize(1);
    table.Set(0, 0, "1/1/2008");
    EXPECT_TRUE(Load());
    EXPECT_EQ(table.Row_Count(), 1U);
    EXPECT_EQ(Names(), std::vector<std::string>{});
    file.Save_XArray(table);
    EXPECT_EQ(Read("logs/A.txt"), Full_Line("1/1/2008"));
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Log_File_Test, A_link_and_the_mode_of_its_file_are_kept) {
    Write("elsewhere/real.txt", "1/1/2008|a\r\n");
    ::chmod((directory / "elsewhere/real.txt").c_str(), 0604);
    fs::create_symlink("../elsewhere/real.txt", Log());
    ASSERT_TRUE(Load());
    table.Set(0, 1, "b");
    file.Save_XArray(table);
    EXPECT_TRUE(fs::is_symlink(Log()));
    EXPECT_EQ(Read("elsewhere/real.txt"), Full_Line("1/1/2008|b"));
    EXPECT_EQ(fs::status(directory / "elsewhere/real.txt").permissions(), fs::perms(0604));
    EXPECT_EQ(Read("logs/A.bak"), "1/1/2008|a\r\n");
}

TEST_F(Log_File_Test, A_file_that_another_program_changed_is_kept_and_the_pilot_is_told) {
    Write("logs/A.txt", "1/1/2008|a\r\n");
    ASSERT_TRUE(Load());
    table.Set(0, 1, "mine");
    std::vector<std::string> notices;
    for (const std::string theirs : {"1/1/2008|theirs\r\n", "2/1/2008|theirs\r\n"}) {
        Write("logs/A.txt", theirs);
        notices.push_back(file.Save_XArray(table));
        EXPECT_EQ(Read("logs/A.txt"), Full_Line("1/1/2008|mine"));
    }
    EXPECT_EQ(Read("logs/A.other"), "1/1/2008|theirs\r\n");
    EXPECT_EQ(Read("logs/A.other2"), "2/1/2008|theirs\r\n");
    EXPECT_TRUE(Contains(notices[0], "was changed by another program"));
    EXPECT_TRUE(Contains(notices[0], "A.other"));
    EXPECT_TRUE(Contains(notices[1], "A.other2"));
    EXPECT_EQ(Take_Errors().size(), 2U);
    // Its own saves are no foreign changes.
    EXPECT_EQ(file.Save_XArray(table), "");

    // Nor is a file that is simply gone.
    fs::remove(Log());
    EXPECT_EQ(file.Save_XArray(table), "");
    EXPECT_EQ(Read("logs/A.txt"), Full_Line("1/1/2008|mine"));
}

TEST_F(Log_File_Test, A_backup_never_replaces_a_larger_one_without_keeping_it) {
    // The log as it shrinks and grows, and what of it is kept behind the newest copy.
    const std::string whole = "1/1/2008|first and more\r\n";
    for (const auto& [log, older] :
         std::vector<std::pair<std::string, std::string>>{{"1/1/2008|first\r\n", ""},
                                                          {whole, ""},
                                                          {"1/1/2008|a\r\n", whole},
                                                          {"1/1/2008\r\n", whole},
                                                          {"1/1/2008|first\r\n", whole}}) {
        Write("logs/A.txt", log);
        Load();
        EXPECT_EQ(Read("logs/A.bak"), log);
        EXPECT_EQ(fs::exists(directory / "logs/A.bak1") ? Read("logs/A.bak1") : "", older) << log;
    }
    // A copy that cannot be made moves nothing.
    fs::create_directories(directory / "logs/.A.bak.half");
    Write("logs/A.txt", "1/1/2008\r\n");
    EXPECT_TRUE(Load());
    EXPECT_EQ(Read("logs/A.bak"), "1/1/2008|first\r\n");
    EXPECT_EQ(Read("logs/A.bak1"), whole);
    Errors();
}

TEST_F(Log_File_Test, A_log_that_is_no_code_page_text_or_protected_stays_as_it_is) {
    const std::string text = "1/1/2008|a\r\n";
    std::string wide;
    for (const char c : text)
        wide.append({c, '\0'});
    for (const std::string& content : {"\xFF\xFE" + wide, wide, std::string(1, '\0') + wide}) {
        Write("logs/A.txt", content);
        EXPECT_FALSE(Load());
        EXPECT_TRUE(Contains(Errors(), "UTF-16"));
        EXPECT_TRUE(Contains(desktop.boxes.back().text, "Windows-1252"));
        EXPECT_THROW(file.Save_XArray(table), Run_Error);
        EXPECT_EQ(Read("logs/A.txt"), content);
        desktop.Run_For(std::chrono::minutes(2));
    }
    Write("logs/A.txt", text);
    ASSERT_TRUE(Load());
    table.Set(0, 1, "b");
    fs::permissions(Log(), fs::perms(0444));
    EXPECT_THROW(file.Save_XArray(table), Run_Error);
    EXPECT_THROW(Append_To_Log(Log(), "2/1/2008"), Run_Error);
    EXPECT_EQ(Read("logs/A.txt"), text);
    fs::permissions(Log(), fs::perms(0644));
    file.Save_XArray(table);
    EXPECT_EQ(Read("logs/A.txt"), Full_Line("1/1/2008|b"));
}

TEST_F(Log_File_Test, Only_the_final_extension_gives_way_and_never_to_the_log_itself) {
    EXPECT_EQ(Beside_Log("/p/my.txt notes.txt", ".bak"), "/p/my.txt notes.bak");
    EXPECT_EQ(Beside_Log("/p.txt/A.TXT", ".unsaved"), "/p.txt/A.unsaved");
    Write("logs/A.bak", "1/1/2008|a\r\n");
    fs::create_symlink("A.bak", Log());
    EXPECT_TRUE(Load());
    EXPECT_EQ(table.Row_Count(), 1U);
    EXPECT_EQ(Read("logs/A.bak"), "1/1/2008|a\r\n");
    EXPECT_TRUE(Contains(Errors(), "modFunctions.Backup_Log()"));
}

TEST_F(Log_File_Test, Appending_supplies_a_missing_line_end_first) {
    for (const auto& [before, after] :
         std::vector<std::pair<std::string, std::string>>{{"", "b|\r\n"},
                                                          {"a", "a\r\nb|\r\n"},
                                                          {"a\r\n", "a\r\nb|\r\n"},
                                                          {"a\n", "a\nb|\r\n"}}) {
        Write("logs/A.txt", before);
        Append_To_Log(Log(), "b|");
        EXPECT_EQ(Read("logs/A.txt"), after);
    }
    fs::remove(Log());
    Append_To_Log(Log(), "b|");
    EXPECT_EQ(Read("logs/A.txt"), "b|\r\n");
    EXPECT_THROW(Append_To_Log(directory / "none" / "A.txt", "b"), Run_Error);
}

TEST_F(Log_File_Test, Unsaved_files_are_numbered_and_never_overwritten) {
    EXPECT_EQ(Write_Unsaved(services, Log(), "1|a").filename(), "A.unsaved");
    EXPECT_EQ(Write_Unsaved(services, Log(), "2|b\r\n").filename(), "A.unsaved2");
    fs::create_directories(directory / "logs/A.unsaved3");
    EXPECT_EQ(Write_Unsaved(services, Log(), "3|c").filename(), "A.unsaved4");
    EXPECT_EQ(Read("logs/A.unsaved"), "1|a\r\n");
    EXPECT_EQ(Read("logs/A.unsaved2"), "2|b\r\n");
    // A directory that takes no file: the flight goes to the program directory.
    EXPECT_EQ(Write_Unsaved(services, directory / "none" / "A.txt", "4|d"),
              directory / "A.unsaved");
    const auto errors = Take_Errors();
    ASSERT_EQ(errors.size(), 4U);
    EXPECT_TRUE(Contains(errors[3], (directory / "A.unsaved").string()));
}

TEST_F(Log_File_Test, Looking_at_a_log_sorts_and_numbers_its_rows_and_touches_nothing) {
    Write("logs/B.txt", "2/1/2008|b\n|none\n1/1/2008|a" + std::string(60, '|') + "x\n");
    const Log_Table listed = Read_Log(services, "B");
    ASSERT_EQ(listed.Row_Count(), 2U);
    EXPECT_EQ(Listed_Row(listed, 0), "1\t1/1/2008|a" + std::string(51, '|'));
    EXPECT_EQ(Listed_Row(listed, 1), "2\t2/1/2008|b" + std::string(51, '|'));
    EXPECT_EQ(Names(), std::vector<std::string>{"B.txt"});
    const auto number_of = [&](std::string_view name) {
        try {
            (void)Read_Log(services, name);
        } catch (const Run_Error& error) {
            return error.Number();
        }
        return 0;
    };
    EXPECT_EQ(number_of("C"), 53);
    EXPECT_EQ(number_of("../logs/B"), 75);
}

TEST(Line_Numbers_Test, Runs_of_lines_are_told_by_their_ends) {
    EXPECT_EQ(Line_Numbers({}), "");
    EXPECT_EQ(Line_Numbers({3, 5, 6, 7, 12, 13}), "3, 5-7, 12-13");
}

}  // namespace
}  // namespace norvane
