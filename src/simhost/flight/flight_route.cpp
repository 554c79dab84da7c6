#include "simhost/flight/flight_route.h"

#include <algorithm>
#include <utility>

#include "simlink/catalogue.h"

namespace norvane {

namespace {

constexpr double entry_m = 35;    // from the threshold to the middle of the turn onto the runway
constexpr double line_up_m = 90;  // from the threshold to where the take-off begins
constexpr double aim_m = 300;     // from the threshold to where the glide path meets the runway
constexpr double most_of_runway_to_aim = 0.2;

Position On_Runway(const Runway_Data& runway, double from_threshold_m) {
    return Place_At(runway.threshold, runway.heading_deg, from_threshold_m);
}

/// The places that mark something, as points of the line.
struct Marks {
    std::vector<std::pair<std::size_t, double>> stops;  // point, seconds
    std::size_t line_up = 0;
    std::vector<std::size_t> glides;
};

double Aim_M(const Runway_Data& runway) {
    return std::min(aim_m, runway.length_m * most_of_runway_to_aim);
}

void Add_Departure(const Scenario_Data& scenario, std::vector<Path_Point>& points, Marks& marks) {
    const Airport_Data& airport = scenario.departure;
    const Performance_Data& performance = scenario.aircraft.performance;
    const double tight = performance.taxi_turn_radius_m;
    points.push_back({airport.pushback.empty() ? airport.stand : airport.pushback.back(), tight});
    for (const Taxi_Point& point : airport.taxi) {
        if (point.hold_s > 0)
            marks.stops.emplace_back(points.size(), point.hold_s);
        points.push_back({point.position, tight});
    }
    points.push_back({On_Runway(*airport.runway, entry_m), tight});
    marks.line_up = points.size();
    points.push_back({On_Runway(*airport.runway, line_up_m), 0});
    // Far enough for the first turn to begin beyond the runway.
    points.push_back(
        {On_Runway(*airport.runway, airport.runway->length_m + performance.turn_radius_m),
         performance.turn_radius_m});
}

void Add_Arrival(const Scenario_Data& scenario, std::vector<Path_Point>& points, Marks& marks) {
    const Airport_Data& airport = scenario.arrival;
    const Performance_Data& performance = scenario.aircraft.performance;
    const double tight = performance.taxi_turn_radius_m;
    const double wide = performance.turn_radius_m;
    const double aim = Aim_M(*airport.runway);
    const auto approach = [&] {
        points.push_back(
            {On_Runway(*airport.runway, aim - airport.final_nm * metres_per_nm), wide});
        marks.glides.push_back(points.size());
        points.push_back({On_Runway(*airport.runway, aim), 0});
    };
    for (const Circuit& circuit : airport.circuits) {
        approach();
        points.push_back({On_Runway(*airport.runway, airport.runway->length_m + wide), wide});
        for (const Position& position : circuit.route)
            points.push_back({position, wide});
    }
    approach();
    points.push_back({On_Runway(*airport.runway, airport.exit_m), tight});
    for (const Taxi_Point& point : airport.taxi) {
        if (point.hold_s > 0)
            marks.stops.emplace_back(points.size(), point.hold_s);
        points.push_back({point.position, tight});
    }
    points.push_back({airport.stand, 0});
}

std::optional<Flight_Path> Pushback_Of(const Scenario_Data& scenario) {
    const Airport_Data& airport = scenario.departure;
    if (airport.pushback.empty())
        return std::nullopt;
    std::vector<Path_Point> points{{airport.stand, 0}};
    for (const Position& position : airport.pushback)
        points.push_back({position, scenario.aircraft.performance.taxi_turn_radius_m});
    return Flight_Path(points, "departure.pushback");
}

}  // namespace

Flight_Route Route_Of(const Scenario_Data& scenario) {
    const bool helicopter = scenario.aircraft.engine.kind == engine_kind::helicopter;
    std::vector<Path_Point> points;
    Marks marks;
    if (helicopter)
        points.push_back({scenario.departure.stand, 0});
    else
        Add_Departure(scenario, points, marks);
    for (const Position& position : scenario.route)
        points.push_back({position, scenario.aircraft.performance.turn_radius_m});
    if (helicopter) {
        marks.glides.push_back(points.size());
        points.push_back({scenario.arrival.stand, 0});
    } else {
        Add_Arrival(scenario, points, marks);
    }
    Flight_Route route{Pushback_Of(scenario), Flight_Path(points, "route"), 0, 0, {}, 0, {}, {}};
    route.line_up_m = route.path.Distance_Of_Point(marks.line_up);
    for (const std::size_t glide : marks.glides)
        route.glides_m.push_back(route.path.Distance_Of_Point(glide));
    route.touchdown_m = route.glides_m.front();
    if (const auto& runway = scenario.arrival.runway)
        route.runway_left_m = runway->length_m - Aim_M(*runway);
    for (const auto& [point, seconds] : marks.stops) {
        const double at_m = route.path.Distance_Of_Point(point);
        (point < marks.line_up ? route.stops_out : route.stops_in).push_back({at_m, seconds});
    }
    return route;
}

}  // namespace norvane
