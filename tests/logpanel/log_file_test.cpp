// The file of a log: what is read from any bytes, what is written, what is kept beside it.

#include <sys/resource.h>
#include <csignal>

#include "common/log_error.h"
#include "flightlog/log_file.h"
#include "flightlog/log_keeping.h"
#include "logpanel/log_world.h"

namespace norvane::test {
namespace {

/// No file may grow past a size while `action` runs: the disk is full there.
void On_Full_Disk(rlim_t bytes, const std::function<void()>& action) {
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit now{bytes, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &now);
    action();
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
}

class Log_File_Test : public Log_World {
  protected:
    /// As the panel does: what went wrong is told once everything is taken over.
    bool Load() {
        for (const auto& [procedure, error] : file.Load_XArray(table))
            Log_Error(services, procedure, error, Show::box);
        return file.Loaded_To_Its_End();
    }
    bool Load(std::string_view content) {
        Write("logs/A.txt", content);
        return Load();
    }
    /// Empty when there is no such file.
    [[nodiscard]] std::string Beside(const std::string& ending) const {
        return Exists("logs/A" + ending) ? Read("logs/A" + ending) : "";
    }

    const fs::path path = directory / "logs" / "A.txt";
    Log_File file{services, path};
    Log_Table table;
};

TEST_F(Log_File_Test, Lines_become_rows_of_53_fields_whatever_ends_them) {
    const std::string copied = "3/1/2008|c" + std::string(51, '|') + "last";
    const std::string with_nul("2/1/2008|b|\xE9\0x", 14);
    ASSERT_TRUE(
        Load("\xEF\xBB\xBF"
             "1/1/2008|a|N1|KJFK|Kennedy\r\n\r\n" +
             with_nul + "\n" + copied + "|\r4/1/2008|d"));
    file.Save_XArray(table);
    const std::string saved = Full_Line("1/1/2008|a|N1|KJFK|Kennedy") + Full_Line(with_nul) +
                              copied + "\r\n" + Full_Line("4/1/2008|d");
    EXPECT_EQ(Read("logs/A.txt"), saved);
    EXPECT_EQ(Read("templog.txt"), saved);
    EXPECT_EQ(Logs(), "A.bak A.txt");
}

TEST_F(Log_File_Test, What_has_no_place_in_the_table_is_kept_with_its_line_numbers_once) {
    const std::string full = "1/1/2008" + std::string(52, '|') + "x";
    const std::string long_line = full + "|54|55";
    const std::string content = "|no date|\xE9\r\n" + full + "||\r\n\r\n|\r\n" + long_line + "\n|z";
    // A directory in its place: the save that would drop the lines fails.
    fs::create_directories(directory / "logs/A.skipped/x");
    ASSERT_TRUE(Load(content));
    EXPECT_EQ(table.Row_Count(), 2U);
    EXPECT_EQ(table.Get(1, 52), "x");
    EXPECT_THROW(file.Save_XArray(table), Run_Error);
    EXPECT_EQ(Read("logs/A.txt"), content);
    fs::remove_all(directory / "logs/A.skipped");
    file.Save_XArray(table);
    const std::string kept = "|no date|\xE9\r\n|\r\n" + long_line + "\r\n|z\r\n";
    EXPECT_EQ(Beside(".skipped"), kept);
    const std::string errors = Errors();
    EXPECT_TRUE(Contains(errors, "lines without a date: 1, 4, 6")) << errors;
    EXPECT_TRUE(Contains(errors, "lines with more than 53 fields: 5")) << errors;

    // Loading again keeps nothing twice; what is new joins what is there, whatever ended that.
    Write("logs/A.skipped", kept.substr(0, kept.size() - 2));
    ASSERT_TRUE(Load(content + "\n|new"));
    EXPECT_EQ(Beside(".skipped"), kept + "|new\r\n");
    Errors();
}

TEST_F(Log_File_Test, A_file_that_another_program_changed_is_kept_and_the_pilot_is_told) {
    ASSERT_TRUE(Load("1/1/2008|a\r\n"));
    table.Set(0, 1, "mine");
    for (const std::string other : {".other", ".other2"}) {
        const std::string theirs = "1/1/2008|theirs" + other;
        Write("logs/A.txt", theirs);
        const std::string notice = file.Save_XArray(table);
        EXPECT_TRUE(
            notice.ends_with("That version is kept as " + (directory / "logs/A").string() + other));
        EXPECT_EQ(Read("logs/A.txt"), Full_Line("1/1/2008|mine"));
        EXPECT_EQ(Beside(other), theirs);
        EXPECT_TRUE(Contains(Errors(), "modFunctions.Save_XArray()"));
    }
    // Its own saves are no foreign changes, nor is a file that is simply gone.
    EXPECT_EQ(file.Save_XArray(table), "");
    fs::remove_all(directory / "logs");
    // A missing log leaves the table, and is made by the save.
    EXPECT_TRUE(Load());
    EXPECT_EQ(file.Save_XArray(table), "");
    EXPECT_EQ(Read("logs/A.txt"), Full_Line("1/1/2008|mine"));
}

TEST_F(Log_File_Test, A_backup_never_replaces_a_larger_one_without_keeping_it) {
    // The log as it shrinks and grows, and what of it is kept behind the newest copy.
    const std::string whole = "1/1/2008|first and more\r\n";
    const std::string last = "1/1/2008|first\r\n";
    for (const auto& [content, older, between] :
         std::vector<std::array<std::string, 3>>{{last, "", ""},
                                                 {"1/1/2008|other\r\n", "", ""},
                                                 {whole, "", ""},
                                                 {"1/1/2008|a\r\n", whole, ""},
                                                 {"1/1/2008\r\n", whole, "1/1/2008|a\r\n"},
                                                 {last, whole, "1/1/2008|a\r\n"}}) {
        EXPECT_TRUE(Load(content));
        EXPECT_EQ(Beside(".bak"), content);
        EXPECT_EQ(Beside(".bak1"), older) << content;
        EXPECT_EQ(Beside(".bak2"), between) << content;
    }
    // What is refused moves nothing, nor does a copy that cannot be made.
    EXPECT_FALSE(Load(std::string("1\0\n\0", 4)));
    EXPECT_EQ(Beside(".bak"), last);
    fs::create_directories(directory / "logs/.A.bak.half");
    EXPECT_TRUE(Load("1/1/2008\r\n"));
    EXPECT_EQ(Beside(".bak") + Beside(".bak1"), last + whole);
    EXPECT_TRUE(Contains(Errors(), "modFunctions.Backup_Log()"));
}

TEST_F(Log_File_Test, A_log_that_is_no_code_page_text_or_protected_stays_as_it_is) {
    const std::string text = "1/1/2008|a\r\n";
    std::string wide;
    for (const char c : text)
        wide.append({c, '\0'});
    for (const std::string& content :
         {"\xFF\xFE" + wide, "\xFE\xFF" + wide, wide.substr(0, 4), std::string(1, '\0') + wide}) {
        EXPECT_FALSE(Load(content));
        EXPECT_TRUE(Contains(Errors(), "UTF-16"));
        EXPECT_THROW(file.Save_XArray(table), Run_Error);
        EXPECT_EQ(Read("logs/A.txt"), content);
    }
    ASSERT_TRUE(Load(text));
    fs::permissions(path, fs::perms(0444));
    EXPECT_THROW(file.Save_XArray(table), Run_Error);
    EXPECT_THROW(Append_To_Log(path, "2/1/2008"), Run_Error);
    EXPECT_EQ(Read("logs/A.txt"), text);
    fs::permissions(path, fs::perms(0644));
    file.Save_XArray(table);
    EXPECT_EQ(Read("logs/A.txt"), Full_Line("1/1/2008|a"));
}

TEST_F(Log_File_Test, A_full_disk_leaves_the_old_log_and_nothing_half_written) {
    const std::string before = Full_Line("1/1/2008|" + std::string(2000, 'a'));
    ASSERT_TRUE(Load(before));
    table.Set(0, 19, std::string(5000, 'c'));
    const fs::path draft = directory / "templog.txt";
    fs::create_symlink("/dev/full", draft);
    for (const auto& [number, told, room] :
         {std::tuple{61, "make room", RLIM_INFINITY}, {57, "\"Details\"", before.size()}}) {
        Run_Error failure(0, "");
        On_Full_Disk(room, [&] {
            try {
                file.Save_XArray(table);
            } catch (const Run_Error& error) {
                failure = error;
            }
        });
        EXPECT_EQ(failure.Number(), number);
        EXPECT_TRUE(Contains(failure.For_Pilot(), told)) << failure.For_Pilot();
        EXPECT_EQ(Read("logs/A.txt"), before);
        EXPECT_EQ(Logs(), "A.bak A.txt");
        fs::remove(draft);
    }
    // With room again, the same table is saved.
    EXPECT_EQ(file.Save_XArray(table), "");
    const std::string saved = Read("logs/A.txt");
    On_Full_Disk(saved.size() + 100,
                 [&] { EXPECT_THROW(Append_To_Log(path, std::string(5000, 'c')), Run_Error); });
    EXPECT_EQ(Read("logs/A.txt"), saved) << "not half a line";
}

TEST_F(Log_File_Test, Unsaved_files_are_numbered_and_never_overwritten) {
    EXPECT_EQ(Write_Unsaved(services, path, "1|a").filename(), "A.unsaved");
    EXPECT_EQ(Write_Unsaved(services, path, "2|b\r\n").filename(), "A.unsaved2");
    fs::create_directories(directory / "logs/A.unsaved3");
    EXPECT_EQ(Write_Unsaved(services, path, "3|c").filename(), "A.unsaved4");
    EXPECT_EQ(Beside(".unsaved") + Beside(".unsaved2"), "1|a\r\n2|b\r\n");
    // A directory that takes no file: the flight goes to the program directory.
    const fs::path of_root = directory / "my.txt notes.unsaved";
    EXPECT_EQ(Write_Unsaved(services, directory / "none" / "my.txt notes.TXT", "4|d"), of_root);
    EXPECT_TRUE(Contains(Take_Errors().at(3), of_root.string()));
}

TEST_F(Log_File_Test, Looking_at_a_log_sorts_and_numbers_its_rows_and_touches_nothing) {
    Write("logs/B.txt", "2/1/2008|b\n|none\n1/1/2008|a" + std::string(60, '|') + "x\n");
    const Log_Table listed = Read_Log(services, "B");
    EXPECT_EQ(Listed_Row(listed, 0), "1\t1/1/2008|a" + std::string(51, '|'));
    EXPECT_EQ(Logs(), "B.txt");
    for (const auto* name : {"C", "../logs/B", "..\\logs\\B"})
        EXPECT_THROW(static_cast<void>(Read_Log(services, name)), Run_Error) << name;
    EXPECT_EQ(Line_Numbers({3, 5, 6, 7, 12, 13}), "3, 5-7, 12-13");
}

}  // namespace
}  // namespace norvane::test
