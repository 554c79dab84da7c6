#pragma once
// Who flies a scenario from its stand to the other: one step after the other, as a pilot would,
// until the engines are off. `Flight_Pilot` moves the aircraft and knows what all aircraft do; what
// an aeroplane and a helicopter do each of their own stands in files of their own.

#include <string>

#include "simhost/flight/flight_model.h"

namespace norvane {

/// Flies the whole scenario. Raises an error that says why it cannot be flown.
[[nodiscard]] Flight_Table Fly_Scenario(const Scenario_Data& scenario, const Flight_Route& route);

/// Above the pad, where a helicopter comes to a hover.
inline constexpr double hover_height_ft = 10;

/// Turns below this angle are taxied without slowing down.
inline constexpr double real_turn_deg = 20;

class Flight_Pilot {
  public:
    Flight_Pilot(const Scenario_Data& scenario, const Flight_Route& route);

    [[nodiscard]] Flight_Table Fly();

  private:
    [[noreturn]] static void Give_Up(const std::string& reason);

    // Moving (flight_pilot.cpp): each adds one moment to the table.
    void Stand_Step();
    void Ground_Step(double ground_kt);
    /// In the air, with the airspeed and vertical speed that will be reached.
    void Air_Step(double indicated_kt, double vertical_fpm);
    /// In the air without flying speed: moves by the ground speed.
    void Hover_Step(double ground_kt, double vertical_fpm);
    void Use_Engines(double acceleration_kt_per_s);
    void Set_Levers();
    void Save_State();
    [[nodiscard]] Wind Wind_Now() const;
    [[nodiscard]] double Course() const;
    [[nodiscard]] double Weight_Lbs() const;

    // On the ground (flight_pilot_ground.cpp).
    void Stand(double seconds);
    void Leave_Stand();
    void Drive_To(double stop_m, double highest_kt);
    [[nodiscard]] double Ground_Limit_Kt(double stop_m, double highest_kt) const;
    void Turn_In_Place(double heading_deg);
    void Taxi_To_Stand();
    void Shut_Down();

    // An aeroplane's start and landing (flight_pilot_runway.cpp).
    void Take_Off();
    void Run_To_Lift_Off(double runway_end_m);
    void Land();
    void Touch_Down();
    void Touch_And_Go();
    void Flare();
    /// Shapes the last seconds of a descent so that the next moment is that of the touchdown, after
    /// a while at exactly this rate.
    void Meet_Ground(double ground_ft, double rate_fpm);
    void Bounce();
    /// Gives up when the aircraft is too fast for the first turn off the runway.
    void Check_Exit() const;

    // In the air (flight_pilot_air.cpp).
    void Fly_Route();
    void Fly_Circuits();
    [[nodiscard]] Descent_Plan Plan_Descent() const;
    void Cruise_And_Descend();
    void Teleport_If_Due();
    void Climb_To(double altitude_ft);
    void Hold_Level(double until_flown_nm);
    void Descend();
    void Fly_Step(double vertical_fpm);
    [[nodiscard]] double Target_Kt() const;
    [[nodiscard]] double Approach_Kt() const;
    [[nodiscard]] double To_Go_Nm() const;
    [[nodiscard]] bool Breaks_Off() const;
    [[nodiscard]] double Flown_Nm() const;
    [[nodiscard]] double Height_Ft() const;

    // A helicopter's start and landing (flight_pilot_helicopter.cpp).
    void Lift_Off();
    void Set_Down();
    [[nodiscard]] double Helicopter_Kt() const;
    [[nodiscard]] bool Pad_Reached() const;

    enum class Stage { ground, take_off, climb, cruise, descent };

    const Scenario_Data& m_scenario;
    const Performance_Data& m_performance;
    const Flight_Route& m_route;
    bool m_helicopter;
    Descent_Profile m_profile;
    double m_departure_ft = 0;  // altitude of the aircraft on its wheels
    double m_arrival_ft = 0;
    double m_level_ft = 0;  // where the last climb ended
    Stage m_stage = Stage::ground;
    int m_engines_running = 0;
    std::size_t m_approach = 0;   // of the route's
    std::size_t m_teleports = 0;  // that are over
    double m_crab_deg = 0;        // that the wheels have not taken out yet
    Flown_State m_now;
    Flight_Table m_table;
};

}  // namespace norvane
