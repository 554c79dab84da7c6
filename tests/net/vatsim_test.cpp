// The pilot's line out of the online network's data, in both of its formats.

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "common/run_error.h"
#include "common/text.h"
#include "net/net_world.h"
#include "net/vatsim_data.h"

namespace norvane {
namespace {

using Json = nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

std::string Line(const std::string& data, const std::string& pilot_id = "812345") {
    return Find_VATSIM_Line(data, pilot_id, [] {});
}

/// The line, or why there can be none.
std::string Line_Or_Reason(const std::string& data) {
    try {
        return Line(data);
    } catch (const Run_Error& error) {
        return error.Description();
    }
}

Json Entry(const Json& cid, const std::string& callsign) {
    return {{"cid", cid},
            {"callsign", callsign},
            {"flight_plan",
             {{"aircraft_short", "B738"},
              {"aircraft", "B738/M-X/Y"},
              {"departure", "KSEA"},
              {"altitude", "35000"},
              {"arrival", "EDDM"},
              {"flight_rules", "I"},
              {"route", "A:B\r\nC|D \u00FC"}}}};
}

/// The seven values that the panel takes from a line.
std::string Used(const std::string& line) {
    const auto fields = Split(line, ':');
    std::vector<std::string> used;
    for (const std::size_t place : {0U, 9U, 11U, 12U, 13U, 21U, 30U})
        used.push_back(place < fields.size() ? fields[place] : "-");
    return Join(used, ",");
}

TEST(VATSIM_Data, The_First_Line_That_Holds_The_Id_Is_Taken) {
    const std::string data = "!X\r\n A:812345:b \r\nB:9:812345\r\nC:abc\nD:77";
    EXPECT_EQ(Line(data), "A:812345:b \r");
    EXPECT_EQ(Line(data, "ABC"), "C:abc\r");
    EXPECT_EQ(Line(data, "!x"), "!X\r") << "first line";
    EXPECT_EQ(Line(data, "1111"), "");
    EXPECT_THAT(Line_Or_Reason("A:1\r\nB:812345"), HasSubstr("cut off"));
}

TEST(VATSIM_Data, A_Filed_Plan_Becomes_The_Same_Line) {
    Json data{{"general", {{"cid", 812345}}},
              {"pilots", {Entry(1, "OTHER"), Entry(812345, "BAW1"), Entry(812345, "LATE")}},
              {"controllers", {{{"cid", 812345}, {"callsign", "SEA_TWR"}}}},
              {"prefiles", {Entry("812345", "PRE")}}};
    EXPECT_EQ(Used(Line(data.dump())), "BAW1,B738,KSEA,35000,EDDM,I,A B C/D \xFC");
    EXPECT_TRUE(Line(data.dump()).ends_with(":\r"));
    EXPECT_EQ(Split(Line(data.dump()), ':').size(), 32U);
    EXPECT_EQ(Line(data.dump(), "81234"), "");
    data["pilots"][1]["flight_plan"].erase("aircraft_short");
    data["pilots"][1]["flight_plan"]["altitude"] = 350;
    EXPECT_EQ(Used(Line(data.dump())), "BAW1,B738/M-X/Y,KSEA,350,EDDM,I,A B C/D \xFC");
    data["pilots"] = Json::array({Entry(1, "OTHER")});
    EXPECT_THAT(Line(data.dump()), testing::StartsWith("PRE:"));
}

TEST(VATSIM_Data, An_Incomplete_Plan_Is_Not_Found_Yet) {
    const Json whole{{"pilots", {Entry(812345, "BAW1")}}};
    ASSERT_NE(Line(whole.dump()), "");
    for (const char* missing :
         {"/pilots/0/flight_plan", "/pilots/0/callsign", "/pilots/0/flight_plan/departure",
          "/pilots/0/flight_plan/altitude", "/pilots/0/flight_plan/arrival",
          "/pilots/0/flight_plan/flight_rules", "/pilots/0/flight_plan/route", "/pilots/0"}) {
        const Json::json_pointer place(missing);
        for (const Json& instead : {Json(), Json::array(), Json::object()}) {
            Json data = whole;
            data[place] = instead;
            EXPECT_EQ(Line(data.dump()), "") << missing << instead;
        }
    }
}

TEST(VATSIM_Data, The_Pilots_Entry_Is_Read_Whatever_Stands_Beside_It) {
    const std::string own = Entry(812345, "BAW1").dump();
    const std::string plan = "BAW1,B738,KSEA,35000,EDDM,I,A B C/D \xFC";
    const auto page = [&](const std::string& other, const std::string& entry) {
        return R"({"general":{"v":[{}],"t":"}"},"pilots":[{"cid":7,"name":)" + other + "}," +
               entry + "],\"prefiles\":[]}";
    };
    for (const std::string other :
         {"\"J\xF6rg\"", "\"\xC0\xAF\"", "\"\\ud800\"", "\"\\uZZ\\q\"", "1e9999", "\"\n\x01\"",
          "NaN", "\"{[\\\"\\\\\"", "[1,{\"cid\":812345}]", "{\"x\":[}]", "nul", "\"812345\""}) {
        EXPECT_EQ(Used(Line_Or_Reason(page(other, own))), plan) << other;
        std::string mixed = own;
        mixed.insert(1, "\"extra\":" + other + ",");
        if (other.find("[}]") == std::string::npos) {
            EXPECT_EQ(Used(Line_Or_Reason(page("0", mixed))), plan) << "within: " << other;
        }
    }
    const std::string whole = page("0", own);
    for (const std::string before : {"\xEF\xBB\xBF", "\r\n", "\xEF\xBB\xBF \t\n"})
        EXPECT_EQ(Used(Line_Or_Reason(before + whole)), plan);
    EXPECT_EQ(Used(Line_Or_Reason(whole + "x")), plan);
    const std::size_t end = whole.find(own) + own.size();
    for (std::size_t size = 1; size < whole.size(); ++size) {
        const std::string line = Line_Or_Reason(whole.substr(0, size));
        if (size >= end)
            EXPECT_EQ(Used(line), plan) << size;
        else
            EXPECT_THAT(line, HasSubstr("is cut off")) << size;
    }
}

TEST(VATSIM_Data, What_Is_No_Data_Is_Told_Apart_From_Not_Connected) {
    for (const auto& [data, reason] : std::vector<std::pair<std::string, std::string>>{
             {R"({"pilots":[],"prefiles":[]})", ""},
             {"!GENERAL\r\n", ""},
             {"", "is empty"},
             {"\xEF\xBB\xBF\r\n", "is empty"},
             {"\n<!DOCTYPE html><p>812345", "is a web page"},
             {R"({"error":"812345"})", "no list of pilots"},
             {"{" + std::string(100'000, '['), "cut off"},
             {"{\"pilots\":" + std::string(100'000, '['), "cut off"}}) {
        const std::string told = Line_Or_Reason(data);
        EXPECT_THAT(told, HasSubstr(reason));
        EXPECT_EQ(told.empty(), reason.empty()) << told;
    }
}

TEST(VATSIM_Data, Events_Flow_During_A_Long_Search) {
    Json data{{"pilots", Json::array()}};
    for (int i = 0; i < 1000; ++i)
        data["pilots"].push_back(Entry(i, "X"));
    int events = 0;
    EXPECT_NE(Find_VATSIM_Line(data.dump(), "999", [&] { ++events; }), "");
    EXPECT_GE(events, 10);
}

class VATSIM : public test::Net_World {};

TEST_F(VATSIM, The_Data_Is_Asked_For_Only_With_An_Id) {
    std::vector<std::string> asked;
    test::Web_Server server;
    server->Get(".*", [&](const httplib::Request& in, httplib::Response& out) {
        asked.push_back(in.target);
        out.set_content(" A:812345\r\nB:1\r\n", "text/plain");
    });
    server.Start();
    Sources_At(server.Host());
    EXPECT_EQ(Client().Get_VATSIM_FlightPlan(""), "");
    EXPECT_EQ(Client().Get_VATSIM_FlightPlan("812345"), "A:812345\r");
    EXPECT_THAT(asked, ElementsAre("/VATSIM/data"));
    Write("bin/url.cfg", "[VATSIM]\r\n");
    EXPECT_FALSE(Client().Get_VATSIM_FlightPlan("812345"));
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsWinInet.Get_VATSIM_FlightPlan()")));
}

}  // namespace
}  // namespace norvane
