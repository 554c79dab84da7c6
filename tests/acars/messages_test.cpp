// Message texts byte for byte: position reports, free texts, identifiers, numbers, and the weather
// at the surface.

#include "acars/flight_figures.h"
#include "common/text.h"
#include "engine_world.h"

namespace norvane::test {

namespace {

class Messages_Of_A_Flight : public Engine_World {
  protected:
    /// Line `number` (from 0) of a text.
    static std::string Line(const std::string& text, std::size_t number) {
        return Split(text, cr_lf).at(number);
    }
};

TEST_F(Messages_Of_A_Flight, Position_Report) {
    ASSERT_TRUE(Start());
    Fly(moment::parked, moment::level);
    raised.clear();
    area.Set(Variable::true_heading_deg, 355.2);
    area.Set(Variable::magnetic_variation_deg, -13);
    area.Set(Variable::wind_direction_deg, 45);
    area.Set(Variable::wind_speed_kt, 7);
    area.Set(Variable::ground_speed_kt, 480);
    area.Set(Variable::true_airspeed_kt, 470);
    area.Set(Variable::indicated_airspeed_kt, 270);
    area.Set(Variable::total_air_temperature_c, -31);
    engine->Report_Position();
    engine->Refresh();
    EXPECT_EQ(Messages(Message_Type::position),
              std::vector<std::string>{"[2026-03-14 12:17Z]\r\n"
                                       "ACARS Mode: C Aircraft Reg: N738NV [B738 ]\r\n"
                                       "Msg Label: PR Block ID: 01 Msg No: M03A\r\n"
                                       "Flight ID: NV101\r\n"
                                       "Message:\r\n"
                                       "POS 40.63975 -73.77893\r\n"
                                       "/ALT 8999\r\n"
                                       "/HDG 008\r\n"
                                       "/WND 04507 /TAT -31\r\n"
                                       "/GS 480 /TAS 470 /IAS 270\r\n"
                                       "/FUEL 19575\r\n"
                                       "/ENG E1N1 95 /E1N2 97 /E2N1 95 /E2N2 97\r\n"
                                       "/E1FF 2401 PPH /E2FF 2402 PPH"});

    raised.clear();
    area.Set(Variable::true_heading_deg, 346.7);
    engine->Report_Position();
    engine->Refresh();
    EXPECT_EQ(Line(Messages(Message_Type::position).at(0), 7), "/HDG 000");
}

TEST_F(Messages_Of_A_Flight, Free_Texts_And_Identifiers) {
    settings->Set_Airline_ICAO("NVA");
    area.Set(Variable::engine_count, 0);
    ASSERT_TRUE(Start());
    engine->Send_Message(Message_Type::comment, "All well|on board");
    engine->Send_Message(Message_Type::weather, "KJFK 141200Z");
    EXPECT_EQ(Messages(Message_Type::comment),
              std::vector<std::string>{"[2026-03-14 12:00Z]\r\n"
                                       "ACARS Mode: C Aircraft Reg: N738NV [B738 NVA]\r\n"
                                       "Msg Label: CM Block ID: 01 Msg No: M01A\r\n"
                                       "Flight ID: NVA101\r\n"
                                       "Message:\r\n"
                                       "All well|on board"});
    EXPECT_EQ(Line(Messages(Message_Type::weather).at(0), 2),
              "Msg Label: WX Block ID: 01 Msg No: M02A");

    settings->Set_Airline_ICAO("");
    engine->Set_Airline_Flight_Number("");
    engine->Send_Message(Message_Type::comment, "");
    EXPECT_EQ(Line(Messages(Message_Type::comment).at(1), 3), "Flight ID: 101");
    engine->Set_Airline_Flight_Number("NV77");
    engine->Send_Message(Message_Type::comment, "");
    EXPECT_EQ(Line(Messages(Message_Type::comment).at(2), 3), "Flight ID: NV77");
    settings->Set_Airline_IATAPrefix(true);
    engine->Send_Message(Message_Type::comment, "");
    EXPECT_EQ(Line(Messages(Message_Type::comment).at(3), 3), "Flight ID: 101");
}

TEST_F(Messages_Of_A_Flight, A_Typed_Number_Stands_In_For_The_Simulators) {
    struct Number_Case {
        std::string icao;
        bool prefix;
        std::string typed;
        std::string identifier;
    };
    settings->Set_Airline_IATA("NV");
    area.Set_Text(Variable::atc_flight_number, "");
    ASSERT_TRUE(Start());
    for (const auto& [icao, prefix, typed, identifier] : std::vector<Number_Case>{
             {"NVN", false, "77", "NVN77"},
             {"NVN", false, "nvn77", "nvn77"},
             {"NVN", false, "", "NVN"},
             {"", false, "77", "77"},
             {"NVN", true, "77", "NV77"},
             {"NVN", true, "", ""},
         }) {
        settings->Set_Airline_ICAO(icao);
        settings->Set_Airline_IATAPrefix(prefix);
        engine->Set_Airline_Flight_Number(typed);
        engine->Send_Message(Message_Type::comment, "");
        EXPECT_EQ(Line(Messages(Message_Type::comment).back(), 3), "Flight ID: " + identifier);
    }
}

TEST_F(Messages_Of_A_Flight, Numbers_Go_On_Past_Two_Digits_And_Begin_Anew_After_Reset) {
    ASSERT_TRUE(Start());
    for (int i = 0; i < 100; ++i)
        engine->Send_Message(Message_Type::comment, "");
    EXPECT_EQ(Line(Messages(Message_Type::comment).back(), 2),
              "Msg Label: CM Block ID: 100 Msg No: M100A");
    engine->Reset();
    engine->Send_Message(Message_Type::comment, "");
    EXPECT_EQ(Line(Messages(Message_Type::comment).back(), 2),
              "Msg Label: CM Block ID: 01 Msg No: M01A");
}

TEST_F(Messages_Of_A_Flight, Connecting_And_Disconnecting) {
    Use_Airline_With_Script();
    ASSERT_TRUE(Start());
    Fly(moment::parked, moment::level);
    engine->Send_Message(Message_Type::comment, "climbing");
    EXPECT_EQ(Line(Messages(Message_Type::connected).at(0), 5), "Flight Connected");
    area.Set(Variable::utc_minute, 44);
    engine->Refresh();

    engine->Stop_();
    EXPECT_FALSE(link.Is_Open());
    // The link is closed by then: the time and date are those of the last step.
    EXPECT_EQ(Messages(Message_Type::disconnected),
              std::vector<std::string>{"[2026-03-14 12:44Z]\r\n"
                                       "ACARS Mode: C Aircraft Reg: N738NV [B738 ]\r\n"
                                       "Msg Label: FD Block ID: 01 Msg No: M05A\r\n"
                                       "Flight ID: NV101\r\n"
                                       "Message:\r\n"
                                       "Flight Disconnected"});
    EXPECT_EQ(Count("FSClosed") + Count("Error"), 0U);
    engine->Stop_();
    EXPECT_EQ(Messages(Message_Type::disconnected).size(), 1U);
    engine->Send_Disconnect_Message();
    EXPECT_EQ(Messages(Message_Type::disconnected).size(), 2U);
}

TEST_F(Messages_Of_A_Flight, Without_A_Date_The_Date_Line_Says_What_There_Is) {
    area.Set(Variable::year, 0);
    ASSERT_TRUE(Start());
    engine->Send_Message(Message_Type::comment, "");
    EXPECT_EQ(Line(Messages(Message_Type::comment).at(0), 0), "[ 12:00Z]");
    settings->Set_ACARS_UseTime(7);
    engine->Send_Message(Message_Type::comment, "");
    EXPECT_EQ(Line(Messages(Message_Type::comment).at(1), 0), "[ :Z]");
}

struct Weather_Case {
    std::vector<std::pair<Variable, double>> values;
    std::string report;
};

TEST_F(Messages_Of_A_Flight, Weather_At_The_Surface) {
    settings->Set_WX_URL("FS");
    const std::vector<Weather_Case> cases{
        {{{Variable::surface_wind_direction_deg, 90},
          {Variable::surface_wind_speed_kt, 5},
          {Variable::visibility_sm, 10},
          {Variable::surface_temperature_c, 15},
          {Variable::dew_point_c, -3},
          {Variable::sea_level_pressure_inhg, 29.92},
          {Variable::day_of_year, 64},
          {Variable::utc_hour, 14},
          {Variable::utc_minute, 5}},
         "KJFK 51405Z 09005KT 10SM SKC 15/-3 A2992"},
        {{{Variable::surface_wind_third, 18},
          {Variable::precipitation_type, 1},
          {Variable::precipitation_rate, 4},
          {Variable::cloud1_cover_eighths, 2},
          {Variable::sea_level_pressure_inhg, 29.40},
          {Variable::cloud1_base_hundred_ft, 25}},
         "KJFK 51405Z 0900518KT 10SM +RA FEW025 15/-3 A2940"},
        {{{Variable::surface_wind_third, 0},
          {Variable::precipitation_type, 2},
          {Variable::precipitation_rate, 3},
          {Variable::cloud1_cover_eighths, 4},
          {Variable::cloud1_base_hundred_ft, 0},
          {Variable::cloud2_cover_eighths, 8},
          {Variable::sea_level_pressure_inhg, 30.00},
          {Variable::cloud2_base_hundred_ft, 120}},
         "KJFK 51405Z 09005KT 10SM -SN SCT OVC120 15/-3 A3000"},
        {{{Variable::cloud1_cover_eighths, 0}, {Variable::cloud2_cover_eighths, 7}},
         "KJFK 51405Z 09005KT 10SM -SN SKC BKN120 15/-3 A3000"},
    };
    for (const Weather_Case& weather : cases) {
        for (const auto& [variable, value] : weather.values)
            area.Set(variable, value);
        raised.clear();
        ASSERT_TRUE(Start());
        EXPECT_EQ(Once("WXDep"), weather.report);
        engine->Reset();
    }
    raised.clear();
    ASSERT_TRUE(Start());
    Fly(moment::parked, moment::in + 1);
    EXPECT_EQ(Once("WXArr").substr(0, 17), "KBOS 141352Z 0900");
}

TEST(Flight_Figures, Times_Between_Events) {
    EXPECT_EQ(Minutes_Between("2350", "0010"), 20);
    EXPECT_EQ(Minutes_Between("1405", "1405"), 0);
    EXPECT_EQ(Minutes_Between("", "1405"), std::nullopt);
    EXPECT_EQ(Minutes_Between("14x5", "1405"), std::nullopt);
    EXPECT_EQ(Decimal_Hours(20), "0.3");
    EXPECT_EQ(Decimal_Hours(21), "0.4");   // .35 rounds up
    EXPECT_EQ(Decimal_Hours(117), "2.0");  // 1.95 carries into the hours
    EXPECT_EQ(Decimal_Hours(600), "10.0");
    EXPECT_EQ(Hours_And_Minutes(20), "0:20");
    EXPECT_EQ(Hours_And_Minutes(605), "10:05");
}

}  // namespace

}  // namespace norvane::test
