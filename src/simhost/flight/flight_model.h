#pragma once
// A whole flight, flown once when its scenario is loaded and kept as a table of moments. Any moment
// between is found by interpolation, so that the aircraft's state is a function of the time alone.

#include <array>
#include <optional>
#include <vector>

#include "simhost/flight/flight_route.h"
#include "simhost/scenario/scenario_data.h"
#include "simlink/catalogue.h"

namespace norvane {

/// The aircraft at one moment.
struct Flown_State {
    double path_m = 0;  // along the route's line; along the pushback's while `pushed`
    double altitude_ft = 0;
    double vertical_fpm = 0;
    double indicated_kt = 0;
    double true_kt = 0;
    double ground_kt = 0;
    double heading_deg = 0;  // true
    double power = 0;        // 0 idle to 1
    double flow_pph = 0;     // of each engine that runs
    double fuel_lbs = 0;
    double pitch_deg = 0;  // nose up positive
    double bank_deg = 0;   // right wing down positive
    double load_g = 1;
    double flaps_percent = 0;  // where the levers stand
    double gear_percent = 100;
    bool pushed = false;
    bool on_ground = true;
    bool parking_brake = true;
};

/// Seconds between two moments of the table.
inline constexpr double flight_step_s = 0.125;

/// A flight as the pilot flew it.
struct Flight_Table {
    std::vector<Flown_State> states;
    /// When each engine was shut down, seconds.
    std::array<std::optional<double>, most_engines> engine_off_s;
    double lift_off_m = 0;  // along the route's line
};

/// How far the aircraft has come from the one runway (0) to the other (1).
[[nodiscard]] double Share_Of_Route(const Flight_Route& route, const Flight_Table& table,
                                    const Flown_State& state);

class Flight_Model {
  public:
    /// Flies the scenario. Raises an error that says why it cannot be flown.
    explicit Flight_Model(const Scenario_Data& scenario);

    [[nodiscard]] double Length_S() const;
    /// The moment `seconds` after the start; before it the first, after the end the last.
    [[nodiscard]] Flown_State At(double seconds) const;
    [[nodiscard]] Position Position_Of(const Flown_State& state) const;
    [[nodiscard]] double Share_Of_Route(const Flown_State& state) const {
        return norvane::Share_Of_Route(m_route, m_table, state);
    }
    /// Seconds an engine (1 to 4) has been off at that moment; nothing while it runs.
    [[nodiscard]] std::optional<double> Off_For_S(int engine, double seconds) const;

  private:
    Flight_Route m_route;
    Flight_Table m_table;
};

/// The wind at an altitude: of the ground near it, changing into that aloft.
[[nodiscard]] Wind Wind_At(const Scenario_Data& scenario, double share_of_route,
                           double altitude_ft);
/// Ground below the aircraft, feet.
[[nodiscard]] double Ground_Ft(const Scenario_Data& scenario, double share_of_route);

}  // namespace norvane
