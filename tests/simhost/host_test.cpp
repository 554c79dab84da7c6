#include "simhost/host.h"

#include <memory>

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
        Store_U32(area.Bytes(0x0574, 4), 0, static_cast<std::uint32_t>(seconds));
        ++applied;
    }
    [[nodiscard]] double Length() const override { return 100; }
    int applied = 0;
};

class Hosts : public testing::Test {
  protected:
    void Start(const Host_Options& options) {
        host = std::make_unique<Host>(world, options, clock);
        Connect();
    }
    void Connect() {
        int failure = 0;
        client = Connect_To(host->Address(), {std::chrono::steady_clock::now() + 5s}, failure);
        ASSERT_TRUE(client.Is_Open());
        host->Serve(1s);
    }
    std::vector<std::byte> Exchange(const std::vector<std::byte>& records) {
        Send_Bytes(client, Frame({0}, records));
        host->Serve(1s);
        const Received_Frame answer(client, 3);
        EXPECT_EQ(Load_U32(answer.head, 4), 1U);
        return answer.records;
    }
    std::uint32_t Read(std::uint32_t offset) {
        return Load_U32(Exchange(Read_Block(offset, 4)), read_header_size);
    }
    std::uint32_t Moment() { return Read(0x0574); }
    Socket_Directory directory;
    Virtual_Clock clock;
    Rising_World world;
    std::unique_ptr<Host> host;
    Link_Socket client;
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
    for (const std::uint32_t moment : {32U, 34U, 36U}) {
        Read(brake);
        EXPECT_EQ(Moment(), moment);
        Read(0x0366);
        EXPECT_EQ(Moment(), moment);
    }
    // A client that was killed in a step and comes again finds the same moment.
    Connect();
    Read(brake);
    EXPECT_EQ(Moment(), 36U);
    Read(brake);
    EXPECT_EQ(Moment(), 38U);
}

}  // namespace
}  // namespace norvane
