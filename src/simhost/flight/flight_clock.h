#pragma once
// The simulator's time in a flown scenario: it stands still while the simulator is paused, and goes
// at another rate where the scenario says so. Owned by the world.

#include <vector>

#include "simhost/scenario/scenario_data.h"

namespace norvane {

class Flight_Clock {
  public:
    struct Moment {
        double flight_s = 0;
        bool paused = false;
        double rate = 1;
    };

    /// Raises an error when the flight has ended before something is to happen.
    Flight_Clock(const Scenario_Data& scenario, double flight_length_s);

    /// `seconds` of the world, from 0 on.
    [[nodiscard]] Moment At(double seconds) const;
    /// Seconds of the world until the flight is over.
    [[nodiscard]] double Length_S() const { return m_length_s; }

  private:
    struct Piece {
        double from_s = 0;  // of the world
        Moment moment;
    };

    /// Lets the flight go on to this second in the last piece, and begins another one there.
    void Go_On_To(double flight_s, double rate);
    void Pause_For(double seconds);

    std::vector<Piece> m_pieces{Piece{}};
    double m_length_s = 0;
};

}  // namespace norvane
