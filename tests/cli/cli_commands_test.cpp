// Exit statuses, refusals and failing disks: what scripts around norvane-cli rely on.

#include <sys/mount.h>
#include <unistd.h>

#include <chrono>

#include "cli/cli_world.h"
#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/run_error.h"
#include "config/sqlite_store.h"
#include "logentry/cls_log_entry.h"

namespace norvane::test {
namespace {

namespace fs = std::filesystem;

class Cli_Commands : public Cli_World {};

TEST_F(Cli_Commands, Tell_by_their_status_what_went_wrong) {
    EXPECT_EQ(Run({}).status, 2);
    EXPECT_EQ(Run({"dance"}).status, 2);
    EXPECT_EQ(Run({"fly", "--time-scale", "0"}).status, 2);
    EXPECT_EQ(Run({"--version"}).status, 0);
    EXPECT_EQ(Run({"--map", "C:\\=/c", "--map", "D:\\=/d", "settings", "list"}).status, 0);
    const auto mapped = Run({"--map", "C:\\=/c", "--map", "D:\\", "settings", "list"});
    EXPECT_EQ(mapped.status, 2);
    EXPECT_NE(mapped.errors.find("\"D:\\\" is no mapping"), std::string::npos) << mapped.errors;
    const auto absent = Run({"fly"});
    EXPECT_EQ(absent.status, 3);
    EXPECT_NE(absent.errors.find("Unable to connect to FSUIPC."), std::string::npos);
    EXPECT_NE(Error_Log().find("ucACARS.ACARS_ON()"), std::string::npos);
    const auto missing = Run({"log", "rows", "No Such Log"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_NE(missing.errors.find("No Such Log"), std::string::npos);
    EXPECT_NE(Error_Log().find("No Such Log"), std::string::npos);
}

TEST_F(Cli_Commands, Keep_settings_and_refuse_what_does_not_fit) {
    EXPECT_EQ(Run({"settings", "set", "PilotName", "Zoë Łukasz"}).status, 0);
    EXPECT_EQ(Run({"settings", "get", "PilotName"}).output, "Zoë Lukasz\n");
    EXPECT_EQ(Run({"settings", "set", "OptFields(0)", "Gate^"}).status, 0);
    EXPECT_EQ(Run({"settings", "get", "OptFields(0)"}).output, "Gate^\n");
    // The message says which separator to type; it is not a field of the log, where "|" is none.
    EXPECT_NE(Run({"settings", "set", "OptFields(0)", "Gate"}).errors.find("\"|\""),
              std::string::npos);
    EXPECT_EQ(Run({"settings", "set", "ACARS_Fuel", "3"}).status, 1);
    EXPECT_EQ(Run({"settings", "set", "Wings", "2"}).status, 1);
    EXPECT_EQ(Run({"settings", "get", "ACARS_Fuel"}).output, "0\n");
    // What a killed save left is swept away by who holds the lock.
    const auto rest = home / "logs/.My Flight Log.txt.aB3dEf";
    Write_File(rest, "x");
    fs::last_write_time(rest, fs::file_time_type::clock::now() - std::chrono::hours(25));
    EXPECT_EQ(Run({"settings", "get", "ACARS_Fuel"}).status, 0);
    EXPECT_TRUE(fs::exists(rest));
    fs::remove(home / "bin/optfields.cfg");
    fs::create_directories(home / "bin/optfields.cfg");
    const auto unsaved = Run({"settings", "set", "OptFields(0)", "Stand^"});
    EXPECT_EQ(unsaved.status, 1);
    EXPECT_NE(unsaved.errors.find("OptFields(0) was not saved: "), std::string::npos);
    EXPECT_FALSE(fs::exists(rest));
    fs::remove(home / "bin/optfields.cfg");
    const auto date_key = std::to_string(Row_Of(Log_Field::FLIGHT_DATE).store_key);
    Sqlite_Store(home / "settings.sqlite").Set(flight_section, date_key, "3/14/2026");
    EXPECT_EQ(Run({"settings", "set", "acars_fuel", "1"}).status, 1) << "a flight is stored";
    const auto refused = Run({"settings", "set", "ACARS_UseTime", "1"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.errors.find("fly --new"), std::string::npos) << refused.errors;
    EXPECT_EQ(Run({"settings", "set", "PilotID", "7"}).status, 0) << "no figure means another";
    Sqlite_Store(home / "settings.sqlite").Delete_Section(flight_section);
    EXPECT_EQ(Run({"settings", "set", "ACARS_UseTime", "1"}).status, 0);
    EXPECT_EQ(Run({"fly", "--time-scale", "2"}).status, 2) << "scaled timers, real clock";
}

TEST_F(Cli_Commands, Switch_between_airlines) {
    fs::create_directories(home / "VA_Sky");
    Write_File(home / "VA_Sky" / "server.cfg", "www.sky.example\r\n/pirep.php\r\n\r\n");
    EXPECT_EQ(Run({"airline", "use", "sky"}).status, 0);
    EXPECT_NE(Run({"airline", "list"}).output.find("* SKY"), std::string::npos);
    const auto shown = Run({"airline", "show"}).output;
    EXPECT_NE(shown.find("Server: www.sky.example\n"), std::string::npos) << shown;
    EXPECT_NE(shown.find("PIREP script: /pirep.php\n"), std::string::npos);
    EXPECT_EQ(Run({"airline", "use", "NONE SUCH"}).status, 1);
    fs::create_directories(home / "VA_日本");
    const auto no_letters = Run({"airline", "use", "日本"});
    EXPECT_EQ(no_letters.status, 1);
    EXPECT_NE(no_letters.errors.find("Windows-1252"), std::string::npos) << no_letters.errors;
    Write_File(home / "VA_Sky" / "pirep.cfg", "Date^d\r\nno mark\r\n");
    const auto faulty = Run({"airline", "show"}).output;
    EXPECT_NE(faulty.find(" = d (Date)\n"), std::string::npos) << faulty;
    EXPECT_EQ(faulty.find(" =  ()"), std::string::npos) << "76 places, one field";
}

TEST_F(Cli_Commands, Show_a_flight_plan) {
    const auto plans = fs::path(NORVANE_SOURCE_DIR) / "tests/data/plans";
    const auto shown = Run({"plan", (plans / "lfpg-eidw.pln").string()});
    EXPECT_EQ(shown.status, 0) << shown.errors;
    EXPECT_EQ(shown.output,
              "FLIGHT_PLAN: LFPG.ABB.UT225.MID.UN615.STU.EIDW\n"
              "Flight_Origin_ICAO: LFPG\n"
              "Flight_Origin_Name: Roissy - Aéroport 'Charles de Gaulle'\n"
              "Flight_Destination_ICAO: EIDW\n"
              "Flight_Destination_Name: Dublin O'Connell &amp; Bay\n"
              "FLIGHT_LEVEL: 35000\n"
              "Flight_Type: IFR\n");
    Write_File(directory / "no.pln", "no plan at all");
    for (const auto& file : {directory / "missing.pln", directory / "no.pln"}) {
        const auto refused = Run({"plan", file.string()});
        EXPECT_EQ(refused.status, 1);
        EXPECT_EQ(refused.output, "");
        EXPECT_NE(refused.errors.find(file.filename().string()), std::string::npos);
    }
    EXPECT_EQ(Run({"plan"}).status, 2);
    Write_File(directory / "cut.pln", "<FPType>VFR</FPType>\n<DepartureID>KJ");
    const auto cut = Run({"plan", (directory / "cut.pln").string()});
    EXPECT_EQ(cut.status, 0);
    EXPECT_NE(cut.output.find("Flight_Type: VFR\n"), std::string::npos);
    EXPECT_NE(cut.errors.find("<DepartureID> is not closed in line 2"), std::string::npos);
}

TEST_F(Cli_Commands, Keep_a_second_writer_away_but_let_others_look) {
    Start_Simulator();
    // Found where the settings say: nothing else names the simulator here.
    const auto address = "unix:" + (directory / "sim").string();
    EXPECT_EQ(Run({"settings", "set", "Simulator_Address", address}).status, 0);
    std::vector<std::string> command{NORVANE_CLI, "--home", home.string()};
    command.insert(command.end(), fly.begin(), fly.end());
    Child_Process flying(command);
    ASSERT_TRUE(flying.Read_Until([](const std::string& output) { return !output.empty(); }));
    const auto second = Run({"settings", "set", "PilotID", "7"});
    const auto look = Run({"settings", "get", "ACARS_Date"});
    EXPECT_EQ(flying.Wait(), 0);
    EXPECT_EQ(second.status, 4) << second.errors;
    EXPECT_EQ(look.output, "0\n");
}

TEST_F(Cli_Commands, Look_whatever_state_the_store_is_in) {
    Write_File(home / "bin/fs9.wld", "47.4647|8.5492|1416|LSZH|Zurich\r\n");
    const auto plan = fs::path(NORVANE_SOURCE_DIR) / "tests/data/plans/lfpg-eidw.pln";
    const std::string broken(20000, 'x');
    Write_File(home / "settings.sqlite", broken);
    const Store_Lock flying(home / "settings.sqlite");
    for (const auto& command : {std::vector<std::string>{"settings", "list"},
                                {"settings", "get", "PilotID"},
                                {"log", "rows"},
                                {"airport", "find", "zurich"},
                                {"plan", plan.string()}}) {
        const auto result = Run(command);
        EXPECT_EQ(result.status, 0) << command[0];
        EXPECT_NE(result.errors.find("Not all settings can be read"), std::string::npos);
    }
    EXPECT_EQ(Read_File(home / "settings.sqlite"), broken);
    EXPECT_FALSE(fs::exists(home / "settings.sqlite.broken"));
}

/// A log directory that takes nothing more, for root too.
class Failing_Logs {
  public:
    explicit Failing_Logs(const fs::path& logs) : m_logs(logs) {}
    ~Failing_Logs() {
        if (m_mounted)
            ::umount2(m_logs.c_str(), MNT_DETACH);
        fs::permissions(m_logs, fs::perms::owner_all);
    }
    Failing_Logs(const Failing_Logs&) = delete;
    Failing_Logs& operator=(const Failing_Logs&) = delete;

    /// False for a root who may not mount, as in most containers.
    bool Make_Read_Only() {
        if (::geteuid() != 0) {
            fs::permissions(m_logs, fs::perms::owner_read | fs::perms::owner_exec);
            return true;
        }
        const char* logs = m_logs.c_str();
        m_mounted = ::mount(logs, logs, nullptr, MS_BIND, nullptr) == 0;
        return m_mounted &&
               ::mount(nullptr, logs, nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) == 0;
    }
    /// False where mounting a small disk is not allowed.
    bool Make_Full(const std::string& log_content) {
        if (::mount("tmpfs", m_logs.c_str(), "tmpfs", 0, "size=64k") != 0)
            return false;
        m_mounted = true;
        Write_File(m_logs / "My Flight Log.txt", log_content);
        try {
            Write_File(m_logs / "filler", std::string(1U << 20U, 'x'));
        } catch (const Run_Error&) {
            return true;
        }
        return false;
    }

  private:
    fs::path m_logs;
    bool m_mounted = false;
};

TEST_F(Cli_Commands, Lose_nothing_when_the_logs_cannot_be_written) {
    const auto log = home / "logs" / "My Flight Log.txt";
    for (const bool full : {false, true}) {
        Start_Anew();
        const std::string before = "1/1/2008|NVN|B738\r\n";
        fs::create_directories(home / "logs");
        Write_File(log, before);
        Start_Simulator();
        {
            Failing_Logs logs(home / "logs");
            if (full ? !logs.Make_Full(before) : !logs.Make_Read_Only())
                GTEST_SKIP() << "nothing can be mounted here";
            const auto result = Fly();
            EXPECT_EQ(result.status, 1) << result.errors;
            EXPECT_NE(result.output.find("|KJFK|"), std::string::npos)
                << "the row is on the screen";
            EXPECT_EQ(Read_File(log), before);
        }
        EXPECT_NE(Error_Log().find("ucFlightLog.Grid_Save()"), std::string::npos) << Error_Log();
        // The flight itself waits in the store for a log that takes it, and for no simulator.
        Kill_Simulator();
        EXPECT_EQ(Rows().size(), 1U);
        const auto next = Fly();
        EXPECT_EQ(next.status, 0) << next.errors;
        EXPECT_EQ(Rows().size(), 2U) << next.output;
    }
}

}  // namespace
}  // namespace norvane::test
