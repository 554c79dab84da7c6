#pragma once
// The shipped scenarios as tests see them: what a client reads from the offset area, twice a
// second.

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "common/great_circle.h"
#include "simlink/offset_area.h"

namespace norvane::test {

/// What is known of a scenario besides its file.
struct Scenario_Facts {
    std::string file;  // from the repository's root
    std::string departure;
    std::string arrival;
    bool bounces = false;
    double least_minutes = 0;
    double most_minutes = 0;
    double fastest_kt = 0;  // ground speed
    double steepest_fpm = 0;
    /// Hundreds of feet, in the order of flying, as a client notices level flight.
    std::vector<int> levels;
};

[[nodiscard]] const std::vector<Scenario_Facts>& All_Scenarios();
void PrintTo(const Scenario_Facts& facts, std::ostream* stream);

[[nodiscard]] std::filesystem::path Repository_File(const std::string& name);
[[nodiscard]] std::filesystem::path Simulator_Directory();

struct Flight_Sample {
    double seconds = 0;
    Position position;
    double altitude_ft = 0;
    double ground_ft = 0;
    double vertical_fpm = 0;
    double ground_kt = 0;
    double indicated_kt = 0;
    double true_kt = 0;
    double heading_deg = 0;
    double n1_percent = 0;
    double weight_lbs = 0;
    double fuel_gal = 0;
    double fuel_flow_pph = 0;  // of all engines
    int engines_running = 0;
    bool on_ground = false;
    bool parking_brake = false;
    int utc_minute_of_day = 0;
};

[[nodiscard]] Flight_Sample Sample_Of(double seconds, const Offset_Area& area);

/// The whole flight, `every_s` apart. Flown once a process for each scenario and step.
[[nodiscard]] const std::vector<Flight_Sample>& Samples_Of(const Scenario_Facts& facts,
                                                           double every_s = 0.5);

/// Places in a flight's samples that its log is made of.
struct Flight_Marks {
    std::size_t out = 0;
    std::size_t lift_off = 0;
    std::size_t touchdown = 0;  // the first
    std::size_t in = 0;         // parking brake set again
};

[[nodiscard]] Flight_Marks Marks_Of(const std::vector<Flight_Sample>& samples);

}  // namespace norvane::test
