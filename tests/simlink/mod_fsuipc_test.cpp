// The client's side of the link: what is queued, sent and taken from an answer, and the typed
// reader on top of it.

#include "simlink/mod_fsuipc.h"

#include <gmock/gmock.h>

#include <cstring>

#include "simlink/in_process_transport.h"
#include "simlink/offset_area.h"
#include "simlink/request_block.h"
#include "simlink/sim_reader.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using namespace std::chrono_literals;
using namespace ipc_result;
using enum Variable;
using enum Delivery_Outcome;
using testing::HasSubstr;

constexpr std::uint32_t unread = 0xEEEEEEEE;

class Mod_Fsuipc : public testing::Test {
  protected:
    /// The result of an operation, which agrees with what it returned.
    int Result_Of(const std::function<bool(int&)>& operation) {
        int result = -1;
        const bool good = operation(result);
        EXPECT_EQ(good, result == okay);
        return result;
    }
    int Open(int version = 0) {
        const int result = Result_Of([&](int& r) { return link.IPC_Open(version, r); });
        EXPECT_EQ(link.Is_Open(), result == okay || result == ipc_result::open);
        return result;
    }
    int Read(std::uint32_t offset, std::uint32_t size, void* to) {
        return Result_Of([&](int& r) { return link.IPC_Read(offset, size, to, r); });
    }
    int Write(std::uint32_t offset, std::uint32_t size, const void* from) {
        return Result_Of([&](int& r) { return link.IPC_Write(offset, size, from, r); });
    }
    int Write_Text(std::uint32_t offset, std::uint32_t size, std::string_view text) {
        return Result_Of([&](int& r) { return link.IPC_WriteString(offset, size, text, r); });
    }
    int Process() {
        return Result_Of([&](int& r) { return link.IPC_Process(r); });
    }
    void Set_Versions(std::uint32_t fsuipc, std::uint32_t simulator) {
        std::memcpy(area.Bytes(0x3304, 4).data(), &fsuipc, 4);
        std::memcpy(area.Bytes(0x3308, 4).data(), &simulator, 4);
    }
    /// Deliveries end so until `count` of them have.
    void Fail_Next(int count, Delivery delivery) {
        deliveries = 0;
        transport.on_deliver = [=, this, left = count](auto) mutable -> std::optional<Delivery> {
            ++deliveries;
            if (left-- <= 0)
                return std::nullopt;
            if (delivery.outcome == silent)
                clock.Sleep(2s);
            return delivery;
        };
    }

    test::Virtual_Clock clock;
    Offset_Area area;
    In_Process_Transport transport{area};
    modFSUIPC link{transport, clock};
    Sim_Reader reader{link};
    int deliveries = 0;
};

TEST_F(Mod_Fsuipc, Opening_Names_What_Is_In_Its_Way) {
    const struct {
        const char* fault;
        std::uint32_t fsuipc, simulator;
        bool fallback;
        int requested, expected;
    } cases[] = {
        {"another simulator", 0x37500000, 0xFADE0007, false, 8, wrong_simulator},
        {"an old FSUIPC", 0x19980004, 0xFADE0007, false, 0, wrong_fsuipc},
        {"no check pattern", 0x37500000, 0xFADF0007, false, 0, wrong_fsuipc},
        {"a client's wide link", 0x37500000, 0x00000007, true, 0, wide_client},
        {"no versions at all", 0, 0, false, 0, wrong_fsuipc},
        {"nothing", 0x19980005, 0xFADE0007, true, 7, okay},
        {"itself", 0x37500000, 0xFADE0007, false, 0, ipc_result::open},
    };
    for (const auto& c : cases) {
        Set_Versions(c.fsuipc, c.simulator);
        transport.on_open = [&] { return Transport_Opening{0, c.fallback}; };
        EXPECT_EQ(Open(c.requested), c.expected) << c.fault;
    }
    EXPECT_EQ(Read(0x3308, 4, nullptr), okay) << "the first link is intact";
    link.IPC_Close();
    transport.on_open = [&] { return Transport_Opening{no_atom, false}; };
    EXPECT_EQ(Open(), no_atom) << "the transport's own code";
    transport.on_open = nullptr;
    Fail_Next(11, {silent, 0});
    EXPECT_EQ(Open(), timed_out);
    EXPECT_EQ(Process(), not_open);
    EXPECT_EQ(Open(), okay);
}

TEST_F(Mod_Fsuipc, The_Block_Takes_Requests_To_Its_Last_Byte) {
    const struct {
        bool read;
        std::uint32_t size;
        int expected;
    } cases[] = {
        {true, 32492, okay},        {true, 32493, block_full},      {false, 32496, okay},
        {false, 32497, block_full}, {true, 0xFFFFFFFF, block_full}, {true, 0, okay},
    };
    std::vector<std::byte> data(32768);
    const auto queue = [&](bool read, std::uint32_t size) {
        return read ? Read(0x4000, size, data.data()) : Write(0x4000, size, data.data());
    };
    EXPECT_EQ(queue(true, 4), not_open);
    EXPECT_EQ(queue(false, 4), not_open);
    EXPECT_EQ(Write_Text(0x3380, 4, "text"), not_open);
    EXPECT_EQ(Open(), okay);
    for (const auto& c : cases) {
        EXPECT_EQ(queue(c.read, c.size), c.expected) << c.size;
        // A refused request queues nothing.
        EXPECT_EQ(Process(), c.expected == okay ? okay : nothing_queued) << c.size;
    }
}

TEST_F(Mod_Fsuipc, Failed_Sends_Are_Repeated_Ten_Times_And_Refusals_Never) {
    const struct {
        int failures;
        Delivery delivery;
        int expected, deliveries;
        std::chrono::milliseconds lasts;
    } cases[] = {
        {10, {failed, 0}, okay, 11, 1000ms},  {11, {failed, 0}, send_failed, 11, 1000ms},
        {10, {silent, 0}, okay, 11, 21000ms}, {11, {silent, 0}, timed_out, 11, 23000ms},
        {1, {answered, 0}, bad_data, 1, 0ms}, {1, {answered, 2}, bad_data, 1, 0ms},
    };
    EXPECT_EQ(Open(), okay);
    for (const auto& c : cases) {
        std::uint32_t value = unread;
        const auto begin = clock.Monotonic();
        Fail_Next(c.failures, c.delivery);
        EXPECT_EQ(Read(0x3304, 4, &value), okay);
        EXPECT_EQ(Process(), c.expected);
        EXPECT_EQ(value, c.expected == okay ? 0x37500000 : unread);
        EXPECT_EQ(deliveries, c.deliveries);
        EXPECT_EQ(clock.Monotonic() - begin, c.lasts);
        EXPECT_EQ(Process(), nothing_queued) << "what failed is not sent with the next request";
    }
    transport.given_up = true;
    Fail_Next(11, {silent, 0});
    EXPECT_EQ(Read(0x3304, 4, nullptr), okay);
    EXPECT_EQ(Process(), timed_out);
    EXPECT_EQ(deliveries, 1) << "a program that is about to end tries no longer";
}

TEST_F(Mod_Fsuipc, An_Answer_That_Is_Not_The_Request_Reaches_No_Memory) {
    EXPECT_EQ(Open(), okay);
    using Fields = std::array<std::uint32_t, 3>;
    const Fields nothing{unread, unread, unread};
    // Each word of the headers, and the end record, of 16 + 4, 16 + 4 and 4 bytes.
    for (const std::size_t place : {0U, 4U, 8U, 12U, 20U, 24U, 28U, 32U, 40U}) {
        for (const std::uint32_t garbage : {0U, 1U, 2U, 3U, 7U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
            Fields fields = nothing;
            EXPECT_EQ(Read(0x3304, 4, &fields[0]), okay);
            EXPECT_EQ(Read(0x3308, 4, &fields[1]), okay);
            bool changed = false;
            transport.on_deliver = [&](std::span<std::byte> block) {
                area.Process(block);
                changed = Load_U32(block, place) != garbage;
                Store_U32(block, place, garbage);
                return Delivery{answered, 1};
            };
            const int result = Process();
            EXPECT_EQ(result, changed ? bad_data : okay) << place << ", " << garbage;
            EXPECT_EQ(fields, changed ? nothing : Fields({0x37500000, 0xFADE0007, unread}));
        }
    }
}

TEST_F(Mod_Fsuipc, Texts_Tell_Failures_Versions_And_What_The_Pilot_Can_Check) {
    EXPECT_EQ(modFSUIPC::IPC_ErrorText(2),
              "Unable to connect to FSUIPC.  Possible causes:\r\n"
              "1) Flight Simulator may not be running\r\n"
              "2) The FSUIPC.DLL may not be installed in ..\\Flight Simulator\\Modules.");
    EXPECT_EQ(modFSUIPC::IPC_ErrorText(12), "IPC sendmessage failed all retries");
    for (const int outside : {-1, 16, 99})
        EXPECT_THAT(modFSUIPC::IPC_ErrorText(outside), HasSubstr(std::to_string(outside)));
    for (const int code : {no_simulator, timed_out, send_failed, wrong_fsuipc, bad_data, no_view}) {
        const std::string check = link.What_To_Check(modFSUIPC::IPC_ErrorText(code));
        const bool absent = code == no_simulator || code == timed_out || code == send_failed;
        EXPECT_EQ(check.find("127.0.0.1:8338") == std::string::npos, code == no_view) << code;
        EXPECT_EQ(check.find("norvane-bridge") != std::string::npos, absent) << code;
    }
    const struct {
        std::uint32_t fsuipc, simulator;
        const char* versions;
    } cases[] = {
        {0, 0, "0.000 of Any"},
        {0x37500000, 6, "3.750 of FS2002"},
        {0x37500003, 1, "3.750c of FS98"},
        {0x4999001A, 9, "4.999z of FSX"},
        {0x19980005, 100, "1.998e of FSX"},
        {0x04990001, 0, "0.499 of FSX"},
        {0x05100001, 0, "0.510a of FSX"},
    };
    for (const auto& c : cases) {
        if (c.fsuipc != 0) {
            Set_Versions(c.fsuipc, 0xFADE0000 | c.simulator);
            // One that is too old is told of as well.
            EXPECT_THAT(Open(), testing::AnyOf(okay, wrong_fsuipc));
        }
        EXPECT_EQ(link.IPC_VersionText() + " of " + link.IPC_SimName(), c.versions);
        link.IPC_Close();
    }
}

class Sim_Readers : public Mod_Fsuipc {
    void SetUp() override {
        EXPECT_EQ(Open(), okay);
        Fail_Next(0, {});
    }
};

TEST_F(Sim_Readers, Values_Come_Decoded_One_Exchange_Each) {
    area.Set(engine_fuel_flow_pph, 2500.5, 2);
    area.Set_Text(atc_identifier, "ABCDEFGHIJKL");
    EXPECT_EQ(reader.Read(engine_fuel_flow_pph, 2), 2500.5);
    EXPECT_EQ(reader.Read_Whole(engine_fuel_flow_pph, 2), 2500);
    EXPECT_EQ(reader.Read_Text(atc_identifier), "ABCDEFGHIJKL");
    EXPECT_EQ(deliveries, 3);
    EXPECT_EQ(reader.Read(aircraft_title), 0) << "a text is no number";
    for (std::size_t tank = 0; tank < tank_count; ++tank)
        area.Set_Tank(tank, 10, 100);
    EXPECT_NEAR(reader.Read_Fuel_Gallons(), 110, 0.001);
    area.Set_Tank(4, -10, 100);
    EXPECT_NEAR(reader.Read_Fuel_Gallons(), 100, 0.001) << "without the broken one";
    EXPECT_FALSE(reader.Failed());
}

TEST_F(Sim_Readers, After_A_Failed_Exchange_The_Step_Leaves_The_Link_Alone) {
    area.Set(altitude_ft, 35000);
    area.Set_Tank(0, 10, 100);
    transport.on_deliver = [&](auto) -> std::optional<Delivery> {
        return Delivery{answered, ++deliveries == 20 ? 0U : 1U};
    };
    EXPECT_EQ(reader.Read_Fuel_Gallons(), 0) << "half the fuel is no fuel";
    EXPECT_EQ(reader.Read(altitude_ft), 0);
    EXPECT_EQ(reader.Read_Text(atc_airline), "");
    EXPECT_FALSE(reader.Write_Display("OUT", 8));
    EXPECT_EQ(deliveries, 20);
    ASSERT_TRUE(reader.Failed());
    EXPECT_TRUE(reader.Failed()->exchange);
    EXPECT_EQ(reader.Failed()->text, "IPC request contains bad data");
    transport.on_deliver = nullptr;
    reader.Begin_Step();
    EXPECT_EQ(reader.Read(altitude_ft), 35000);
    link.IPC_Close();
    EXPECT_EQ(reader.Read_Whole(altitude_ft), 0);
    EXPECT_FALSE(reader.Failed()->exchange);
    EXPECT_EQ(reader.Failed()->text, "Call cannot execute, link not Open");
}

TEST_F(Sim_Readers, A_Shown_Line_Goes_Out_With_Its_Nul_And_Control_In_One_Exchange) {
    std::uint32_t text_size = 0;
    area.on_write = [&](auto, std::uint32_t size) { text_size = std::max(text_size, size); };
    EXPECT_TRUE(reader.Write_Display("ACARS/ OUT 1405", -17));
    EXPECT_EQ(deliveries, 1);
    EXPECT_EQ(text_size, 16U);
    EXPECT_EQ(area.Get_Text(display_text), "ACARS/ OUT 1405");
    EXPECT_EQ(area.Get(display_control), -17);
    // A line beyond the block is refused, and blocks nothing behind it.
    EXPECT_TRUE(reader.Write_Display(std::string(32481, 'x'), 8));
    EXPECT_FALSE(reader.Write_Display(std::string(32482, 'x'), 8));
    EXPECT_FALSE(reader.Failed()->exchange);
    // Requests of one exchange are carried out in order.
    std::uint16_t before = 1;
    std::uint16_t after = 1;
    const std::uint16_t seventeen = 17;
    EXPECT_EQ(Read(0x32FA, 2, &before), okay);
    EXPECT_EQ(Write(0x32FA, 2, &seventeen), okay);
    EXPECT_EQ(Read(0x32FA, 2, &after), okay);
    EXPECT_EQ(Write_Text(0x3390, 3, "longer"), okay);
    EXPECT_EQ(Process(), okay);
    EXPECT_EQ(after, 17);
    EXPECT_EQ(before, static_cast<std::uint16_t>(8));
    EXPECT_EQ(std::memcmp(area.Bytes(0x3390, 4).data(), "lonx", 4), 0);
}

}  // namespace
}  // namespace norvane
