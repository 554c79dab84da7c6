// Message texts byte for byte: position reports, free texts, identifiers, numbers, and the weather
// at the surface.

#include "acars/flight_figures.h"
#include "common/text.h"
#include "engine_world.h"

namespace norvane::test {
namespace {

using enum Variable;

class Messages_Of_A_Flight : public Engine_World {
  protected:
    /// Line `number` (from 0) of the last message of a type.
    std::string Line(Message_Type type, std::size_t number) const {
        return Split(Messages(type).back(), cr_lf).at(number);
    }
    /// The same of a comment that is sent now.
    std::string Comment_Line(std::size_t number) {
        engine->Send_Message(Message_Type::comment, "");
        return Line(Message_Type::comment, number);
    }
};

TEST_F(Messages_Of_A_Flight, Position_Report) {
    Fly_To(moment::level);
    Put(wind_direction_deg, 45, wind_speed_kt, 7, ground_speed_kt, 480, true_airspeed_kt, 470,
        indicated_airspeed_kt, 270, total_air_temperature_c, -31);
    struct Heading_Case {
        double heading, variation;
        std::string magnetic;
    };
    for (const auto& [heading, variation, magnetic] : std::vector<Heading_Case>{
             {5, 13, "352"}, {13.2, 13, "000"}, {346.7, -13, "000"}, {355.2, -13, "008"}}) {
        Put(true_heading_deg, heading, magnetic_variation_deg, variation);
        engine->Report_Position();
        engine->Refresh();
        EXPECT_EQ(Line(Message_Type::position, 7), "/HDG " + magnetic);
    }
    EXPECT_EQ(Messages(Message_Type::position).back(),
              Head("12:17", "PR Block ID: 04 Msg No: M06A") +
                  "POS 40.63975 -73.77893\r\n/ALT 8999\r\n/HDG 008\r\n/WND 04507 /TAT -31\r\n"
                  "/GS 480 /TAS 470 /IAS 270\r\n/FUEL 19575\r\n"
                  "/ENG E1N1 95 /E1N2 97 /E2N1 95 /E2N2 97\r\n/E1FF 2401 PPH /E2FF 2402 PPH");
}

TEST_F(Messages_Of_A_Flight, Free_Texts_Pass_As_They_Are) {
    settings.Set_Airline_ICAO("NVA");
    area.Set(engine_count, 0);
    ASSERT_TRUE(Start());
    engine->Send_Message(Message_Type::comment, "All well|on board");
    engine->Send_Message(Message_Type::weather, "KJFK 141200Z");
    EXPECT_EQ(Messages(Message_Type::comment).at(0),
              "[2026-03-14 12:00Z]\r\nACARS Mode: C Aircraft Reg: N738NV [B738 NVA]\r\n"
              "Msg Label: CM Block ID: 01 Msg No: M01A\r\nFlight ID: NVA101\r\n"
              "Message:\r\nAll well|on board");
    EXPECT_EQ(Line(Message_Type::weather, 2), "Msg Label: WX Block ID: 01 Msg No: M02A");
    // Without a date the line says what there is.
    for (const int no_year : {0, 10000}) {
        area.Set(year, no_year);
        EXPECT_EQ(Comment_Line(0), "[ 12:00Z]");
    }
    settings.Set_ACARS_UseTime(7);
    EXPECT_EQ(Comment_Line(0), "[ :Z]");
}

TEST_F(Messages_Of_A_Flight, A_Typed_Number_Stands_In_For_The_Simulators) {
    struct Number_Case {
        std::string icao;
        bool prefix;
        std::string typed;
        /// With the simulator's number 101, and without one.
        std::string identifier, without;
    };
    settings.Set_Airline_IATA("NV");
    for (const std::string simulators : {"101", ""}) {
        area.Set_Text(atc_flight_number, simulators);
        engine->Reset();
        ASSERT_TRUE(Start());
        for (const auto& [icao, prefix, typed, identifier, without] : std::vector<Number_Case>{
                 {"NVN", false, "77", "NVN101", "NVN77"},
                 {"NVN", false, "nvn77", "NVN101", "nvn77"},
                 {"NVN", false, "", "NVN101", "NVN"},
                 {"", false, "77", "77", "77"},
                 {"", false, "", "101", ""},
                 {"NVN", true, "77", "101", "NV77"},
                 {"NVN", true, "", "101", ""},
             }) {
            settings.Set_Airline_ICAO(icao);
            settings.Set_Airline_IATAPrefix(prefix);
            engine->Set_Airline_Flight_Number(typed);
            EXPECT_EQ(Comment_Line(3), "Flight ID: " + (simulators.empty() ? without : identifier));
        }
        settings.Set_Airline_IATAPrefix(false);
    }
}

TEST_F(Messages_Of_A_Flight, Connecting_And_Disconnecting_And_The_Numbers_Of_A_Flight) {
    Write("VA/server.cfg", "server.example\r\npirep.php\r\nacars.php\r\n");
    airline.Get_VA_Settings("DEFAULT");
    Fly_To(moment::level);
    EXPECT_EQ(Line(Message_Type::connected, 5), "Flight Connected");
    for (int i = 0; i < 99; ++i)
        engine->Send_Message(Message_Type::comment, "");
    EXPECT_EQ(Comment_Line(2), "Msg Label: CM Block ID: 100 Msg No: M103A");
    area.Set(utc_minute, 44);
    engine->Refresh();

    engine->Stop_();
    EXPECT_FALSE(link.Is_Open());
    // The link is closed by then: the time and date are those of the last step.
    EXPECT_EQ(Messages(Message_Type::disconnected).back(),
              Head("12:44", "FD Block ID: 01 Msg No: M104A") + "Flight Disconnected");
    EXPECT_EQ(Count("FSClosed") + Count("Error"), 0U);
    engine->Stop_();
    EXPECT_EQ(Messages(Message_Type::disconnected).size(), 1U);
    engine->Reset();
    engine->Send_Message(Message_Type::comment, "");
    EXPECT_TRUE(Line(Message_Type::comment, 2).ends_with("Block ID: 01 Msg No: M01A"));
}

TEST_F(Messages_Of_A_Flight, Weather_At_The_Surface) {
    settings.Set_WX_URL("FS");
    Put(surface_wind_direction_deg, 90, surface_wind_speed_kt, 5, visibility_sm, 10,
        surface_temperature_c, 15, dew_point_c, -3, day_of_year, 64, utc_hour, 14, utc_minute, 5);
    struct Weather_Case {
        double gusts, precipitation, rate, pressure;
        std::array<double, 4> clouds;  // cover and base of both layers
        std::string report;
    };
    for (const auto& [gusts, precipitation, rate, pressure, clouds, report] :
         std::vector<Weather_Case>{
             {0, 0, 0, 29.92, {0, 0, 0, 0}, "09005KT 10SM SKC 15/-3 A2992"},
             {18, 1, 4, 29.40, {2, 25, 0, 9}, "0900518KT 10SM +RA FEW025 15/-3 A2940"},
             {0, 2, 3, 30, {4, 0, 8, 120}, "09005KT 10SM -SN SCT OVC120 15/-3 A3000"},
             {0, 2, 3, 30, {0, 0, 7, 120}, "09005KT 10SM -SN SKC BKN120 15/-3 A3000"},
             {0, 0, 3, 30, {1, 1, 3, 1}, "09005KT 10SM FEW001 SCT001 15/-3 A3000"},
             {0, 0, 3, 30, {5, 1, 1, 1}, "09005KT 10SM BKN001 FEW001 15/-3 A3000"}}) {
        area.Set(surface_wind_third, gusts);
        area.Set(precipitation_type, precipitation);
        area.Set(precipitation_rate, rate);
        area.Set(sea_level_pressure_inhg, pressure);
        area.Set(cloud1_cover_eighths, clouds[0]);
        area.Set(cloud1_base_hundred_ft, clouds[1]);
        area.Set(cloud2_cover_eighths, clouds[2]);
        area.Set(cloud2_base_hundred_ft, clouds[3]);
        engine->Reset();
        raised.clear();
        ASSERT_TRUE(Start());
        EXPECT_EQ(Once("WXDep"), "KJFK 51405Z " + report);
    }
    Fly(moment::parked, moment::in + 1);
    EXPECT_EQ(Once("WXArr").substr(0, 16), "KBOS 51352Z 0900");
}

TEST(Flight_Figures, Times_Between_Events) {
    EXPECT_EQ(Minutes_Between("2350", "0010"), 20);
    EXPECT_EQ(Minutes_Between("1405", "1405"), 0);
    EXPECT_EQ(Minutes_Between("14x5", "1405"), std::nullopt);
    EXPECT_EQ(Decimal_Hours(20), "0.3");
    EXPECT_EQ(Decimal_Hours(21), "0.4");   // .35 rounds up
    EXPECT_EQ(Decimal_Hours(117), "2.0");  // 1.95 carries into the hours
    EXPECT_EQ(Hours_And_Minutes(605), "10:05");
}

}  // namespace
}  // namespace norvane::test
