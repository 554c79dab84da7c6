// Plans of SimBrief: both shapes of its answers, refusals, and what is asked for.

#include "net/simbrief.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/number.h"
#include "common/text.h"
#include "net/net_world.h"

namespace norvane {
namespace {

using Json = nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

Json Answer_In(const std::string& file) {
    return Json::parse(Read_File(test::Data_File("plans/" + file)));
}

/// As the newer shape has it: texts, moments of ISO, "" for what is empty.
Json New_Shape() {
    return Answer_In("simbrief.json");
}

/// Every text, then every figure in the order of the plan.
std::string Told(const Simbrief_Plan& plan) {
    std::string told;
    for (const auto& text :
         {plan.origin.icao, plan.origin.name, plan.destination.icao, plan.destination.name,
          plan.alternate.icao, plan.alternate.name, plan.route, plan.call_sign, plan.flight_number,
          plan.aircraft_type, plan.registration})
        told += text + ",";
    const auto add = [&](const auto& value, const char* behind) {
        told += (value ? Format_Significant(static_cast<double>(*value)) : "-") + behind;
    };
    add(plan.level_ft, " ft, ifr ");
    add(plan.is_ifr, ", ");
    add(plan.passengers, " pax ");
    for (const auto& weight : {plan.fuel_ramp_lbs, plan.fuel_takeoff_lbs, plan.fuel_landing_lbs,
                               plan.fuel_burn_lbs, plan.fuel_taxi_lbs, plan.zero_fuel_weight_lbs,
                               plan.takeoff_weight_lbs, plan.landing_weight_lbs, plan.cargo_lbs})
        add(weight, " ");
    for (const auto& time : plan.times) {
        add(time.scheduled, "/");
        add(time.estimated, " ");
    }
    for (const auto& time : {plan.block_seconds, plan.air_seconds, plan.generated})
        add(time, " ");
    return told;
}

std::string Told(const Json& answer) {
    return Told(Read_Simbrief_Plan(answer.dump()));
}

/// What the pilot reads of an answer that is no plan.
std::string Refusal(const std::string& answer) {
    try {
        return "a plan: " + Told(Read_Simbrief_Plan(answer));
    } catch (const Run_Error& error) {
        return Words_For_Pilot(error);
    }
}

TEST(Simbrief, Both_Shapes_Of_An_Answer_Are_The_Same_Plan) {
    EXPECT_EQ(Told(New_Shape()),
              "OMAA,Abu Dhabi Intl,OMDB,Dubai,OMSJ,,KADIL P570 \xC9LIXA/X,VMS112,112,A320,A6-EIA,"
              "9000 ft, ifr 1, 150 pax 4515 4315 3008 1496 200 120000 124315 122819 2000 "
              "1770805200/1770805200 1770806100/- -/1770807426 -/1770807546 2346 1326 1770803340 ");
    // Moments and durations in seconds, {} for what is empty, numbers for some texts, one thing
    // where there could be several, and several where there is one.
    EXPECT_EQ(Told(Answer_In("simbrief-seconds.json")), Told(New_Shape()));
    EXPECT_EQ(Told(Read_Simbrief_Plan("\xEF\xBB\xBF\r\n" + New_Shape().dump(2))),
              Told(New_Shape()));
    const Simbrief_Plan plan = Read_Simbrief_Plan(New_Shape().dump());
    EXPECT_EQ(plan.At(Block_Event::off).Best(), 1770806100) << "nothing better than the timetable";
    EXPECT_EQ(plan.At(Block_Event::on).Best(), 1770807426);
}

TEST(Simbrief, What_Makes_No_Sense_Is_Missing_And_Kilograms_Become_Pounds) {
    struct Case {
        const char* place;
        Json value;
        const char* told;
    };
    for (const Case& row : std::vector<Case>{
             {"/params/units", "kgs", "pax 9953.87113764722 9512.9"},
             {"/params/units", "stone", "pax - - - - - - - - - 17"},
             {"/params/units", Json::object(), "pax - - - - - - - - - 17"},
             {"/fuel/plan_ramp", "-4515", "pax - 4315"},
             {"/fuel/plan_ramp", "1e300", "pax - 4315"},
             {"/fuel", "none", "pax - - - - - 120000"},
             {"/general/initial_altitude", "FL090", "- ft"},
             {"/general/initial_altitude", Json::array({"7000", "9000"}), ",7000 ft"},
             {"/weights/pax_count", "", ", - pax"},
             {"/atc/flight_rules", "V", "ifr 0"},
             {"/atc/flight_rules", "y", "ifr 1"},
             {"/atc/flight_rules", "?", "ifr -"},
             {"/times/est_block", "1:2:3:4:5:6", " - 1326 "},
             {"/times/est_block", "ab:00", " - 1326 "},
             {"/times/est_out", "99999999999999", "1770805200/- "},
             {"/times/est_out", "2026-02-30T10:20:00Z", "1770805200/- "},
             {"/times/est_out", "2026-02-11", "1770805200/- "},
             {"/times", Json::array(), " -/- -/- -/- -/- - - 1770803340"},
             {"/destination", Json::object(), "OMAA,Abu Dhabi Intl,,,OMSJ"},
         }) {
        Json answer = New_Shape();
        answer[Json::json_pointer(row.place)] = row.value;
        EXPECT_THAT(Told(answer), HasSubstr(row.told)) << row.place << row.value;
    }
}

TEST(Simbrief, A_Refusal_Is_Told_In_The_Services_Own_Words) {
    EXPECT_THAT(Refusal(R"({"fetch":{"status":"Error: Unknown UserID"}})"),
                HasSubstr("\"Error: Unknown UserID\""));
    Json refused = New_Shape();
    refused["fetch"]["status"] = "Error: No flight plan on file\nfor the specified user";
    EXPECT_THAT(Refusal(refused.dump()), HasSubstr("file for the specified user\""));
    const std::string whole = New_Shape().dump();
    EXPECT_THAT(Refusal(""), HasSubstr("is empty"));
    EXPECT_THAT(Refusal("<?xml version=\"1.0\"?><OFP>"), HasSubstr("is a page, not data"));
    EXPECT_THAT(Refusal("[" + whole + "]"), HasSubstr("cannot be read"));
    EXPECT_THAT(Refusal(R"({"fetch":{"status":"Success"},"origin":{}})"),
                HasSubstr("holds no flight plan"));
    EXPECT_THAT(Refusal("{\"a\":\"" + std::string(std::size_t{16} << 20, 'x')),
                HasSubstr("too large"));
    for (std::size_t size = 1; size < whole.size(); size += 7)
        EXPECT_THAT(Refusal(whole.substr(0, size)), HasSubstr("cannot be read")) << size;
}

class Simbrief_Server : public test::Net_World {
  protected:
    Simbrief_Server() {
        server->Get("/plan", [this](const httplib::Request& in, httplib::Response& out) {
            asked.push_back(in.target);
            out.status = in.get_param_value("userid") == "4711" ? 200 : 400;
            out.set_content(
                out.status == 200 ? New_Shape().dump() : R"({"fetch":{"status":"Error: Unknown"}})",
                "application/json");
        });
        server.Start();
        Write("bin/plans.cfg", "[SIMBRIEF]\r\nURL=" + server.Host() + "\r\nDATA=/plan\r\n");
    }
    std::string Fetch(const std::string& user) {
        try {
            return Fetch_Simbrief_Plan(services, user, options).route;
        } catch (const Run_Error& error) {
            return Words_For_Pilot(error);
        }
    }

    std::vector<std::string> asked;
    test::Web_Server server;
};

TEST_F(Simbrief_Server, Is_Asked_For_A_Number_Or_A_Name_And_What_Fails_Is_Told) {
    EXPECT_EQ(Fetch(" 4711 "), "KADIL P570 \xC9LIXA/X");
    EXPECT_THAT(Fetch("4711a"), HasSubstr("\"Error: Unknown\"")) << "an answer of status 400";
    (void)Fetch("Zo\xEB & me");
    EXPECT_THAT(asked, ElementsAre("/plan?userid=4711&json=v2", "/plan?username=4711a&json=v2",
                                   "/plan?username=Zo%C3%AB+%26+me&json=v2"));
    EXPECT_EQ(Simbrief_Address("/p?key=1", "x"), "/p?key=1&username=x&json=v2");
    EXPECT_THAT(Fetch(" "), HasSubstr("hold no SimBrief user"));
    options.most_bytes = 100;
    EXPECT_THAT(Fetch("4711"), HasSubstr("cut off"));
    Write("bin/plans.cfg", "[OTHER]\r\nURL=x\r\n");
    EXPECT_THAT(Fetch("4711"), HasSubstr("bin/plans.cfg does not say"));
    Write("bin/plans.cfg", "[SIMBRIEF]\r\nURL=127.0.0.1:1\r\nDATA=/plan\r\n");
    EXPECT_THAT(Fetch("4711"), HasSubstr("cannot be reached"));
    EXPECT_THAT(asked, testing::SizeIs(4));
}

}  // namespace
}  // namespace norvane
