// The program norvane-sim as its users start it.

#include <algorithm>
#include <csignal>
#include <thread>

#include "common/line_reader.h"
#include "common/text.h"
#include "simhost/recording/replay.h"
#include "simlink/link_peers.h"
#include "simlink/recording.h"
#include "support/child_process.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using namespace std::chrono_literals;
using namespace test;

/// A link server that runs until it goes out of scope.
class Running_Server {
  public:
    explicit Running_Server(const Link_Address& listen) : m_server(listen, area) {}
    Offset_Area area;

  private:
    Link_Server m_server;
    std::jthread m_thread{[this](const std::stop_token& stop) {
        while (!stop.stop_requested())
            m_server.Serve(10ms);
    }};
};

struct Sim_Process : Child_Process {
    explicit Sim_Process(std::vector<std::string> arguments)
        : Child_Process((arguments.insert(arguments.begin(), NORVANE_SIM), arguments)) {}
    bool Says(const std::string& line) {
        return Read_Until([&](const std::string& output) { return Contains(output, line + "\n"); });
    }
    int End(int signal) {
        Send(signal);
        return Wait();
    }
};

class Norvane_Sim : public testing::Test {
  protected:
    std::vector<std::string> Replay_Arguments() const {
        const std::string file = Data_File("phto-circuit.rec").string();
        return {"replay", file, "--listen", address, "--at", "60", "--speed", "0.001"};
    }
    Socket_Directory directory;
    std::string address = directory.Address().Text();
};

TEST_F(Norvane_Sim, A_Killed_Ones_Address_Is_Taken_Over_And_A_Live_Ones_Is_Not) {
    Sim_Process killed(Replay_Arguments());
    EXPECT_TRUE(killed.Says("listening on " + address));
    EXPECT_EQ(killed.End(SIGKILL), 128 + SIGKILL);
    for (const int signal : {SIGINT, SIGTERM}) {
        Sim_Process sim(Replay_Arguments());
        EXPECT_TRUE(sim.Says("listening on " + address));
        Sim_Process second(Replay_Arguments());
        EXPECT_EQ(second.Wait(), 1);
        EXPECT_TRUE(Contains(second.Errors(), "another program listens there"));
        // A text that a client shows is told in the terminal's characters.
        int failure = 0;
        const Link_Deadline soon{std::chrono::steady_clock::now() + 5s};
        const Link_Socket client = Connect_To(directory.Address(), soon, failure);
        Send_Bytes(client,
                   Frame({1}, Block().Words({2, 0x3380, 2}).Text("D\xE9").Words({0}).bytes));
        EXPECT_TRUE(sim.Says("D\xC3\xA9"));
        EXPECT_EQ(sim.End(signal), 0);
        EXPECT_EQ(sim.Output(), "listening on " + address + "\nD\xC3\xA9\n");
        EXPECT_FALSE(std::filesystem::exists(directory.Address().socket_file));
    }
}

TEST_F(Norvane_Sim, A_Recording_Is_Whole_Whether_It_Or_The_Simulator_Is_Stopped) {
    const auto file = directory.path / "new.rec";
    for (const bool stop_recorder : {true, false}) {
        std::filesystem::remove(file);
        std::optional<Running_Server> simulator(directory.Address());
        simulator->area.Set(Variable::engine_n1_percent, 50, 4);
        simulator->area.Set_Tank(10, 5, 10);
        simulator->area.Set_Text(Variable::aircraft_title, "Recorded");
        const Offset_Area told = simulator->area;
        Sim_Process recorder({"record", "--from", address, "--every", "10", file.string()});
        while (!std::filesystem::exists(file) || !Contains(Read_File(file), "\n0.1"))
            std::this_thread::sleep_for(5ms);
        if (!stop_recorder)
            simulator.reset();
        EXPECT_EQ(stop_recorder ? recorder.End(SIGINT) : recorder.Wait(), 0);
        EXPECT_EQ(Read_File(file).back(), '\n');
        const auto moments = Read_Recording(file);
        // 58 variables but for 3 that are only written, 3 more for each engine's 6, 22 of the
        // tanks.
        EXPECT_EQ(moments.front().changes.size(), 67U - 3 + 3 * 6 + 22);
        EXPECT_TRUE(moments.back().changes.empty());
        EXPECT_GE(moments.back().seconds, 0.1);
        Offset_Area played;
        Replay(moments).Apply(0, played);
        EXPECT_TRUE(std::ranges::equal(played.Bytes(0, Offset_Area::size),
                                       told.Bytes(0, Offset_Area::size)));
    }
}

TEST_F(Norvane_Sim, Wrong_Usage_And_Missing_Files_Are_Told_Apart) {
    const std::pair<std::vector<std::string>, int> cases[] = {
        {{"--help"}, 0},
        {{"--version"}, 0},
        {{}, 2},
        {{"hover"}, 2},
        {{"replay"}, 2},
        {{"replay", "a.rec", "--speed", "nan"}, 2},
        {{"replay", "a.rec", "--at", "-1"}, 2},
        {{"replay", "a.rec", "--step", "0"}, 2},
        {{"replay", "missing.rec"}, 1},
        {{"replay", Data_File("phto-circuit.rec").string(), "--listen", "nowhere"}, 2},
        {{"fly", "--scenario", "missing.json"}, 1},
        {{"record", "--from", address, "a.rec"}, 1},
    };
    for (const auto& [arguments, status] : cases) {
        Sim_Process sim(arguments);
        EXPECT_EQ(sim.Wait(), status) << testing::PrintToString(arguments);
        EXPECT_NE(sim.Output() + sim.Errors(), "") << "nothing said";
    }
    EXPECT_FALSE(std::filesystem::exists("a.rec")) << "touched before a simulator answered";
}

}  // namespace
}  // namespace norvane
