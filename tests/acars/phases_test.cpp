// When a flight goes from one phase to the next, and what is tracked in between.

#include "engine_world.h"

namespace norvane::test {
namespace {

using enum Variable;

class Phases : public Engine_World {
  protected:
    /// In the air, at an altitude with a vertical speed.
    void Fly_At(double feet, double speed_fpm) {
        Put(on_ground, 0, altitude_ft, feet);
        Set(vertical_speed_fpm, speed_fpm);
    }
    std::string Altitude_Texts() const {
        std::string texts;
        for (const std::string& message : Messages(Message_Type::altitude)) {
            const auto begin = message.find("\r\nALT ") + 6;
            texts += message.substr(begin, message.find("\r\n", begin) - begin) + ", ";
        }
        return texts;
    }
};

TEST_F(Phases, Wait_For_Slewing_To_End_And_For_A_Simulator) {
    ASSERT_TRUE(Start());
    area.Set(slew_mode, 1);
    Set(parking_brake, 0);
    area.Set_Simulator_Version(0);
    Set(slew_mode, 0);
    EXPECT_EQ(Count("FlightOUT"), 0U);
    EXPECT_EQ(Count("FSTime"), 2U);  // the clock runs on
    area.Set_Simulator_Version(7);
    engine->Refresh();
    EXPECT_EQ(Count("FlightOUT"), 1U);
}

TEST_F(Phases, Reach_Off_Only_Above_The_Take_Off_Altitude) {
    settings.Set_ACARS_TakeOff_Alt(82);
    area.Set(altitude_ft, 0);
    ASSERT_TRUE(Start());
    Set(parking_brake, 0);
    // 82.02 ft and 85.3 ft: the simulator counts whole metres.
    Fly_At(82.1, 900);
    Set(on_ground, 1);
    Fly_At(82.1, 900);
    EXPECT_EQ(Count("FlightOFF"), 0U);
    Fly_At(85.4, 900);
    EXPECT_EQ(Count("FlightOFF"), 1U);
    // A flight that begins in the air needs no climb.
    Begin_Anew();
    Fly_At(9000, 0);
    ASSERT_TRUE(Start());
    Set(parking_brake, 0);
    Set(parking_brake, 0);
    EXPECT_EQ(Count("FlightOFF"), 1U);
    Set(on_ground, 1);
    EXPECT_EQ(Count("FlightON"), 1U);
}

TEST_F(Phases, Take_No_Bounce_For_A_Landing) {
    area.Set(altitude_ft, 0);
    ASSERT_TRUE(Start());
    Fly(moment::out, moment::off);
    for (const auto& [feet, landings] : {std::pair{23.0, 0U}, {26.4, 1U}}) {
        Fly_At(feet, 400);
        Set(on_ground, 1);
        EXPECT_EQ(Count("FlightON"), landings) << feet;
    }
}

TEST_F(Phases, End_As_The_Settings_Say) {
    struct End_Case {
        std::string title;
        int end_of_flight, engine_type;
        bool brake_set;
        int running;  // the engine that still runs, 0 for none
        bool ended;
    };
    for (const End_Case& end : std::vector<End_Case>{
             {"brake", 0, engine_kind::jet, true, 2, true},
             {"brake released", 0, engine_kind::jet, false, 0, false},
             {"helicopter without a brake", 0, engine_kind::helicopter, false, 1, true},
             {"shutdown with one engine running", 1, engine_kind::jet, true, 2, false},
             {"shutdown", 1, engine_kind::jet, false, 0, true},
             {"both, brake missing", 2, engine_kind::jet, false, 0, false},
             {"both, engine running", 2, engine_kind::jet, true, 1, false},
             {"both", 2, engine_kind::jet, true, 0, true},
             {"helicopter, both", 2, engine_kind::helicopter, false, 0, true},
             {"no such setting", 3, engine_kind::jet, true, 0, false}}) {
        Begin_Anew();
        settings.Set_ACARS_EOF(3);  // what would end the flight is not yet so
        area.Set(engine_type, end.engine_type);
        ASSERT_TRUE(Start());
        Fly(moment::out, moment::in);
        for (int number = 1; number <= 2; ++number)
            area.Set(engine_combustion, number == end.running ? 1 : 0, number);
        settings.Set_ACARS_EOF(end.end_of_flight);
        Set(parking_brake, end.brake_set ? 32767 : 0);
        engine->Refresh();
        EXPECT_EQ(Count("FlightAtGate"), end.ended ? 1U : 0U) << end.title;
    }
}

TEST_F(Phases, Track_Taxi_Speeds_Of_Jets_At_Low_Power_Only) {
    ASSERT_TRUE(Start());
    Set(parking_brake, 0);
    area.Set(engine_n1_percent, 60.4);  // rounds to 60
    Set(ground_speed_kt, 21.4);
    area.Set(engine_n1_percent, 60.6);
    Set(ground_speed_kt, 70);
    Fly(moment::off, moment::on + 1);
    Set(ground_speed_kt, 11.2);  // not yet taxiing
    Set(ground_speed_kt, 60);
    Set(ground_speed_kt, 9.7);
    Set(ground_speed_kt, 25.3);
    Fly(moment::in, moment::in + 1);
    EXPECT_EQ(Once("MaxTaxiOrigin"), "21");
    EXPECT_EQ(Once("MaxTaxiDestination"), "25");
}

TEST_F(Phases, Tell_Level_Flight_From_Climb_And_Descent) {
    Fly_To(moment::off);
    Fly_At(5000, 31);
    EXPECT_EQ(Altitude_Texts(), "");
    Fly_At(10000, -30);
    Fly_At(10000, 0);      // still level: said once
    Fly_At(10197, 1500);   // not far enough
    Fly_At(10300, 199);    // not fast enough
    Fly_At(10200.2, 200);  // both, just so
    Fly_At(34500, 10);
    Fly_At(33000, -300);
    Fly_At(12500, 10);
    Fly_At(12800, -1000);  // above, and sinking
    EXPECT_EQ(Altitude_Texts(),
              "10000 LEVEL, CHG 10000 CLMB, FL345 LEVEL, CHG FL345 DESC, "
              "12500 LEVEL, CHG 12500 DESC, ");
    Set(on_ground, 1);
    Set(parking_brake, 32767);
    EXPECT_EQ(Once("FlightLevel"), "FL345");
}

}  // namespace
}  // namespace norvane::test
