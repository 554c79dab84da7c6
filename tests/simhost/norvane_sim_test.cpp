// The program norvane-sim as its users start it.

#include <sys/wait.h>

#include <csignal>
#include <cstdio>

#include "common/line_reader.h"
#include "common/system_clock.h"
#include "simhost/recording.h"
#include "simlink/link_peers.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/sim_reader.h"
#include "simlink/socket_transport.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using namespace std::chrono_literals;
using namespace test;

/// A running norvane-sim; killed when it goes out of scope.
class Sim_Process {
  public:
    explicit Sim_Process(std::vector<std::string> arguments) {
        int ends[2] = {-1, -1};
        EXPECT_EQ(::pipe(ends), 0);
        m_process = ::fork();
        if (m_process == 0) {
            ::dup2(ends[1], STDOUT_FILENO);
            ::dup2(ends[1], STDERR_FILENO);
            ::close(ends[0]);
            std::vector<char*> argv = {const_cast<char*>("norvane-sim")};
            for (std::string& argument : arguments)
                argv.push_back(argument.data());
            argv.push_back(nullptr);
            ::execv(NORVANE_SIM, argv.data());
            ::_exit(127);
        }
        ::close(ends[1]);
        m_output = ::fdopen(ends[0], "r");
    }
    ~Sim_Process() {
        if (m_process > 0)
            (void)End(SIGKILL);
        std::fclose(m_output);
    }
    Sim_Process(const Sim_Process&) = delete;
    Sim_Process& operator=(const Sim_Process&) = delete;

    std::string Line() {
        char buffer[1000];
        if (std::fgets(buffer, sizeof buffer, m_output) == nullptr)
            return "(end)";
        std::string line = buffer;
        line.pop_back();
        return line;
    }
    /// The exit status after `signal` (0: none was sent), or minus the signal that ended it.
    int End(int signal = 0) {
        if (signal != 0)
            ::kill(m_process, signal);
        int status = 0;
        ::waitpid(std::exchange(m_process, -1), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

  private:
    pid_t m_process = -1;
    std::FILE* m_output = nullptr;
};

class Norvane_Sim : public testing::Test {
  protected:
    std::vector<std::string> Replay_Arguments() const {
        return {"replay",   Data_File("phto-circuit.rec").string(),
                "--listen", address,
                "--at",     "60",
                "--speed",  "0.001"};
    }
    Socket_Directory directory;
    std::string address = directory.Address().Text();
};

TEST_F(Norvane_Sim, A_Killed_Ones_Address_Is_Taken_Over_And_A_Live_Ones_Is_Not) {
    {
        Sim_Process killed(Replay_Arguments());
        EXPECT_EQ(killed.Line(), "listening on " + address);
        EXPECT_EQ(killed.End(SIGKILL), -SIGKILL);
    }
    for (const int signal : {SIGINT, SIGTERM}) {
        Sim_Process sim(Replay_Arguments());
        EXPECT_EQ(sim.Line(), "listening on " + address);
        Sim_Process second(Replay_Arguments());
        EXPECT_NE(second.Line().find("another program listens there"), std::string::npos);
        EXPECT_EQ(second.End(), 1);
        EXPECT_EQ(sim.End(signal), 0);
        EXPECT_EQ(sim.Line(), "(end)");
        EXPECT_FALSE(std::filesystem::exists(directory.Address().socket_file));
    }
}

TEST_F(Norvane_Sim, A_Client_Reads_The_World_And_Shows_Texts_In_It) {
    Sim_Process sim(Replay_Arguments());
    EXPECT_EQ(sim.Line(), "listening on " + address);
    System_Clock clock;
    Socket_Transport transport(directory.Address());
    modFSUIPC link(transport, clock);
    Sim_Reader reader(link);
    int result = 0;
    ASSERT_TRUE(link.IPC_Open(7, result));
    EXPECT_EQ(reader.Read_Text(Variable::aircraft_title), "Cessna 172P Skyhawk (1982)");
    EXPECT_EQ(reader.Read_Whole(Variable::on_ground), 0) << "begun in the air";
    EXPECT_TRUE(reader.Write_Display("ACARS/ D\xE9part", 8));
    EXPECT_EQ(sim.Line(), "ACARS/ D\xC3\xA9part");
    EXPECT_EQ(sim.End(SIGTERM), 0);
    EXPECT_EQ(reader.Read(Variable::on_ground), 0);
    EXPECT_EQ(reader.Failed()->text, "IPC sendmessage failed all retries");
}

TEST_F(Norvane_Sim, A_Recording_Is_Whole_Whether_It_Or_The_Simulator_Is_Stopped) {
    const auto file = directory.path / "new.rec";
    for (const bool stop_recorder : {true, false}) {
        std::filesystem::remove(file);
        Sim_Process sim(Replay_Arguments());
        sim.Line();
        Sim_Process recorder({"record", "--from", address, "--every", "10", file.string()});
        while (!std::filesystem::exists(file) || Read_File(file).find("\n0.1") == std::string::npos)
            std::this_thread::sleep_for(5ms);
        if (!stop_recorder)
            sim.End(SIGKILL);
        EXPECT_EQ(recorder.End(stop_recorder ? SIGINT : 0), 0);
        EXPECT_EQ(Read_File(file).back(), '\n');
        const auto moments = Read_Recording(file);
        EXPECT_GE(moments.back().seconds, 0.1);
        EXPECT_GT(moments.front().changes.size(), 90U);
    }
}

TEST_F(Norvane_Sim, Wrong_Usage_And_Missing_Files_Are_Told_Apart) {
    const struct {
        std::vector<std::string> arguments;
        int status;
    } cases[] = {
        {{"--help"}, 0},
        {{"--version"}, 0},
        {{}, 2},
        {{"hover"}, 2},
        {{"replay"}, 2},
        {{"replay", "a.rec", "--speed", "0"}, 2},
        {{"replay", "a.rec", "--speed", "nan"}, 2},
        {{"replay", "a.rec", "--at", "-1"}, 2},
        {{"replay", "a.rec", "--step", "0"}, 2},
        {{"replay", "missing.rec"}, 1},
        {{"replay", Data_File("phto-circuit.rec").string(), "--listen", "nowhere"}, 2},
        {{"fly", "--scenario", "missing.json"}, 1},
        {{"record", "--from", address, "a.rec"}, 1},
    };
    for (const auto& c : cases) {
        Sim_Process sim(c.arguments);
        EXPECT_NE(sim.Line(), "(end)") << "nothing said";
        EXPECT_EQ(sim.End(), c.status) << testing::PrintToString(c.arguments);
    }
    EXPECT_FALSE(std::filesystem::exists("a.rec")) << "touched before a simulator answered";
}

}  // namespace
}  // namespace norvane
