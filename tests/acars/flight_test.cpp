// A whole flight of a jet, event by event and message by message.

#include <fmt/format.h>

#include "common/text.h"
#include "engine_world.h"

namespace norvane::test {
namespace {

class Flight : public Engine_World {};

TEST_F(Flight, Reports_Every_Figure_In_Order) {
    ASSERT_TRUE(Start());
    EXPECT_EQ(error_text, modFSUIPC::IPC_ErrorText(ipc_result::okay));
    EXPECT_EQ(Take_Raised(),
              "FSVersion FS2004\nFlightDate 3/14/2026\nATCTail N738NV\nATCFlight Norvane - 101\n"
              "AirlineFlight 101\nATCType Jet 738\nWeightZFW 100000 0\n"
              "ICAODep KJFK John F Kennedy International\nStart\n");
    Fly(moment::parked, moment::off);
    EXPECT_EQ(Take_Raised(),
              "FlightOUT 1205 1\nFuelOUT 20250 0\nWeightOUT 120250 0\n"
              "ACARSMessage 0 " +
                  Head("12:05", "QA Block ID: 01 Msg No: M01A") +
                  "OUT 1205Z /ZFW 100000 /FUEL 20250 /TAW 120250 /POS 40.63975 -73.77893\n");
    Fly(moment::off, moment::level);
    EXPECT_EQ(Take_Raised(),
              "FlightOFF 1217 1\nFuelOFF 19575 0\nWeightOFF 119575 0\nIASTakeOff 151\n"
              "NSettings E1N1 95 /E1N2 97 /E2N1 95 /E2N2 97\nMaxTaxiOrigin 17\n"
              "ACARSMessage 1 " +
                  Head("12:17", "QB Block ID: 01 Msg No: M02A") +
                  "OFF 1217Z /FUEL 19575 /TOW 119575\r\n"
                  "/E1N1 95 /E1N2 97 /E2N1 95 /E2N2 97 /POS 40.63975 -73.77893\n");
    Fly(moment::level, moment::on);
    std::string levels;
    int number = 0;
    for (const std::string change :
         {"FL350 LEVEL", "CHG FL350 CLMB", "FL370 LEVEL", "CHG FL370 DESC"}) {
        ++number;
        levels += "ACARSMessage 7 " +
                  Head("12:17", fmt::format("AR Block ID: 0{} Msg No: M0{}A", number, number + 2)) +
                  "ALT " + change + "\r\n /POS 41.50000 -72.50000\n";
    }
    EXPECT_EQ(Take_Raised(), levels);
    Fly(moment::on, moment::in);
    EXPECT_EQ(Take_Raised(),
              "FlightON 1340 1\nFuelON 9450 0\nWeightON 109450 0\nVS -1,210\n"
              "IASLanding 139\nACARSMessage 2 " +
                  Head("13:40", "QC Block ID: 01 Msg No: M07A") +
                  "ON 1340Z /FUEL 9450 /LDW 109450 /POS 42.36000 -71.01000\n");
    Fly(moment::in, moment::in + 1);
    EXPECT_EQ(Take_Raised(),
              "FlightIN 1352 1\nBlockTime 1.8\nBlockTimeHHMM 1:47\nFlightTime 1.4\n"
              "FlightTimeHHMM 1:23\nFuelIN 9315 0\nICAOArr KBOS Boston Logan\n"
              "FuelUsedBlock 10935 0\nFuelUsedFlight 10125 0\nDistance 162\nWeightIN 109315 0\n"
              "MaxTaxiDestination 21\nFlightLevel FL370\nACARSMessage 3 " +
                  Head("13:52", "QD Block ID: 01 Msg No: M08A") +
                  "IN 1352Z /FUEL 9315 /RAW 109315 /POS 42.36435 -71.00518\nACARSMessage 4 " +
                  Head("13:52", "QM Block ID: 01 Msg No: M09A") +
                  "BLOCK TIME 1.8 [1:47] /FUEL 10935\r\nFLIGHT TIME 1.4 [ 1:23] /FUEL 10125\n"
                  "FlightAtGate\n");
    EXPECT_EQ(engine->Arrival_Name(), "Boston Logan");

    engine->Reset();
    EXPECT_EQ(Take_Raised(), "Reset\n");
    EXPECT_EQ(engine->TIME_OUT() + engine->TIME_IN() + engine->Departure_ICAO(), "");
}

TEST_F(Flight, Carries_The_Chosen_Units) {
    settings.Set_ACARS_Fuel(unit::kilograms);
    settings.Set_ACARS_Weight(unit::kilograms);
    Fly_To(moment::in + 1);
    EXPECT_EQ(Once("WeightZFW") + ", " + Once("WeightIN"), "45359 1, 49584 1");
    EXPECT_EQ(Once("FuelOUT"), "9185 1");
    EXPECT_EQ(Once("FuelUsedBlock"), "4960 1");  // of the pounds burnt, not of two roundings

    // In gallons no pounds are computed; a position report is in pounds whatever the unit.
    settings.Set_ACARS_Fuel(unit::gallons);
    Begin_Anew();
    Fly_To(moment::level);
    engine->Report_Position();
    Fly(moment::level, moment::in + 1);
    EXPECT_EQ(Once("FuelOUT") + ", " + Once("FuelUsedFlight"), "3000 2, 1500 2");
    EXPECT_EQ(store.Get("ACARS", "55") + store.Get("ACARS", "63"), "2900");
    EXPECT_TRUE(Contains(Messages(Message_Type::position).at(0), "/FUEL 19575\r\n"));
}

TEST_F(Flight, Can_Be_Timed_By_The_Computers_Clock) {
    settings.Set_ACARS_Time(time_kind::local);
    settings.Set_ACARS_UseTime(1);
    settings.Set_ACARS_Date(1);
    clock.zone.standard_bias = 480;
    utc = std::make_unique<clsUTC>(clock);
    Replace_Engine();
    clock.start = {{2026, 12, 31}, {15, 58, 0}};
    ASSERT_TRUE(Start());
    EXPECT_EQ(Once("FlightDate"), "12/31/2026");
    Fly(moment::parked, moment::off);
    EXPECT_EQ(Once("FlightOUT"), "1558 0");
    EXPECT_EQ(engine->TIME_OUT(), "2358");
    // UTC midnight and local midnight lie between OFF and IN.
    Fly(moment::off, moment::in);
    clock.Sleep(std::chrono::hours(8) + std::chrono::minutes(12));
    Fly(moment::in, moment::in + 1);
    EXPECT_EQ(Once("FlightIN"), "0010 0");
    EXPECT_EQ(Once("BlockTimeHHMM"), "8:12");
    EXPECT_EQ(Messages(Message_Type::in).at(0).substr(0, 20), "[2027-01-01 08:10Z]\r");
    EXPECT_EQ(engine->Flight_Date(), "12/31/2026");
}

}  // namespace
}  // namespace norvane::test
