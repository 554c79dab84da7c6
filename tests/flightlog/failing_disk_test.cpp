// A disk that is full, or a directory that takes no file, while a log is saved: the old log stays
// as it is, byte for byte, and nothing half-written stays behind.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "common/run_error.h"
#include "common/text.h"
#include "flightlog/log_keeping.h"
#include "flightlog/log_world.h"

namespace norvane {
namespace {

namespace fs = std::filesystem;
using test::Full_Line;

/// No file may grow past a size while this lives: the disk is full there.
class Full_Disk {
  public:
    explicit Full_Disk(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit now = m_before;
        now.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &now);
    }
    ~Full_Disk() {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    Full_Disk(const Full_Disk&) = delete;
    Full_Disk& operator=(const Full_Disk&) = delete;

  private:
    sighandler_t m_handler;
    rlimit m_before{};
};

/// For root, whom no mode binds: somebody without rights while this lives.
class As_Nobody {
  public:
    As_Nobody() : m_root(::geteuid() == 0) {
        constexpr uid_t nobody = 65534;
        if (m_root && ::seteuid(nobody) != 0)
            ADD_FAILURE() << "the rights cannot be given up";
    }
    ~As_Nobody() {
        if (m_root && ::seteuid(0) != 0)
            ADD_FAILURE() << "the rights cannot be taken back";
    }
    As_Nobody(const As_Nobody&) = delete;
    As_Nobody& operator=(const As_Nobody&) = delete;

  private:
    bool m_root;
};

class Failing_Disk_Test : public test::Log_World {
  protected:
    Failing_Disk_Test() {
        for (int i = 0; i < 40; ++i)
            before += Full_Line("1/1/2008|an aircraft of some name|N1");
        Write(log_file, before);
        Start();
        log->Add_Row();
        log->Commit_Edit(40, 0, "1/2/2008");
        log->Commit_Edit(40, 19, std::string(5000, 'c'));
    }
    std::vector<std::string> Files() const {
        std::vector<std::string> names;
        for (const auto& item : fs::directory_iterator(directory / "logs"))
            names.push_back(item.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }
    /// The log is as it was, and no draft holds the room that a flight's one line needs.
    void Expect_Old_Log(const std::vector<std::string>& files, std::string_view number) {
        EXPECT_EQ(Read(log_file), before);
        EXPECT_EQ(Files(), files);
        const auto errors = Take_Errors();
        ASSERT_EQ(errors.size(), 1U);
        EXPECT_TRUE(Contains(errors[0], "ucFlightLog.Grid_Save()"));
        EXPECT_TRUE(Contains(errors[0], "Error Number: " + std::string(number))) << errors[0];
        EXPECT_FALSE(fs::is_regular_file(directory / "templog.txt"));
        EXPECT_TRUE(Contains(Take_Boxes().at(0), "flight log"));
    }

    std::string before;
};

TEST_F(Failing_Disk_Test, A_full_disk_under_the_draft) {
    const auto files = Files();
    fs::create_symlink("/dev/full", directory / "templog.txt");
    EXPECT_FALSE(log->Grid_Save());
    Expect_Old_Log(files, "61");
    // With room again, the same table is saved.
    fs::remove(directory / "templog.txt");
    EXPECT_TRUE(log->Grid_Save());
    EXPECT_TRUE(Contains(Read(log_file), std::string(5000, 'c')));
}

TEST_F(Failing_Disk_Test, A_full_disk_under_the_new_log) {
    const auto files = Files();
    bool saved = true;
    {
        const Full_Disk full(before.size());
        saved = log->Grid_Save();
    }
    EXPECT_FALSE(saved);
    Expect_Old_Log(files, "57");
    EXPECT_TRUE(log->Grid_Save());
}

TEST_F(Failing_Disk_Test, A_directory_that_takes_no_file) {
    fs::permissions(directory, fs::perms::all);
    fs::remove(directory / "templog.txt");
    const auto files = Files();
    fs::permissions(directory / "logs", fs::perms(0555));
    bool saved = true;
    {
        const As_Nobody nobody;
        saved = log->Grid_Save();
    }
    EXPECT_FALSE(saved);
    Expect_Old_Log(files, "70");
    {
        // A flight that comes now is not lost either.
        const As_Nobody nobody;
        Set_Flight("1/3/2008", "0900");
        entry->New_Log_Entry_Save();
        EXPECT_EQ(answers, "fail ");
        Close();
    }
    EXPECT_TRUE(Read("My Flight Log.unsaved").ends_with(Full_Line("1/3/2008|||||0900")));
    EXPECT_EQ(Read(log_file), before);
    fs::permissions(directory / "logs", fs::perms(0755));
    Take_Errors();
}

TEST_F(Failing_Disk_Test, A_full_disk_under_the_backup_does_not_stop_the_load) {
    fs::remove(directory / "logs/My Flight Log.bak");
    {
        const Full_Disk full(100);
        log->FlightLog_Change();
    }
    EXPECT_EQ(log->Table().Row_Count(), 40U);
    EXPECT_TRUE(log->File().Loaded_To_Its_End());
    EXPECT_EQ(Files(), std::vector<std::string>{"My Flight Log.txt"});
    EXPECT_TRUE(Contains(Join(Take_Errors(), ""), "modFunctions.Backup_Log()"));
}

TEST_F(Failing_Disk_Test, A_line_that_does_not_fit_is_not_left_half_appended) {
    {
        const Full_Disk full(before.size() + 100);
        EXPECT_THROW(Append_To_Log(directory / log_file, std::string(5000, 'c')), Run_Error);
    }
    EXPECT_EQ(Read(log_file), before);
}

}  // namespace
}  // namespace norvane
