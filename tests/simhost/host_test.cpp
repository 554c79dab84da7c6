#include "simhost/host.h"

#include <cstring>
#include <memory>

#include "common/run_error.h"
#include "common/system_clock.h"
#include "simhost/recorder.h"
#include "simhost/recording.h"
#include "simhost/replay.h"
#include "simlink/link_peers.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using namespace std::chrono_literals;
using namespace test;

/// A world whose altitude in whole metres tells its moment.
class Rising_World : public World_Source {
  public:
    void Apply(double seconds, Offset_Area& area) override {
        const auto metres = static_cast<std::int32_t>(seconds);
        std::memcpy(area.Bytes(0x0574, 4).data(), &metres, sizeof metres);
        ++applied;
    }
    [[nodiscard]] double Length() const override { return 100; }
    int applied = 0;
};

class Hosts : public testing::Test {
  protected:
    void Start(const Host_Options& options) {
        host = std::make_unique<Host>(world, options, clock);
        host->text_shown.connect([this](const std::string& text) { texts.push_back(text); });
        Connect();
    }
    void Connect() {
        int failure = 0;
        client = Connect_To(host->Address(), {std::chrono::steady_clock::now() + 5s}, failure);
        ASSERT_TRUE(client.Is_Open());
        host->Serve(1s);
    }
    void Exchange(const std::vector<std::byte>& records) {
        std::vector<std::byte> frame(request_head_size);
        Store_U32(frame, 4, static_cast<std::uint32_t>(records.size()));
        frame.insert(frame.end(), records.begin(), records.end());
        Send_Bytes(client.Descriptor(), frame);
        host->Serve(1s);
        answer.resize(answer_head_size + records.size());
        ASSERT_TRUE(Receive_Exactly(client.Descriptor(), answer));
        ASSERT_EQ(Load_U32(answer, 4), 1U);
    }
    std::uint32_t Read(std::uint32_t offset) {
        std::vector<std::byte> records(24);
        Store_U32(records, 0, record_identifier::read);
        Store_U32(records, 4, offset);
        Store_U32(records, 8, 4);
        Exchange(records);
        return Load_U32(answer, answer_head_size + read_header_size);
    }
    std::uint32_t Moment() { return Read(0x0574); }
    void Show(std::uint32_t offset, std::string text) {
        std::vector<std::byte> records(write_header_size + text.size() + 4);
        Store_U32(records, 0, record_identifier::write);
        Store_U32(records, 4, offset);
        Store_U32(records, 8, static_cast<std::uint32_t>(text.size()));
        Encode_Text(text, std::span(records).subspan(write_header_size, text.size()));
        Exchange(records);
    }

    Socket_Directory directory;
    Virtual_Clock clock;
    Rising_World world;
    std::unique_ptr<Host> host;
    Link_Socket client;
    std::vector<std::byte> answer;
    std::vector<std::string> texts;
};

TEST_F(Hosts, The_World_Runs_By_The_Clock_And_Its_Speed) {
    clock.Sleep(1h);
    Start({directory.Address(), 20, 1000, {}});
    EXPECT_EQ(Moment(), 1000U);
    clock.Sleep(2500ms);
    EXPECT_EQ(Moment(), 1050U);
    // Nobody asked in the meantime, and the next answer is right all the same.
    clock.Sleep(10s);
    EXPECT_EQ(Moment(), 1250U);
    EXPECT_DOUBLE_EQ(host->World_Seconds(), 1250);
    const int applied = world.applied;
    EXPECT_EQ(Moment(), 1250U);
    EXPECT_EQ(world.applied, applied) << "moved without need";
}

TEST_F(Hosts, In_Step_Mode_Only_Sampling_Steps_Move_The_World) {
    constexpr std::uint32_t brake = 0x0BC8;
    Start({directory.Address(), 20, 30, 2000ms});
    clock.Sleep(1h);
    EXPECT_EQ(Moment(), 30U);
    Read(brake);
    EXPECT_EQ(Moment(), 30U) << "the first step samples the moment it starts from";
    Read(brake);
    EXPECT_EQ(Moment(), 32U);
    Read(0x0366);
    EXPECT_EQ(Moment(), 32U);
    Read(brake);
    Read(brake);
    EXPECT_EQ(Moment(), 36U);
    // A client that was killed in a step and comes again finds the same moment.
    Connect();
    EXPECT_EQ(Moment(), 36U);
    Read(brake);
    EXPECT_EQ(Moment(), 36U);
    Read(brake);
    EXPECT_EQ(Moment(), 38U);
}

TEST_F(Hosts, Shown_Texts_Are_Told_Line_By_Line) {
    Start({directory.Address(), 1, 0, {}});
    Show(0x3380, std::string("ACARS/ OUT 1405Z\0rest", 21));
    Show(0x3380, "two\r\nlines");
    Show(0x3380, std::string("\0", 1));
    Show(0x3380, " ");
    Show(0x3C00, "no text");
    EXPECT_EQ(texts, (std::vector<std::string>{"ACARS/ OUT 1405Z", "two  lines"}));
}

TEST_F(Hosts, A_Recorded_Simulator_Plays_Back_The_Same) {
    Running_Server running(directory.Address());
    running.area.Set(Variable::engine_n1_percent, 50, 4);
    running.area.Set_Tank(10, 5, 10);
    running.area.Set_Text(Variable::aircraft_title, "Recorded");
    System_Clock real;
    const int stop = ::eventfd(0, EFD_CLOEXEC);
    const auto file = directory.path / "a.rec";
    std::thread recorder([&] { Record({directory.Address(), 5ms, file}, real, stop); });
    // Before its first moment is written the file is no recording.
    const auto recorded = [&] {
        try {
            return Read_Recording(file).size();
        } catch (const Run_Error&) {
            return std::size_t{0};
        }
    };
    while (recorded() < 3)
        std::this_thread::sleep_for(5ms);
    ::eventfd_write(stop, 1);
    recorder.join();
    ::close(stop);
    const auto moments = Read_Recording(file);
    // 58 variables but for 3 that are only written, 3 more for each engine's 6, 22 of the tanks.
    EXPECT_EQ(moments.front().changes.size(), 58U - 3 + 3 * 6 + 22);
    EXPECT_TRUE(moments.back().changes.empty());
    Replay replay(moments);
    Offset_Area area;
    replay.Apply(0, area);
    const auto bytes = area.Bytes(0, Offset_Area::size);
    EXPECT_TRUE(
        std::equal(bytes.begin(), bytes.end(), running.area.Bytes(0, Offset_Area::size).begin()));
}

}  // namespace
}  // namespace norvane
