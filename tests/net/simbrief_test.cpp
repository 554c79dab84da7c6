// Plans of SimBrief: both shapes of its answers, refusals, and what is asked for.

#include "net/simbrief.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "common/log_error.h"
#include "common/number.h"
#include "common/text.h"
#include "net/net_world.h"

namespace norvane {
namespace {

using Json = nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

/// As the newer shape has it: texts, moments of ISO, "" for what is empty.
Json New_Shape() {
    return Json::parse(R"({"fetch":{"status":"Success"},
        "params":{"time_generated":"2026-02-11T09:49:00Z","units":"lbs"},
        "general":{"icao_airline":"VMS","flight_number":"112","initial_altitude":"9000",
            "route":"KADIL P570 \u00C9LIXA|X"},
        "origin":{"icao_code":"omaa","name":"Abu Dhabi\r\nIntl"},
        "destination":{"icao_code":"OMDB","name":"Dubai"},
        "alternate":[{"icao_code":"OMSJ","name":""},{"icao_code":"OMRK"}],
        "aircraft":{"icaocode":"A320","icao_code":"","reg":"A6-EIA"},
        "fuel":{"taxi":"200","enroute_burn":"1496","plan_takeoff":"4315","plan_ramp":"4515",
            "plan_landing":"3008"},
        "times":{"sched_out":"2026-02-11T10:20:00Z","est_out":"2026-02-11T10:20:00Z",
            "sched_off":"2026-02-11T10:35:00Z","est_off":"","sched_on":[],
            "est_on":"2026-02-11T10:57:06.500+00:00","est_in":"2026-02-11T10:59:06Z",
            "est_block":"00:39:06","est_time_enroute":"00:22:06"},
        "weights":{"pax_count":"150","cargo":"2000","est_zfw":"120000","est_tow":"124315",
            "est_ldw":"122819"},
        "atc":{"callsign":"VMS112","flight_rules":"I"}})");
}

/// The same plan as the older one has it: moments and durations in seconds, {} for what is empty,
/// one thing where there could be several; and numbers for some texts.
Json Old_Shape() {
    Json plan = New_Shape();
    plan["params"]["time_generated"] = "1770803340";
    plan["alternate"] = {{"icao_code", "OMSJ"}, {"name", Json::object()}};
    plan["aircraft"]["icao_code"] = Json::object();
    plan["times"] = {
        {"sched_out", "1770805200"}, {"est_out", 1770805200}, {"sched_off", "1770806100"},
        {"est_off", Json::object()}, {"sched_on", "0"},       {"est_on", "1770807426"},
        {"est_in", "1770807546"},    {"est_block", "2346"},   {"est_time_enroute", 1326}};
    plan["fuel"]["plan_ramp"] = 4515;
    plan["general"]["initial_altitude"] = 9000.0;
    return plan;
}

template <class Value>
std::string Shown(const std::optional<Value>& value) {
    return value ? Format_Significant(static_cast<double>(*value)) : "-";
}

std::string Told(const Simbrief_Plan& plan) {
    std::string told =
        Join({plan.origin.icao, plan.origin.name, plan.destination.icao, plan.destination.name,
              plan.alternate.icao, plan.alternate.name, plan.route, plan.call_sign,
              plan.flight_number, plan.aircraft_type, plan.registration},
             ",") +
        "\n";
    told += fmt::format("{} ft, ifr {}, {} pax", Shown(plan.level_ft), Shown(plan.is_ifr),
                        Shown(plan.passengers));
    for (const auto& weight : {plan.fuel_ramp_lbs, plan.fuel_takeoff_lbs, plan.fuel_landing_lbs,
                               plan.fuel_burn_lbs, plan.fuel_taxi_lbs, plan.zero_fuel_weight_lbs,
                               plan.takeoff_weight_lbs, plan.landing_weight_lbs, plan.cargo_lbs})
        told += " " + Shown(weight);
    told += "\n";
    for (const auto& time : plan.times)
        told += Shown(time.scheduled) + "/" + Shown(time.estimated) + " ";
    return told + Shown(plan.block_seconds) + " " + Shown(plan.air_seconds) + " " +
           Shown(plan.generated);
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
              "OMAA,Abu Dhabi Intl,OMDB,Dubai,OMSJ,,KADIL P570 \xC9LIXA/X,VMS112,112,A320,A6-EIA\n"
              "9000 ft, ifr 1, 150 pax 4515 4315 3008 1496 200 120000 124315 122819 2000\n"
              "1770805200/1770805200 1770806100/- -/1770807426 -/1770807546 2346 1326 1770803340");
    EXPECT_EQ(Told(Old_Shape()), Told(New_Shape()));
    EXPECT_EQ(Told(Read_Simbrief_Plan("\xEF\xBB\xBF\r\n" + New_Shape().dump(2))),
              Told(New_Shape()));
    const Simbrief_Plan plan = Read_Simbrief_Plan(New_Shape().dump());
    EXPECT_EQ(plan.At(Block_Event::off).Best(), 1770806100) << "nothing better than the timetable";
    EXPECT_EQ(plan.At(Block_Event::on).Best(), 1770807426);
}

TEST(Simbrief, Kilograms_Become_Pounds_And_Back_And_An_Unknown_Unit_Gives_No_Weights) {
    Json answer = New_Shape();
    answer["params"]["units"] = "kgs";
    const Simbrief_Plan plan = Read_Simbrief_Plan(answer.dump());
    EXPECT_NEAR(*plan.fuel_ramp_lbs, 4515 * 2.2046226218, 1e-3);
    EXPECT_NEAR(*plan.cargo_lbs, 2000 * 2.2046226218, 1e-3);
    for (const Json& unit : {Json("stone"), Json(), Json::object()}) {
        answer["params"]["units"] = unit;
        EXPECT_THAT(Told(answer), HasSubstr("150 pax - - - - - - - - -\n")) << unit;
    }
}

TEST(Simbrief, What_Makes_No_Sense_Is_Missing_And_The_Rest_Stays) {
    struct Case {
        const char* place;
        Json value;
        const char* told;
    };
    for (const Case& row : std::vector<Case>{
             {"/fuel/plan_ramp", "-4515", "pax - 4315"},
             {"/fuel/plan_ramp", "1e300", "pax - 4315"},
             {"/fuel", "none", "pax - - - - - 120000"},
             {"/general/initial_altitude", "FL090", "- ft"},
             {"/general/initial_altitude", Json::array({"7000", "9000"}), "\n7000 ft"},
             {"/weights/pax_count", "", ", - pax"},
             {"/atc/flight_rules", "V", "ifr 0"},
             {"/atc/flight_rules", "y", "ifr 1"},
             {"/atc/flight_rules", "?", "ifr -"},
             {"/times/est_block", "1:2:3:4:5:6", " - 1326 "},
             {"/times/est_block", "ab:00", " - 1326 "},
             {"/times/est_out", "99999999999999", "1770805200/- "},
             {"/times/est_out", "2026-02-30T10:20:00Z", "1770805200/- "},
             {"/times/est_out", "2026-02-11", "1770805200/- "},
             {"/times", Json::array(), "\n-/- -/- -/- -/- - - 1770803340"},
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

TEST_F(Simbrief_Server, A_Number_And_A_Name_Are_Asked_For_Each_In_Its_Way) {
    EXPECT_EQ(Fetch(" 4711 "), "KADIL P570 \xC9LIXA/X");
    EXPECT_THAT(Fetch("4711a"), HasSubstr("\"Error: Unknown\"")) << "an answer of status 400";
    (void)Fetch("Zo\xEB & me");
    EXPECT_THAT(asked, ElementsAre("/plan?userid=4711&json=v2", "/plan?username=4711a&json=v2",
                                   "/plan?username=Zo%C3%AB+%26+me&json=v2"));
    EXPECT_EQ(Simbrief_Address("/p?key=1", "x"), "/p?key=1&username=x&json=v2");
}

TEST_F(Simbrief_Server, What_Keeps_The_Plan_Away_Is_Told) {
    EXPECT_THAT(Fetch(" "), HasSubstr("hold no SimBrief user"));
    options.most_bytes = 100;
    EXPECT_THAT(Fetch("4711"), HasSubstr("cut off"));
    Write("bin/plans.cfg", "[OTHER]\r\nURL=x\r\n");
    EXPECT_THAT(Fetch("4711"), HasSubstr("bin/plans.cfg does not say"));
    Write("bin/plans.cfg", "[SIMBRIEF]\r\nURL=127.0.0.1:1\r\nDATA=/plan\r\n");
    EXPECT_THAT(Fetch("4711"), HasSubstr("cannot be reached"));
    EXPECT_THAT(asked, testing::SizeIs(1));
}

}  // namespace
}  // namespace norvane
