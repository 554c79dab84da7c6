#pragma once
// The world of a flown scenario: puts each moment of the flight, with its clock, weather, fuel and
// texts, into the offset area. Owned by the code that loaded the scenario.

#include <cstddef>
#include <filesystem>
#include <string>

#include "simhost/flight/flight_clock.h"
#include "simhost/flight/flight_model.h"
#include "simhost/world_source.h"

namespace norvane {

class Flight_World : public World_Source {
  public:
    /// Flies the scenario; raises an error when that cannot be done. The simulator's texts name
    /// `simulator_directory` as an absolute path; one that does not fit the field's 256 bytes, or
    /// has characters the code page lacks, is left empty.
    Flight_World(Scenario_Data scenario, const std::filesystem::path& simulator_directory);

    void Apply(double seconds, Offset_Area& area) override;
    [[nodiscard]] double Length() const override { return m_clock.Length_S(); }

    [[nodiscard]] const Flight_Model& Model() const { return m_model; }
    [[nodiscard]] const Scenario_Data& Scenario() const { return m_scenario; }

  private:
    struct Moment;

    void Apply_Constants(Offset_Area& area) const;
    void Apply_Clock(const Moment& now, Offset_Area& area) const;
    void Apply_Motion(const Moment& now, Offset_Area& area) const;
    void Apply_Engines(const Moment& now, Offset_Area& area) const;
    void Apply_Fuel(const Moment& now, Offset_Area& area) const;
    void Apply_Weather(const Moment& now, Offset_Area& area) const;
    [[nodiscard]] const Airport_Data& Nearer_Airport(const Moment& now) const;

    Scenario_Data m_scenario;
    Flight_Model m_model;
    Flight_Clock m_clock;
    std::string m_simulator_directory;
    std::string m_aircraft_path;
};

}  // namespace norvane
