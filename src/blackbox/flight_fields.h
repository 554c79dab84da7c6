#pragma once
// The figures of a flight by name, each stated once: the store's columns, the members of the JSON
// and what is compared are walked from here. Names of enumerations, too.

#include <concepts>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "blackbox/flight_summary.h"

namespace norvane {

/// A setting.
using Named_Text = std::pair<std::string, std::string>;

/// "before_out", "out", "off", "on", "in".
[[nodiscard]] std::string_view Name_Of(Flight_Phase phase);
/// "OUT", "OFF", "ON", "IN".
[[nodiscard]] std::string_view Name_Of(Block_Event event);
/// "pause", "gap", "taken_up", "rate_change", "teleport", "replay".
[[nodiscard]] std::string_view Name_Of(Incident_Kind kind);
// The way back; what is no name leaves the value as it is.
void Take_Name(std::string_view name, Flight_Phase& phase);
void Take_Name(std::string_view name, Block_Event& event);
void Take_Name(std::string_view name, Incident_Kind& kind);

/// A type, const or not: what writes and what reads walk the same list.
template <class Part, class Plain>
concept Is = std::same_as<std::remove_const_t<Part>, Plain>;

// `visit(name, member)` is called for each figure.

template <Is<Named_Text> Part, class Visit>
void Each_Field(Part& setting, Visit&& visit) {
    visit("name", setting.first);
    visit("value", setting.second);
}

template <Is<Position> Part, class Visit>
void Each_Field(Part& place, Visit&& visit) {
    visit("latitude", place.latitude);
    visit("longitude", place.longitude);
}

/// But for its ID and its lists.
template <Is<Flight_Summary> Part, class Visit>
void Each_Field(Part& flight, Visit&& visit) {
    visit("program_version", flight.program_version);
    visit("began_utc", flight.began_utc);
    visit("airline", flight.airline);
    visit("flight_number", flight.flight_number);
    visit("aircraft", flight.aircraft);
    visit("tail", flight.tail);
    visit("simulator", flight.simulator);
    visit("log_name", flight.log_name);
    visit("logged_row", flight.logged_row);
    visit("origin", flight.origin);
    visit("destination", flight.destination);
    visit("length_seconds", flight.length_seconds);
    visit("distance_flown_nm", flight.distance_flown_nm);
    visit("great_circle_nm", flight.great_circle_nm);
    visit("top_of_climb_s", flight.top_of_climb_s);
    visit("top_of_descent_s", flight.top_of_descent_s);
    visit("highest_ft", flight.highest_ft);
    visit("lowest_ft", flight.lowest_ft);
    visit("fastest_ground_speed_kt", flight.fastest_ground_speed_kt);
}

template <Is<Phase_Sum> Part, class Visit>
void Each_Field(Part& sum, Visit&& visit) {
    visit("phase", sum.phase);
    visit("seconds", sum.seconds);
    visit("fuel_gal", sum.fuel_gal);
}

template <Is<Planned_Figure> Part, class Visit>
void Each_Field(Part& figure, Visit&& visit) {
    visit("name", figure.name);
    visit("planned", figure.planned);
    visit("flown", figure.flown);
}

template <Is<Flight_Incident> Part, class Visit>
void Each_Field(Part& incident, Visit&& visit) {
    visit("kind", incident.kind);
    visit("seconds", incident.seconds);
    visit("lasted_seconds", incident.lasted_seconds);
    visit("value", incident.value);
}

template <Is<Recorded_Event> Part, class Visit>
void Each_Field(Part& event, Visit&& visit) {
    visit("event", event.event);
    visit("seconds", event.seconds);
    Each_Field(event.position, visit);
    visit("evidence", event.evidence);
    visit("near", event.near);
}

/// But for its touches.
template <Is<Landing_Record> Part, class Visit>
void Each_Field(Part& landing, Visit&& visit) {
    visit("touch_and_go", landing.is_touch_and_go);
    visit("roll_out_ft", landing.roll_out_ft);
}

template <Is<Touch> Part, class Visit>
void Each_Field(Part& touch, Visit&& visit) {
    visit("seconds", touch.seconds);
    Each_Field(touch.position, visit);
    visit("rate_fpm", touch.rate_fpm);
    visit("samples", touch.samples);
    visit("sample_rate_hz", touch.sample_rate_hz);
    visit("peak_g", touch.peak_g);
    visit("pitch_deg", touch.pitch_deg);
    visit("bank_deg", touch.bank_deg);
    visit("crab_deg", touch.crab_deg);
    visit("indicated_airspeed_kt", touch.indicated_airspeed_kt);
    visit("ground_speed_kt", touch.ground_speed_kt);
    visit("headwind_kt", touch.headwind_kt);
    visit("crosswind_kt", touch.crosswind_kt);
    visit("flaps_percent", touch.flaps_percent);
    visit("weight_lbs", touch.weight_lbs);
}

}  // namespace norvane
