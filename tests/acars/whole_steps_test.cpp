// A step is whole or undone, and so is a start.

#include <fmt/format.h>

#include <utility>

#include "common/run_error.h"
#include "common/text.h"
#include "engine_world.h"

namespace norvane::test {
namespace {

using enum Variable;

class Whole_Steps : public Engine_World {};

TEST_F(Whole_Steps, A_Failed_Start_Leaves_No_Trace_And_Closes_What_It_Opened) {
    transport.on_open = [] { return Transport_Opening{ipc_result::no_simulator, false}; };
    EXPECT_FALSE(Start());
    EXPECT_EQ(error_text, modFSUIPC::IPC_ErrorText(ipc_result::no_simulator));
    transport.on_open = nullptr;
    area.on_read = [this](std::uint32_t offset, std::uint32_t) {
        if (offset == Offset_Of(zero_fuel_weight_lbs))
            Refuse_Link(Delivery_Outcome::silent);
    };
    for (const bool was_open : {false, true}) {
        transport.on_deliver = nullptr;
        int result = 0;
        if (was_open) {
            ASSERT_TRUE(link.IPC_Open(0, result));
        }
        EXPECT_FALSE(Start());
        EXPECT_EQ(error_text, modFSUIPC::IPC_ErrorText(ipc_result::timed_out));
        EXPECT_TRUE(raised.empty());
        EXPECT_EQ(link.Is_Open(), was_open);
        EXPECT_EQ(engine->FS_VERSION() + engine->Flight_Date() + engine->Departure_ICAO(), "");
    }
    area.on_read = nullptr;
    transport.on_deliver = nullptr;
    EXPECT_TRUE(Start());
    engine->Stop_();
    EXPECT_TRUE(link.Is_Open()) << "as it was before";
}

TEST_F(Whole_Steps, Open_Only_When_Asked_To) {
    EXPECT_TRUE(engine->Start(error_text, {false, false, "", ""}));
    EXPECT_EQ(engine->FS_VERSION(), "FS2004");
    EXPECT_TRUE(raised.empty());
    Position place;
    double elevation_ft = 0;
    engine->Get_Location(place, elevation_ft);
    EXPECT_NEAR(place.latitude, 40.63975, 1e-6);
    EXPECT_EQ(elevation_ft, 13);
    bool success = false;
    engine->ReStart(success);
    EXPECT_TRUE(success && link.Is_Open());
    engine->Stop_();
    EXPECT_FALSE(link.Is_Open()) << "as it was opened here";
    engine->Refresh();
    EXPECT_EQ(Once("Error"), modFSUIPC::IPC_ErrorText(ipc_result::not_open));
}

TEST_F(Whole_Steps, Store_The_Listeners_Figures_In_The_Same_Transaction) {
    Fly_To(moment::off);
    std::string seen;
    const auto note = [&](const std::string& event) {
        seen += fmt::format("{} {} {} {}, ", event, store.Depth(), engine->Is_Stepping(),
                            store.Get("ACARS", "47", "absent"));
    };
    engine->events.FlightOFF.Connect([&](const std::string&, int) { note("OFF"); });
    engine->events.FSTime.Connect([&](const std::string&) { note("end"); });
    engine->events.FlightAtGate.Connect([&] { note("gate"); });
    engine->events.FSClosed.Connect([&](const std::string&) { note("closed"); });
    Fly(moment::off, moment::off + 1);
    EXPECT_EQ(std::exchange(seen, ""), "OFF 1 true absent, end 1 true 1217, ");
    Fly(moment::off + 1, moment::in);
    seen.clear();
    Fly(moment::in, moment::in + 1);
    Refuse_Link();
    engine->Refresh();
    EXPECT_EQ(seen, "end 1 true 1217, gate 0 false 1217, closed 0 false 1217, ");
}

TEST_F(Whole_Steps, A_Listener_Or_A_Clock_That_Fails_Loses_Nothing_Else) {
    engine->events.FlightOUT.Connect([](const std::string&, int) -> void {
        throw Run_Error(error_number::type_mismatch, "Type mismatch");
    });
    Fly_To(moment::off);
    EXPECT_EQ(Once("FuelOUT"), "20250 0");
    EXPECT_TRUE(Contains(Take_Errors().at(0), "clsACARS.Refresh()"));
    // A message that cannot read the clock carries the last time.
    Refuse_Link();
    engine->Send_Message(Message_Type::comment, "lost");
    EXPECT_TRUE(Messages(Message_Type::comment).at(0).starts_with("[2026-03-14 12:05Z]"));
    EXPECT_EQ(Count("FSClosed"), 1U);
}

}  // namespace
}  // namespace norvane::test
