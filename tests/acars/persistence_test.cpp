// A flight that outlasts the program: what is stored when, and what becomes of it.

#include "common/text.h"
#include "engine_world.h"

namespace norvane::test {
namespace {

using enum Variable;

constexpr std::string_view section = "ACARS";

class Persistence : public Engine_World {
  protected:
    /// Puts "KEY=TEXT|KEY=TEXT..." into the store.
    void Store(const std::string& pairs) {
        for (const std::string& pair : Split(pairs, '|'))
            store.Set(section, Before(pair, "="), pair.substr(pair.find('=') + 1));
    }
    std::string Stored(int key) { return store.Get(section, std::to_string(key), "absent"); }
};

TEST_F(Persistence, Stores_From_Off_To_The_Step_Of_In_Only) {
    settings.Set_ACARS_Fuel(unit::kilograms);
    settings.Set_ACARS_Time(time_kind::local);
    Fly_To(moment::off);
    EXPECT_EQ(Stored(45), "absent");
    Fly(moment::off, moment::off + 1);
    std::string stored;
    for (int key = 45; key <= 65; ++key)
        stored += Stored(key) + "|";
    EXPECT_EQ(stored, "2|1205|1217|||0705|0717|||20250|19575|||9185|8879|||3000|2900|||");
    EXPECT_NEAR(std::stod(Stored(66)), 40.63975, 1e-9);
    EXPECT_NEAR(std::stod(Stored(67)), -73.77893, 1e-9);
    Fly(moment::off + 1, moment::on + 1);
    EXPECT_EQ(Stored(45) + Stored(48), "31340");
    Fly(moment::in, moment::in + 1);
    EXPECT_EQ(Stored(45) + Stored(49), "41352");
    // From here on it is the panel's to delete.
    store.Delete_Section(section);
    engine->Refresh();
    engine->Paused();
    EXPECT_EQ(Stored(45), "absent");
    EXPECT_EQ(store.Depth(), 0);
}

TEST_F(Persistence, Stores_Between_Steps) {
    Fly_To(moment::level);
    for (const auto& store_now : std::vector<std::function<void()>>{
             [&] { engine->Store(); }, [&] { engine->Paused(); },
             [&] { engine->Send_Message(Message_Type::comment, ""); }}) {
        store.Delete_Section(section);
        store_now();
        EXPECT_EQ(Stored(47), "1217");
    }
    EXPECT_EQ(Count("Paused"), 1U);
    EXPECT_EQ(store.Get(section, "MessageCounts"), "3 1 1 0 0 0 0 0 0 1 0 0");
}

TEST_F(Persistence, Takes_Up_A_Flight_Of_Which_Only_The_Numbered_Keys_Are_Stored) {
    settings.Set_ACARS_RecordArrival(1);
    settings.Set_WX_URL("FS");
    Store("45=2|46=1405|47=1417|66=40.5|67=-73.5");
    // In the air at the moment of the restart; then down without another climb.
    Jet_Flight()[moment::off](area);
    ASSERT_TRUE(Start(true));
    EXPECT_EQ(Count("WXDep") + Count("ICAODep"), 0U);
    Fly(moment::on, moment::on + 1);
    EXPECT_EQ(Count("FlightOFF"), 0U);
    EXPECT_EQ(Once("FlightON"), "1340 1");

    // Killed after ON: the arrival is looked up again without a word.
    Store("ArrivalKnown=False|ArrivalICAO=|ArrivalName=");
    Replace_Engine();
    raised.clear();
    ASSERT_TRUE(Start(true));
    EXPECT_EQ(Count("ICAOArr"), 0U);
    EXPECT_EQ(engine->Arrival_ICAO(), "KBOS");
    engine->Send_Message(Message_Type::altitude, "");
    EXPECT_TRUE(Messages(Message_Type::altitude).at(0).ends_with("/POS 42.36000 -71.01000"));
    Fly(moment::in, moment::in + 1);
    EXPECT_EQ(Once("BlockTimeHHMM"), "23:47");
    EXPECT_EQ(Once("Distance"), "158");
}

TEST_F(Persistence, A_Flight_That_Had_Landed_Ends_Near_Where_It_Did) {
    for (const int touch_and_go : {0, 1}) {
        settings.Set_ACARS_TouchAndGo(touch_and_go);
        Begin_Anew();
        Fly_To(moment::in);
        Replace_Engine();
        raised.clear();
        // At the gate of the departure, as the simulator starts, then flying past there.
        Jet_Flight()[moment::parked](area);
        ASSERT_TRUE(Start(true));
        for (std::size_t step = 0; step < 20; ++step) {
            Put(on_ground, step < 10 ? 1 : 0, altitude_ft, step < 10 ? 13 : 3000);
            engine->Refresh();
        }
        EXPECT_EQ(Count("FlightIN") + Count("TouchAndGo"), 0U);
        EXPECT_EQ(Once("Elsewhere") + " " + Once("MaxTaxiOrigin"), "162 17");
        EXPECT_EQ(Stored(45), "3");
        area.Set(on_ground, 1);
        Fly(moment::in, moment::in + 1);  // 0.3 nm from the runway
        EXPECT_EQ(Once("BlockTimeHHMM"), "1:47");
    }
}

TEST_F(Persistence, A_Hop_Stored_Before_It_Climbed_Is_Not_Taken_For_A_Landing) {
    Fly_To(moment::off + 1);  // 20 ft up
    Replace_Engine();
    area.Set(on_ground, 1);
    ASSERT_TRUE(Start(true));
    engine->Refresh();
    EXPECT_EQ(Count("FlightON"), 0U);
    // Without that knowledge, a flight that was in the air had climbed.
    store.Delete_Section(section);
    Store("45=2|66=1|67=1");
    Replace_Engine();
    ASSERT_TRUE(Start(true));
    engine->Refresh();
    EXPECT_EQ(Count("FlightON"), 1U);
}

TEST_F(Persistence, Reports_What_Cannot_Be_Read_And_Goes_On) {
    ASSERT_TRUE(Start(true));  // nothing stored
    const std::string report = Take_Errors().at(0);
    EXPECT_TRUE(Contains(report, "clsACARS.Restore()") && Contains(report, "Error Number: 13"));
    for (const std::string phase : {"", "x", "7", "-1", "1e99"}) {
        Store("67=12,5|45=" + phase);
        Replace_Engine();
        ASSERT_TRUE(Start(true));
        EXPECT_EQ(Take_Errors().size(), 1U);
        engine->Refresh();
        EXPECT_EQ(engine->TIME_OUT(), "") << phase;
    }
}

}  // namespace
}  // namespace norvane::test
