#pragma once
// The world as FlightGear tells it: samples of its properties become figures, figures the offset
// area. Owned by the command; the property server (property_server.h) feeds it.
//
// On the ground is an aircraft of which a wheel is, or that is on the water. Floats, the UFO and
// gliders tell nothing of wheels, or "no" for those that they lack: an aircraft that has not stood
// on a wheel yet is on the ground, too, while it is below 20 ft above ground or water and slower
// than 40 kt. One that has is not: a helicopter hovers there.
//
// Below 100 ft above the ground, in the air or rolling fast, it asks for what tells of a landing
// only, and for all the rest in every 25th sample.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "simhost/flightgear/flightgear_sampling.h"
#include "simhost/flightgear/flightgear_table.h"
#include "simhost/world_source.h"

namespace norvane {

/// What a sample was good for.
enum class Sample_Use {
    taken,             // it is what the world tells from now on
    not_ready,         // the simulator is still starting
    no_position,       // latitude, longitude or altitude are not told
    another_aircraft,  // other properties are to be asked
};

class Flightgear_World : public World_Source {
  public:
    /// `simulator_directory` is what clients find the aircraft's directory in.
    Flightgear_World(Flightgear_Table table, const std::filesystem::path& simulator_directory,
                     std::uint16_t simulator_version);

    /// What to ask.
    [[nodiscard]] const std::vector<std::string>& Paths() const {
        return m_quick_places.empty() ? m_sampling.Paths() : m_quick_paths;
    }
    /// Everything is to be asked next: what answers may be another simulator than before.
    void Ask_All() { m_quick_places.clear(); }
    /// The aircraft takes off or lands: every moment counts.
    [[nodiscard]] bool Is_Hurried() const { return m_hurried; }
    /// The answers to `Paths`. Only a sample that is taken changes what the world tells.
    Sample_Use Take(std::vector<std::string> answers);
    /// The aircraft's title; empty when nothing tells it.
    [[nodiscard]] std::string Title() const { return m_taken.Text(Figure::title); }

    /// The last sample taken, whatever the moment.
    void Apply(double seconds, Offset_Area& area) override;
    [[nodiscard]] double Length() const override { return 0; }

  private:
    void Apply_Simulator(Offset_Area& area) const;
    void Apply_Clock(Offset_Area& area) const;
    void Apply_Motion(Offset_Area& area) const;
    void Apply_Engines(double lb_per_gal, Offset_Area& area) const;
    [[nodiscard]] double Apply_Fuel(Offset_Area& area) const;
    void Apply_Air(Offset_Area& area) const;
    void Apply_Clouds(Offset_Area& area) const;
    void Choose_Next_Paths();
    [[nodiscard]] bool Takes_Off_Or_Lands() const;
    [[nodiscard]] bool Stands_On_Wheels() const;
    [[nodiscard]] bool Is_On_Ground() const;
    [[nodiscard]] double True_Airspeed_Kt() const;
    [[nodiscard]] int Engine_Kind() const;
    [[nodiscard]] int Engine_Count() const;

    Flightgear_Table m_table;
    std::string m_simulator_directory;
    std::string m_aircraft_path;
    std::uint16_t m_simulator_version;
    std::string m_aircraft;
    Flightgear_Sampling m_sampling;
    Flightgear_Sampling m_taken;
    bool m_hurried = false;
    /// What is asked next, as places in the sampling's list; empty: everything.
    std::vector<std::size_t> m_quick_places;
    std::vector<std::string> m_quick_paths;
    int m_quick_left = 0;
    /// This aircraft has told of a wheel on the ground.
    bool m_has_stood_on_wheels = false;
};

}  // namespace norvane
