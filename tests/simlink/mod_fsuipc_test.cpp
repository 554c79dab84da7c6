#include "simlink/mod_fsuipc.h"

#include <cstring>

#include "simlink/in_process_transport.h"
#include "simlink/offset_area.h"
#include "simlink/request_block.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using namespace std::chrono_literals;

class Mod_Fsuipc : public testing::Test {
  protected:
    void Open() {
        ASSERT_TRUE(link.IPC_Open(0, result)) << result;
        started = clock.Monotonic();
    }
    /// One 4-byte read; its value.
    std::uint32_t Read_Word(std::uint32_t offset) {
        std::uint32_t value = 0xEEEEEEEE;
        EXPECT_TRUE(link.IPC_Read(offset, 4, &value, result));
        link.IPC_Process(result);
        return value;
    }
    /// Deliveries end so until `count` of them have.
    void Fail_Next(int count, Delivery_Outcome outcome) {
        transport.on_deliver = [=, this, left = count](auto) mutable -> std::optional<Delivery> {
            ++deliveries;
            if (left-- <= 0)
                return std::nullopt;
            if (outcome == Delivery_Outcome::silent)
                clock.Sleep(2s);
            return Delivery{outcome, 0};
        };
    }

    test::Virtual_Clock clock;
    Offset_Area area;
    In_Process_Transport transport{area};
    modFSUIPC link{transport, clock};
    int result = -1;
    int deliveries = 0;
    std::chrono::microseconds started{0};
};

TEST_F(Mod_Fsuipc, Opening_Twice_Leaves_The_First_Link_Intact) {
    Open();
    EXPECT_EQ(result, ipc_result::okay);
    EXPECT_EQ(link.IPC_SimName(), "FS2004");
    EXPECT_EQ(link.IPC_VersionText(), "3.750");
    EXPECT_FALSE(link.IPC_Open(0, result));
    EXPECT_EQ(result, ipc_result::open);
    EXPECT_TRUE(link.Is_Open());
    EXPECT_EQ(Read_Word(0x3308), 0xFADE0007);
    link.IPC_Close();
    link.IPC_Close();
    EXPECT_TRUE(link.IPC_Open(7, result));
}

TEST_F(Mod_Fsuipc, Opening_Names_What_Is_In_Its_Way) {
    const struct {
        const char* fault;
        std::uint32_t fsuipc;
        std::uint32_t simulator;
        bool fallback;
        int requested;
        int expected;
    } cases[] = {
        {"another simulator", 0x37500000, 0xFADE0007, false, 8, ipc_result::wrong_simulator},
        {"an old FSUIPC", 0x19980004, 0xFADE0007, false, 0, ipc_result::wrong_fsuipc},
        {"no check pattern", 0x37500000, 0xFADF0007, false, 0, ipc_result::wrong_fsuipc},
        {"a client's wide link", 0x37500000, 0x00000007, true, 0, ipc_result::wide_client},
        {"no versions at all", 0, 0, false, 0, ipc_result::wrong_fsuipc},
        {"nothing", 0x19980005, 0xFADE0007, true, 7, ipc_result::okay},
    };
    for (const auto& c : cases) {
        std::memcpy(area.Bytes(0x3304, 4).data(), &c.fsuipc, 4);
        std::memcpy(area.Bytes(0x3308, 4).data(), &c.simulator, 4);
        transport.on_open = [&] { return Transport_Opening{0, c.fallback}; };
        EXPECT_EQ(link.IPC_Open(c.requested, result), c.expected == ipc_result::okay) << c.fault;
        EXPECT_EQ(result, c.expected) << c.fault;
        EXPECT_EQ(link.Is_Open(), c.expected == ipc_result::okay) << c.fault;
    }
}

TEST_F(Mod_Fsuipc, A_Transport_That_Cannot_Open_Gives_Its_Code) {
    for (int code = ipc_result::no_simulator; code <= ipc_result::no_view; ++code) {
        transport.on_open = [&] { return Transport_Opening{code, false}; };
        EXPECT_FALSE(link.IPC_Open(0, result));
        EXPECT_EQ(result, code);
        EXPECT_FALSE(link.Is_Open());
    }
}

TEST_F(Mod_Fsuipc, Versions_That_Come_Late_Are_Asked_For_Five_Times) {
    area.Set_Simulator_Version(0);
    std::memset(area.Bytes(0x3304, 8).data(), 0, 8);
    transport.on_deliver = [&](auto) -> std::optional<Delivery> {
        if (++deliveries == 5) {
            area.Set_Simulator_Version(8);
            std::memcpy(area.Bytes(0x3304, 4).data(), "\x01\x00\x50\x37", 4);
        }
        return std::nullopt;
    };
    EXPECT_TRUE(link.IPC_Open(0, result));
    EXPECT_EQ(deliveries, 5);
    EXPECT_EQ(clock.Monotonic(), 500ms);
    EXPECT_EQ(link.IPC_SimName(), "FSX");
    EXPECT_EQ(link.IPC_VersionText(), "3.750a");
}

TEST_F(Mod_Fsuipc, A_Failed_First_Exchange_Closes_The_Link_Again) {
    Fail_Next(11, Delivery_Outcome::silent);
    EXPECT_FALSE(link.IPC_Open(0, result));
    EXPECT_EQ(result, ipc_result::timed_out);
    EXPECT_FALSE(link.Is_Open());
    EXPECT_FALSE(link.IPC_Process(result));
    EXPECT_EQ(result, ipc_result::not_open);
    EXPECT_TRUE(link.IPC_Open(0, result));
}

TEST_F(Mod_Fsuipc, The_Block_Takes_Requests_To_Its_Last_Byte) {
    const struct {
        bool read;
        std::uint32_t size;
        int expected;
    } cases[] = {
        {true, 32492, ipc_result::okay},
        {true, 32493, ipc_result::block_full},
        {false, 32496, ipc_result::okay},
        {false, 32497, ipc_result::block_full},
        {true, 0xFFFFFFFF, ipc_result::block_full},
        {true, 0, ipc_result::okay},
    };
    std::vector<std::byte> data(32768);
    for (const auto& c : cases) {
        Open();
        const bool queued = c.read ? link.IPC_Read(0x4000, c.size, data.data(), result)
                                   : link.IPC_Write(0x4000, c.size, data.data(), result);
        EXPECT_EQ(queued, c.expected == ipc_result::okay) << c.size;
        EXPECT_EQ(result, c.expected) << c.size;
        // A refused request queues nothing.
        const bool processed = link.IPC_Process(result);
        EXPECT_EQ(processed, queued) << c.size;
        EXPECT_EQ(result, queued ? ipc_result::okay : ipc_result::nothing_queued);
        link.IPC_Close();
    }
}

TEST_F(Mod_Fsuipc, A_Closed_Link_Refuses_And_An_Empty_Queue_Is_Not_Sent) {
    std::uint32_t value = 0;
    EXPECT_FALSE(link.IPC_Read(0x3304, 4, &value, result));
    EXPECT_EQ(result, ipc_result::not_open);
    EXPECT_FALSE(link.IPC_Write(0x3304, 4, &value, result));
    EXPECT_FALSE(link.IPC_WriteString(0x3380, 4, "text", result));
    EXPECT_EQ(result, ipc_result::not_open);
    Open();
    EXPECT_FALSE(link.IPC_Process(result));
    EXPECT_EQ(result, ipc_result::nothing_queued);
}

TEST_F(Mod_Fsuipc, Requests_Of_One_Exchange_Are_Carried_Out_In_Order) {
    Open();
    std::uint16_t before = 1;
    std::uint16_t after = 1;
    const std::uint16_t seventeen = 17;
    EXPECT_TRUE(link.IPC_Read(0x32FA, 2, &before, result));
    EXPECT_TRUE(link.IPC_Write(0x32FA, 2, &seventeen, result));
    EXPECT_TRUE(link.IPC_Read(0x32FA, 2, nullptr, result));
    EXPECT_TRUE(link.IPC_Read(0x32FA, 2, &after, result));
    EXPECT_TRUE(link.IPC_WriteString(0x3380, 8, "OUT", result));
    EXPECT_TRUE(link.IPC_WriteString(0x3390, 3, "longer", result));
    EXPECT_EQ(after, 1) << "destinations are filled by the exchange only";
    EXPECT_TRUE(link.IPC_Process(result));
    EXPECT_EQ(before, 0);
    EXPECT_EQ(after, 17);
    EXPECT_EQ(std::memcmp(area.Bytes(0x3380, 8).data(), "OUT\0\0\0\0", 8), 0);
    EXPECT_EQ(std::memcmp(area.Bytes(0x3390, 4).data(), "lon\0", 4), 0);
}

TEST_F(Mod_Fsuipc, Failed_Sends_Are_Repeated_Ten_Times) {
    const struct {
        int failures;
        Delivery_Outcome outcome;
        int expected;
        std::chrono::milliseconds lasts;
    } cases[] = {
        {10, Delivery_Outcome::failed, ipc_result::okay, 1000ms},
        {11, Delivery_Outcome::failed, ipc_result::send_failed, 1000ms},
        {10, Delivery_Outcome::silent, ipc_result::okay, 21000ms},
        {11, Delivery_Outcome::silent, ipc_result::timed_out, 23000ms},
    };
    Open();
    for (const auto& c : cases) {
        deliveries = 0;
        const auto begin = clock.Monotonic();
        Fail_Next(c.failures, c.outcome);
        const std::uint32_t value = Read_Word(0x3304);
        EXPECT_EQ(result, c.expected);
        EXPECT_EQ(value, c.expected == ipc_result::okay ? 0x37500000 : 0xEEEEEEEE);
        EXPECT_EQ(deliveries, 11);
        EXPECT_EQ(clock.Monotonic() - begin, c.lasts);
        // What failed is not sent again with the next request.
        transport.on_deliver = nullptr;
        EXPECT_FALSE(link.IPC_Process(result));
        EXPECT_EQ(result, ipc_result::nothing_queued);
    }
    // A program that is about to end waits for none of the other tries.
    deliveries = 0;
    transport.given_up = true;
    Fail_Next(11, Delivery_Outcome::silent);
    Read_Word(0x3304);
    EXPECT_EQ(deliveries, 1);
}

TEST_F(Mod_Fsuipc, A_Refusal_Is_Bad_Data_And_Is_Not_Repeated) {
    Open();
    for (const std::uint32_t answer : {0U, 2U, 0xFFFFFFFFU}) {
        deliveries = 0;
        transport.on_deliver = [&](auto) {
            ++deliveries;
            return Delivery{Delivery_Outcome::answered, answer};
        };
        EXPECT_EQ(Read_Word(0x3304), 0xEEEEEEEE);
        EXPECT_EQ(result, ipc_result::bad_data);
        EXPECT_EQ(deliveries, 1);
    }
    transport.on_deliver = nullptr;
    EXPECT_EQ(Read_Word(0xFFFD), 0xEEEEEEEE) << "a read beyond the area";
    EXPECT_EQ(result, ipc_result::bad_data);
    EXPECT_EQ(Read_Word(0x3304), 0x37500000);
}

TEST_F(Mod_Fsuipc, An_Answer_That_Is_Not_The_Request_Reaches_No_Memory) {
    Open();
    // Each 32-bit word of the headers in turn, and the end record. Two reads of 4 bytes follow one
    // another: 16 + 4, 16 + 4, end.
    const std::size_t words[] = {0, 4, 8, 12, 20, 24, 28, 32, 40};
    for (const std::size_t place : words) {
        for (const std::uint32_t garbage : {0U, 1U, 2U, 3U, 7U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
            std::uint32_t fields[] = {0xEEEEEEEE, 0xEEEEEEEE, 0xEEEEEEEE};
            EXPECT_TRUE(link.IPC_Read(0x3304, 4, &fields[0], result));
            EXPECT_TRUE(link.IPC_Read(0x3308, 4, &fields[1], result));
            bool changed = false;
            transport.on_deliver = [&](std::span<std::byte> block) {
                area.Process(block);
                changed = Load_U32(block, place) != garbage;
                Store_U32(block, place, garbage);
                return Delivery{Delivery_Outcome::answered, 1};
            };
            const bool processed = link.IPC_Process(result);
            EXPECT_EQ(processed, !changed) << place << ", " << garbage;
            EXPECT_EQ(result, changed ? ipc_result::bad_data : ipc_result::okay);
            EXPECT_EQ(fields[0], changed ? 0xEEEEEEEE : 0x37500000);
            EXPECT_EQ(fields[1], changed ? 0xEEEEEEEE : 0xFADE0007);
            EXPECT_EQ(fields[2], 0xEEEEEEEE);
        }
    }
}

TEST_F(Mod_Fsuipc, Texts_Of_Codes_Versions_And_Names) {
    EXPECT_EQ(modFSUIPC::IPC_ErrorText(0), "Okay");
    EXPECT_EQ(modFSUIPC::IPC_ErrorText(2),
              "Unable to connect to FSUIPC.  Possible causes:\r\n"
              "1) Flight Simulator may not be running\r\n"
              "2) The FSUIPC.DLL may not be installed in ..\\Flight Simulator\\Modules.");
    EXPECT_EQ(modFSUIPC::IPC_ErrorText(12), "IPC sendmessage failed all retries");
    EXPECT_EQ(modFSUIPC::IPC_ErrorText(15),
              "Read or Write request cannot be added, memory for Process is full");
    // What the pilot can check stands with the failures that he can do something about.
    for (int code = 0; code <= 15; ++code) {
        const std::string check = link.What_To_Check(modFSUIPC::IPC_ErrorText(code));
        const bool absent = code == 2 || code == 11 || code == 12;
        const bool other = code == 7 || code == 8 || code == 13 || code == 14;
        EXPECT_EQ(check.find("127.0.0.1:8338") != std::string::npos, absent || other) << code;
        EXPECT_EQ(check.find("norvane-bridge") != std::string::npos, absent) << code;
    }
    for (const int outside : {-1, 16, 99})
        EXPECT_NE(modFSUIPC::IPC_ErrorText(outside).find(std::to_string(outside)),
                  std::string::npos);

    const struct {
        std::uint32_t fsuipc;
        std::uint16_t simulator;
        const char* text;
        const char* name;
    } cases[] = {
        {0x37500000, 6, "3.750", "FS2002"},
        {0x37500003, 1, "3.750c", "FS98"},
        {0x4999001A, 9, "4.999z", "FSX"},
        {0x19980005, 100, "1.998e", "FSX"},
    };
    EXPECT_EQ(link.IPC_SimName(), "Any");
    EXPECT_EQ(link.IPC_VersionText(), "0.000");
    for (const auto& c : cases) {
        std::memcpy(area.Bytes(0x3304, 4).data(), &c.fsuipc, 4);
        area.Set_Simulator_Version(c.simulator);
        Open();
        EXPECT_EQ(link.IPC_VersionText(), c.text);
        EXPECT_EQ(link.IPC_SimName(), c.name);
        link.IPC_Close();
    }
}

}  // namespace
}  // namespace norvane
