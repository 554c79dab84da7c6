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

/// The line, or why there can be none.
std::string Line(const std::string& data, const std::string& pilot_id = "812345") {
    try {
        return Find_VATSIM_Line(data, pilot_id, [] {});
    } catch (const Run_Error& error) {
        return error.Description();
    }
}

Json Entry(const Json& cid, const std::string& callsign) {
    return {{"cid", cid},
            {"callsign", callsign},
            {"flight_plan", Json::parse(R"({"aircraft_short":"B738","aircraft":"B738/M-X/Y",
                "departure":"KSEA","altitude":"35000","arrival":"EDDM","flight_rules":"I",
                "route":"A:B\r\nC|D \u00FC"})")}};
}

/// The seven values that the panel takes from a line.
std::string Used(const std::string& line) {
    const auto fields = Split(line, ':');
    std::string used;
    for (const std::size_t place : {0U, 9U, 11U, 12U, 13U, 21U, 30U})
        used += place < fields.size() ? fields[place] + "," : "-";
    return used;
}

TEST(VATSIM_Data, The_First_Line_That_Holds_The_Id_Is_Taken) {
    const std::string data = "!X\r\n A:812345:b \r\nB:9:812345\r\nC:abc\nD:77";
    EXPECT_EQ(Line(data), "A:812345:b \r");
    EXPECT_EQ(Line(data, "ABC"), "C:abc\r");
    EXPECT_EQ(Line(data, "!x"), "!X\r") << "first line";
    EXPECT_EQ(Line(data, "1111"), "");
    EXPECT_THAT(Line(data, "77"), HasSubstr("cut off"));
}

TEST(VATSIM_Data, A_Filed_Plan_Becomes_The_Same_Line_Once_It_Is_Complete) {
    Json data{{"general", {{"cid", 812345}}},
              {"pilots", {Entry(1, "OTHER"), Entry(812345, "BAW1"), Entry(812345, "LATE")}},
              {"controllers", {{{"cid", 812345}, {"callsign", "SEA_TWR"}}}},
              {"prefiles", {Entry("812345", "PRE")}}};
    EXPECT_EQ(Used(Line(data.dump())), "BAW1,B738,KSEA,35000,EDDM,I,A B C/D \xFC,");
    EXPECT_EQ(Split(Line(data.dump()), ':').at(1), "812345");
    EXPECT_EQ(Split(Line(data.dump()), ':').size(), 32U);
    EXPECT_TRUE(Line(data.dump()).ends_with(":\r"));
    EXPECT_EQ(Line(data.dump(), "81234"), "");
    data["pilots"][1]["flight_plan"].erase("aircraft_short");
    data["pilots"][1]["flight_plan"]["altitude"] = 350;
    EXPECT_EQ(Used(Line(data.dump())), "BAW1,B738/M-X/Y,KSEA,350,EDDM,I,A B C/D \xFC,");
    data["pilots"] = Json::array({Entry(1, "OTHER"), {{"cid", 812345}, {"callsign", "NOPLAN"}}});
    EXPECT_THAT(Line(data.dump()), testing::StartsWith("PRE:"));

    const Json whole{{"pilots", {Entry(812345, "BAW1")}}};
    for (const std::string missing :
         {"", "/callsign", "/flight_plan", "/flight_plan/departure", "/flight_plan/altitude",
          "/flight_plan/arrival", "/flight_plan/flight_rules", "/flight_plan/route"}) {
        for (const Json& instead : {Json(), Json::array(), Json::object()}) {
            data = whole;
            data[Json::json_pointer("/pilots/0" + missing)] = instead;
            EXPECT_EQ(Line(data.dump()), "") << missing << instead;
        }
    }
}

TEST(VATSIM_Data, The_Pilots_Entry_Is_Read_Whatever_Stands_Beside_It) {
    const std::string own = Entry(812345, "BAW1").dump();
    const std::string plan = Used(Line("{\"pilots\":[" + own + "]}"));
    const auto page = [](const std::string& other, const std::string& entry) {
        return R"({"general":{"v":[{}],"t":"}"},"pilots":[{"cid":7,"name":)" + other + "}," +
               entry + "],\"prefiles\":[]}";
    };
    for (const std::string other : {"\"\"", "\"J\xF6rg\"", "\"\xC0\xAF\"", "\"\\ud800\"",
                                    "\"\\uZZ\\q\"", "1e9999", "\"\n\x01\"", "NaN", "\"{[\\\"\\\\\"",
                                    "[1,{\"cid\":812345}]", "{\"x\":[}]", "nul", "\"812345\""}) {
        EXPECT_EQ(Used(Line(page(other, own))), plan) << other;
        std::string mixed = own;
        mixed.insert(1, "\"extra\":" + other + ",");
        EXPECT_EQ(Used(Line(page("0", mixed))) == plan, !Contains(other, "[}]")) << other;
    }
    const std::string whole = page("0", own);
    const std::size_t end = whole.find(own) + own.size();
    for (std::size_t size = 1; size < whole.size(); ++size) {
        const std::string line = Line(whole.substr(0, size));
        EXPECT_EQ(Used(line) == plan, size >= end) << size;
        EXPECT_EQ(Contains(line, "is cut off"), size < end) << size;
    }
}

TEST(VATSIM_Data, What_Is_No_Data_Is_Told_Apart_From_Not_Connected) {
    EXPECT_EQ(Line(R"({"pilots":[],"prefiles":[]})"), "");
    EXPECT_EQ(Line("!GENERAL\r\n"), "");
    EXPECT_EQ(Line("{\"pilots\":{\"a\":" + Entry(812345, "BAW1").dump() + "}}"), "") << "no list";
    EXPECT_THAT(Line(""), HasSubstr("is empty"));
    EXPECT_THAT(Line("\xEF\xBB\xBF\r\n"), HasSubstr("is empty"));
    EXPECT_THAT(Line("\n<!DOCTYPE html><p>812345"), HasSubstr("is a web page"));
    EXPECT_THAT(Line(R"({"error":"812345"})"), HasSubstr("no list of pilots"));
    for (const std::string start : {"{", "{\"pilots\":"})
        EXPECT_THAT(Line(start + std::string(100'000, '[')), HasSubstr("cut off"));
}

class VATSIM : public test::Pages_World {};

TEST_F(VATSIM, The_Data_Is_Asked_For_Only_With_An_Id) {
    pages["/VATSIM/DATA"] = " A:812345\r\nB:1\r\n";
    EXPECT_EQ(Client().Get_VATSIM_FlightPlan(""), "");
    EXPECT_EQ(Client().Get_VATSIM_FlightPlan("812345"), "A:812345\r");
    EXPECT_THAT(Take_Asked(), ElementsAre("/VATSIM/DATA"));
    Write("bin/url.cfg", "[VATSIM]\r\n");
    EXPECT_FALSE(Client().Get_VATSIM_FlightPlan("812345"));
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsWinInet.Get_VATSIM_FlightPlan()")));
    // A poll that nobody waits for any longer has not failed.
    options.given_up = [] { return true; };
    EXPECT_FALSE(Client().Get_VATSIM_FlightPlan("812345"));
    EXPECT_THAT(error_log.entries, testing::IsEmpty());
}

}  // namespace
}  // namespace norvane
