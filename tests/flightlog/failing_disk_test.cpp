// A disk that is full while a log is saved, loaded or appended to: the old log stays as it is, byte
// for byte, and nothing half-written stays behind.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

#include "common/run_error.h"
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

class Failing_Disk_Test : public test::Log_World {
  protected:
    Failing_Disk_Test() {
        for (int i = 0; i < 40; ++i)
            before += Full_Line("1/1/2008|an aircraft of some name|N1");
        Write(log_file, before);
        Start();
    }

    std::string before;
    const std::string typed = std::string(5000, 'c');
};

TEST_F(Failing_Disk_Test, A_full_disk_under_the_draft_or_the_new_log) {
    log->Commit_Edit(0, 19, typed);
    const std::string files = Logs();
    fs::create_symlink("/dev/full", directory / "templog.txt");
    for (const auto& [number, told, room] :
         {std::tuple{"61", "make room", RLIM_INFINITY}, {"57", "\"Details\"", before.size()}}) {
        {
            const Full_Disk full(room);
            EXPECT_FALSE(log->Grid_Save());
        }
        EXPECT_EQ(Read(log_file), before);
        EXPECT_EQ(Logs(), files);
        EXPECT_TRUE(Contains(Errors(), std::string("Error Number: ") + number));
        EXPECT_TRUE(Contains(Take_Boxes().at(0), told));
        // No draft holds the room that a flight's one line needs.
        EXPECT_FALSE(fs::is_regular_file(directory / "templog.txt"));
        fs::remove(directory / "templog.txt");
    }
    // With room again, the same table is saved.
    EXPECT_TRUE(log->Grid_Save());
    EXPECT_TRUE(Contains(Read(log_file), typed));
}

TEST_F(Failing_Disk_Test, A_full_disk_under_the_backup_or_an_appended_line) {
    fs::remove(directory / "logs/My Flight Log.bak");
    {
        const Full_Disk full(100);
        log->Grid_Load();
    }
    EXPECT_EQ(log->Table().Row_Count(), 40U);
    EXPECT_TRUE(log->File().Loaded_To_Its_End());
    EXPECT_EQ(Logs(), "My Flight Log.txt");
    EXPECT_TRUE(Contains(Errors(), "modFunctions.Backup_Log()"));
    {
        const Full_Disk full(before.size() + 100);
        EXPECT_THROW(Append_To_Log(directory / log_file, typed), Run_Error);
    }
    EXPECT_EQ(Read(log_file), before) << "not half a line";
}

}  // namespace
}  // namespace norvane
