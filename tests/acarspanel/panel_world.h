#pragma once
// The whole program around the panel, and a small jet that flies from KAAA to KBBB beside it.

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

#include "flightlog/log_columns.h"
#include "support/test_flight.h"

namespace norvane::test {

using std::chrono::minutes;
using std::chrono::seconds;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// What controls show, in the way of a row of the log: "KAAA|Alpha Field".
template <class... Shown>
std::string Texts(const Shown&... controls) {
    return Join({controls.Text()...}, "|");
}

class Panel_World : public Test_Flight {
  protected:
    Panel_World() {
        Write("bin/fs9.wld",
              "40.0|-73.0|10|KAAA|Alpha Field\r\n41.0|-73.0|10|KBBB|Bravo Field\r\n"
              "42.0|-73.0|10|KCCC|Charlie Field\r\n");
        area.Set(Variable::engine_type, engine_kind::jet);
        area.Set(Variable::engine_count, 2);
        area.Set(Variable::ground_elevation_ft, 10);
        area.Set(Variable::fuel_weight_lb_per_gal, 6.7);
        area.Set(Variable::zero_fuel_weight_lbs, 90000);
        area.Set(Variable::longitude_deg, -73);
        area.Set(Variable::utc_hour, 14);
        area.Set(Variable::local_hour, 9);
        area.Set_Text(Variable::atc_identifier, "N123");
        area.Set_Text(Variable::atc_flight_number, "77");
        area.Set_Text(Variable::atc_airline, "Test Air");
        area.Set_Text(Variable::aircraft_title, "Test Jet");
        Stand();
    }

    /// Starts the program, in place of one that runs, with the airline of that name.
    void Begin(const std::string& airline = "") {
        store.Set("Virtual Airline", "Current", airline);
        Start();
        program->log_entry.NewLogEntrySave.Connect(
            [this] { log.push_back(Log_Line(program->log_entry)); });
    }
    /// The flight log cannot be written any more, or again.
    void Break_Log(bool broken = true) {
        const auto draft = directory / "templog.txt";
        std::filesystem::remove_all(draft);
        if (broken)
            std::filesystem::create_directories(draft / "in the way");
    }
    /// An airline with a server whose form takes `fields` values of its own.
    void Write_Airline(const std::string& name, const std::string& fields) {
        std::string form;
        for (int i = 0; i < 41; ++i)
            form += "Label^name\r\n";
        Write("VA_" + name + "/server.cfg", "www.example.org\r\n/pirep\r\n\r\n");
        Write("VA_" + name + "/pirep.cfg", form);
        Write("VA_" + name + "/vafields.cfg", fields);
    }

    [[nodiscard]] ucACARS& Panel() { return program->panel; }
    [[nodiscard]] ACARS_Events& Events() { return program->engine.events; }
    [[nodiscard]] clsAppSettings& Settings() { return program->settings; }
    /// A field of the flight that was handed to the log last.
    [[nodiscard]] const std::string& Logged(Log_Field field) {
        return program->log_entry.Get(field);
    }
    [[nodiscard]] bool Is_Stored() { return store.Find(flight_section, "1").has_value(); }
    /// A stored field of the flight in progress.
    [[nodiscard]] std::string Stored(Log_Field field) {
        return store.Get(flight_section, std::to_string(Row_Of(field).store_key));
    }
    void Store(Log_Field field, std::string_view text) {
        store.Set(flight_section, std::to_string(Row_Of(field).store_key), text);
    }
    /// Texts of the boxes shown since the last call.
    std::vector<std::string> Take_Boxes() {
        std::vector<std::string> texts;
        for (const Message_Box& box : std::exchange(desktop.boxes, {})) {
            if (box.text != "Flight Log Saved")
                texts.push_back(box.text);
        }
        return texts;
    }

    /// Clicks, and gives these answers to what is asked.
    void Click(Link& link, std::deque<Answer> answers) {
        desktop.answers = std::move(answers);
        link.Click();
        desktop.answers.clear();
    }
    /// "Log Flight", and Yes when it asks.
    void Log() { Click(Panel().hypLog, {Answer::yes}); }
    /// "Reset", and Yes when it asks.
    void Give_Up() {
        Click(Panel().hypReset, {Answer::yes});
        Take_Boxes();
        Take_Errors();
    }

    void Pass(std::chrono::milliseconds span) { desktop.Run_For(span); }
    /// One sampling step passes.
    void Step() { Pass(std::chrono::milliseconds(500)); }
    /// What the simulator shows.
    struct Moment {
        double parking_brake;
        double on_ground;
        double altitude_ft;
        double latitude_deg;
        double ground_speed_kt;
        int minute;
        double weight_lbs;
        double fuel_gal;
    };
    void Show(const Moment& moment) {
        area.Set(Variable::parking_brake, moment.parking_brake);
        area.Set(Variable::on_ground, moment.on_ground);
        area.Set(Variable::altitude_ft, moment.altitude_ft);
        area.Set(Variable::latitude_deg, moment.latitude_deg);
        area.Set(Variable::ground_speed_kt, moment.ground_speed_kt);
        area.Set(Variable::utc_minute, moment.minute);
        area.Set(Variable::local_minute, moment.minute);
        area.Set(Variable::total_weight_lbs, moment.weight_lbs);
        area.Set_Tank(0, moment.fuel_gal, 2000);
        Step();
    }
    // The flight, each ending with a step: on the stand with the brake set, under way, in the air,
    // on the runway of the other airport, on its stand.
    void Stand() { Show({1, 1, 10, 40, 0, 0, 100000, 1000}); }
    void Roll() {
        Show({0, 1, 10, 40, 0, 5, 100000, 1000});
        Show({0, 1, 10, 40, 15, 5, 100000, 1000});
    }
    void Lift_Off() {
        area.Set(Variable::indicated_airspeed_kt, 140);
        area.Set(Variable::engine_n1_percent, 91, 1);
        area.Set(Variable::engine_n1_percent, 92, 2);
        for (const int climb_fpm : {1500, 0, -300}) {
            area.Set(Variable::vertical_speed_fpm, climb_fpm);
            Show({0, 0, 5000, 40, 15, 10, 99000, 900});
        }
    }
    void Touch_Down() {
        area.Set(Variable::indicated_airspeed_kt, 120);
        area.Set(Variable::engine_n1_percent, 20, 1);
        Show({0, 1, 10, 41, 9, 40, 98000, 700});
    }
    void Park() { Show({1, 1, 10, 41, 9, 50, 97000, 600}); }
    /// Low over the runway again.
    void Bounce(std::chrono::milliseconds span) {
        area.Set(Variable::on_ground, 0);
        area.Set(Variable::altitude_ft, 400);
        Pass(span);
    }
    // Put onto the stand, with "On" into the air, to the other runway, to the gate.
    void Take_Off() {
        Stand();
        Panel().hypOn.Click();
        Roll();
        Lift_Off();
    }
    void Land() {
        Take_Off();
        Touch_Down();
    }
    void Fly() {
        Land();
        Park();
    }

    /// Log lines of the flights handed to the log.
    std::vector<std::string> log;
};

}  // namespace norvane::test
