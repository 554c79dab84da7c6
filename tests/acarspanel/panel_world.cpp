#include "acarspanel/panel_world.h"

#include <fmt/format.h>

#include <utility>

#include "flightlog/log_columns.h"

namespace norvane::test {

Program::Program(Services& services, Offset_Area& area, const Http_Options& http)
    : settings(services),
      airline(services),
      entry(services),
      utc(services.clock),
      transport(area),
      link(transport, services.clock),
      engine({services, link, settings, airline, utc}),
      response(services),
      panel({services, settings, airline, entry, response, http}) {}

Panel_World::Panel_World() {
    Write("bin/fs9.wld", "40.0|-73.0|10|KAAA|Alpha Field\r\n41.0|-73.0|10|KBBB|Bravo Field\r\n");
    area.Set(Variable::engine_type, engine_kind::jet);
    area.Set(Variable::engine_count, 2);
    area.Set(Variable::ground_elevation_ft, 10);
    area.Set(Variable::fuel_weight_lb_per_gal, 6.7);
    area.Set(Variable::zero_fuel_weight_lbs, 90000);
    area.Set_Text(Variable::atc_identifier, "N123");
    area.Set_Text(Variable::atc_flight_number, "77");
    area.Set_Text(Variable::atc_airline, "Test Air");
    area.Set_Text(Variable::aircraft_title, "Test Jet");
    Stand();
}

void Panel_World::Begin(const std::string& airline) {
    program = std::make_unique<Program>(services, area, http);
    program->airline.Get_VA_Settings(airline);
    program->transport.on_deliver = [this](std::span<std::byte>) -> std::optional<Delivery> {
        return linked ? std::nullopt : std::optional(Delivery{Delivery_Outcome::failed, 0});
    };
    program->entry.NewLogEntrySave.connect([this] {
        log.push_back(Log_Line(program->entry));
        program->entry.New_Log_Entry_Save_Result(log_saves);
    });
    Panel().UCI();
    Panel().Set_ACARS(program->engine);
}

std::string Panel_World::Stored(Log_Field field) {
    return store.Get(flight_section, fmt::format("{}", Row_Of(field).store_key));
}

std::vector<std::string> Panel_World::Take_Boxes() {
    std::vector<std::string> texts;
    for (const Message_Box& box : std::exchange(desktop.boxes, {}))
        texts.push_back(box.text);
    return texts;
}

void Panel_World::Stand() {
    area.Set(Variable::parking_brake, 1);
    area.Set(Variable::on_ground, 1);
    area.Set(Variable::latitude_deg, 40);
    area.Set(Variable::longitude_deg, -73);
    area.Set(Variable::altitude_ft, 10);
    area.Set(Variable::ground_speed_kt, 0);
    area.Set(Variable::utc_hour, 14);
    area.Set(Variable::local_hour, 9);
    Set_Minute(0);
    area.Set(Variable::total_weight_lbs, 100000);
    area.Set_Tank(0, 1000, 2000);
    Step();
}

void Panel_World::Set_Minute(int minute) {
    area.Set(Variable::utc_minute, minute);
    area.Set(Variable::local_minute, minute);
}

void Panel_World::Roll() {
    area.Set(Variable::parking_brake, 0);
    Set_Minute(5);
    Step();
    area.Set(Variable::ground_speed_kt, 15);
    Step();
}

void Panel_World::Lift_Off() {
    area.Set(Variable::on_ground, 0);
    area.Set(Variable::altitude_ft, 5000);
    area.Set(Variable::vertical_speed_fpm, 1500);
    area.Set(Variable::indicated_airspeed_kt, 140);
    area.Set(Variable::engine_n1_percent, 91, 1);
    area.Set(Variable::engine_n1_percent, 92, 2);
    area.Set(Variable::total_weight_lbs, 99000);
    area.Set_Tank(0, 900, 2000);
    Set_Minute(10);
    Step();
    area.Set(Variable::vertical_speed_fpm, 0);
    Step();
    area.Set(Variable::vertical_speed_fpm, -300);
    Step();
}

void Panel_World::Touch_Down() {
    area.Set(Variable::on_ground, 1);
    area.Set(Variable::altitude_ft, 10);
    area.Set(Variable::latitude_deg, 41);
    Set_Minute(40);
    area.Set(Variable::total_weight_lbs, 98000);
    area.Set_Tank(0, 700, 2000);
    area.Set(Variable::indicated_airspeed_kt, 120);
    area.Set(Variable::engine_n1_percent, 20, 1);
    area.Set(Variable::ground_speed_kt, 9);
    Step();
}

void Panel_World::Park() {
    area.Set(Variable::parking_brake, 1);
    area.Set(Variable::total_weight_lbs, 97000);
    area.Set_Tank(0, 600, 2000);
    Set_Minute(50);
    Step();
}

void Panel_World::Give_Up() {
    desktop.answers = {Answer::yes};
    Panel().hypReset.Click();
    desktop.answers.clear();
    Take_Boxes();
    Take_Errors();
}

void Panel_World::Fly() {
    Panel().hypOn.Click();
    Roll();
    Lift_Off();
    Touch_Down();
    Park();
}

}  // namespace norvane::test
