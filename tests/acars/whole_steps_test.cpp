// A step is whole or undone: whatever the link refuses, a flight comes out the same.

#include <fmt/format.h>

#include <optional>
#include <utility>

#include "common/run_error.h"
#include "common/text.h"
#include "engine_world.h"

namespace norvane::test {
namespace {

using enum Variable;

class Whole_Steps : public Engine_World {
  protected:
    Whole_Steps() {
        settings.Set_WX_URL("FS");
        transport.on_deliver = [this](std::span<std::byte>) -> std::optional<Delivery> {
            if (++exchanges != m_refused)
                return std::nullopt;
            return Delivery{Delivery_Outcome::answered, 0};
        };
    }

    /// One flight in which exchange number `refused` (from 1; 0: none) is refused. What the panel
    /// does when the link fails is done here: pause, resume, and the step is taken again.
    std::string Fly_Refusing(std::size_t refused) {
        Begin_Anew();
        failures.clear();
        exchanges = 0;
        m_refused = refused;
        while (!Start())
            failures.push_back(error_text);
        for (std::size_t i = 0; i <= moment::in; ++i) {
            if (i == moment::level)
                engine->Report_Position();
            Jet_Flight()[i](area);
            const std::size_t before = raised.size();
            engine->Refresh();
            while (raised.back().starts_with("FSClosed ")) {
                EXPECT_EQ(raised.size(), before + 1) << "an undone step says nothing else";
                failures.push_back(Once("FSClosed"));
                engine->Paused();
                engine->Resume_();
                raised.resize(before);
                engine->Refresh();
            }
        }
        return Take_Raised();
    }

    std::size_t exchanges = 0;
    std::vector<std::string> failures;

  private:
    std::size_t m_refused = 0;
};

TEST_F(Whole_Steps, Come_Out_The_Same_Whichever_Exchange_Is_Refused) {
    const auto unbroken = Fly_Refusing(0);
    ASSERT_TRUE(failures.empty());
    const std::size_t all = exchanges;
    ASSERT_GT(all, 400U);
    for (std::size_t refused = 1; refused <= all; ++refused) {
        ASSERT_EQ(Fly_Refusing(refused), unbroken) << refused;
        ASSERT_EQ(failures.size(), 1U) << refused;
        ASSERT_FALSE(failures[0].empty());
    }
}

TEST_F(Whole_Steps, A_Failed_Start_Leaves_No_Trace) {
    transport.on_deliver = nullptr;
    engine->Set_Airline_Flight_Number("kept");
    area.on_read = [this](std::uint32_t offset, std::uint32_t) {
        if (offset == Offset_Of(zero_fuel_weight_lbs))
            Refuse_Link(Delivery_Outcome::silent);
    };
    EXPECT_FALSE(Start());
    EXPECT_EQ(error_text, modFSUIPC::IPC_ErrorText(ipc_result::timed_out));
    EXPECT_TRUE(raised.empty());
    EXPECT_FALSE(link.Is_Open());
    EXPECT_EQ(engine->FS_VERSION() + engine->Flight_Date() + engine->Departure_ICAO(), "");

    // A link that was open before stays open.
    area.on_read = nullptr;
    transport.on_deliver = nullptr;
    int result = 0;
    ASSERT_TRUE(link.IPC_Open(0, result));
    Refuse_Link();
    EXPECT_FALSE(Start());
    EXPECT_TRUE(link.Is_Open());
    transport.on_deliver = nullptr;
    EXPECT_TRUE(Start());
    engine->Stop_();
    EXPECT_TRUE(link.Is_Open());
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
    transport.on_open = [] { return Transport_Opening{ipc_result::no_simulator, false}; };
    bool success = true;
    engine->ReStart(success);
    EXPECT_FALSE(success);
    EXPECT_FALSE(Start());
    EXPECT_EQ(error_text, modFSUIPC::IPC_ErrorText(ipc_result::no_simulator));
    engine->Refresh();
    EXPECT_EQ(Once("Error"), modFSUIPC::IPC_ErrorText(ipc_result::not_open));
    transport.on_open = nullptr;
    engine->ReStart(success);
    EXPECT_TRUE(success && link.Is_Open());
    engine->Stop_();
    EXPECT_FALSE(link.Is_Open()) << "as it was opened here";
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

TEST_F(Whole_Steps, Commands_Given_During_A_Step_Wait_For_Its_End) {
    ASSERT_TRUE(Start());
    engine->events.FlightOUT.Connect([&](const std::string&, int) {
        engine->Refresh();
        engine->Reset();
        std::string text;
        EXPECT_FALSE(engine->Start(text, {}));
        EXPECT_FALSE(text.empty());
        EXPECT_EQ(engine->TIME_OUT(), "1205");
    });
    Fly(moment::parked, moment::out + 1);
    EXPECT_EQ(raised.back(), "Reset");
    EXPECT_EQ(*(raised.end() - 2), "FSTime 1205");
    EXPECT_EQ(engine->TIME_OUT(), "");
}

}  // namespace
}  // namespace norvane::test
