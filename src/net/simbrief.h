#pragma once
// The flight plan that a pilot made with SimBrief, asked for by the pilot's name or number there.
// Its answers come in two shapes of JSON, with texts or numbers, and are read alike. Used by the
// ACARS panel and the command line.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "acars/flight_state.h"
#include "net/http_client.h"

namespace norvane {

struct Services;

/// What a plan says; a text that it does not give is empty, a figure is none. Weights and fuel are
/// in lbs whatever the plan has, so that the pilot's unit is one step away. Moments are seconds
/// since 1 January 1970, UTC.
struct Simbrief_Plan {
    struct Airport {
        std::string icao;
        std::string name;
    };
    /// Of one block event: as the airline's timetable has it, and as the plan works it out.
    struct Planned_Time {
        std::optional<std::int64_t> scheduled;
        std::optional<std::int64_t> estimated;
        /// The plan's own where there is one.
        [[nodiscard]] std::optional<std::int64_t> Best() const {
            return estimated ? estimated : scheduled;
        }
    };

    Airport origin;
    Airport destination;
    Airport alternate;
    std::string route;
    std::optional<std::int32_t> level_ft;
    /// With the air traffic control.
    std::string call_sign;
    /// Without the airline's code.
    std::string flight_number;
    std::string aircraft_type;
    std::string registration;
    /// Flown by instruments; none when the plan does not say.
    std::optional<bool> is_ifr;

    std::optional<double> fuel_ramp_lbs;
    std::optional<double> fuel_takeoff_lbs;
    std::optional<double> fuel_landing_lbs;
    /// From OFF to ON, and from OUT to OFF.
    std::optional<double> fuel_burn_lbs;
    std::optional<double> fuel_taxi_lbs;

    std::optional<double> zero_fuel_weight_lbs;
    std::optional<double> takeoff_weight_lbs;
    std::optional<double> landing_weight_lbs;
    std::optional<double> cargo_lbs;
    std::optional<std::int32_t> passengers;

    std::array<Planned_Time, block_event_count> times;
    /// OUT to IN, and OFF to ON.
    std::optional<std::int64_t> block_seconds;
    std::optional<std::int64_t> air_seconds;
    /// When the plan was made.
    std::optional<std::int64_t> generated;

    [[nodiscard]] const Planned_Time& At(Block_Event event) const {
        return times.at(static_cast<std::size_t>(event));
    }
};

/// The plan in an answer of the service. Raises 440 for a refusal, with the service's own words for
/// the pilot, and for what is no plan.
[[nodiscard]] Simbrief_Plan Read_Simbrief_Plan(std::string_view answer);

/// `user` is the pilot's name, or, of digits alone, the number; behind `path`, the service's page.
[[nodiscard]] std::string Simbrief_Address(std::string_view path, std::string_view user);

/// The pilot's last plan, from the address in "bin\plans.cfg". Events flow while the server is
/// waited for. Raises what keeps the plan from being had, with words for the pilot.
[[nodiscard]] Simbrief_Plan Fetch_Simbrief_Plan(Services& services, std::string_view user,
                                                const Http_Options& options);

}  // namespace norvane
