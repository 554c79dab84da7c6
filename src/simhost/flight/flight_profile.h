#pragma once
// The way down of a stand-in's aircraft: its height as a function of the distance to the place
// where it touches down. Corners are rounded, so that the aircraft can follow it exactly.

#include <vector>

namespace norvane {

/// A level part of a climb or a descent.
struct Level_Off {
    double altitude_ft = 0;
    double for_nm = 0;
};

struct Descent_Plan {
    double ground_ft = 0;  // altitude of the aircraft at the end
    double from_ft = 0;    // the cruising altitude that is left
    /// From the lowest to the highest.
    std::vector<Level_Off> level_offs;
    double final_ft_per_nm = 318;    // below the lowest level-off, or all the way without one
    double descent_ft_per_nm = 300;  // above it
    double rounding_nm = 0.5;        // before and after a corner
};

class Descent_Profile {
  public:
    Descent_Profile() = default;
    explicit Descent_Profile(const Descent_Plan& plan);

    /// Distance from the touchdown at which the cruising altitude is left.
    [[nodiscard]] double Top_Nm() const { return m_top_nm; }
    /// Below the ground when the distance is negative: the last slope goes on.
    [[nodiscard]] double Altitude_Ft(double to_go_nm) const;
    /// Feet a nautical mile, positive where the aircraft descends.
    [[nodiscard]] double Slope_Ft_Per_Nm(double to_go_nm) const;

  private:
    struct Knot {
        double to_go_nm = 0;
        double altitude_ft = 0;
        double sum = 0;  // altitude × distance from the first knot to this one
    };

    [[nodiscard]] double Plain_Altitude_Ft(double to_go_nm) const;
    [[nodiscard]] double Sum_To(double to_go_nm) const;
    /// The knot at or before a distance, of all but the last.
    [[nodiscard]] const Knot* Knot_Before(double to_go_nm) const;

    std::vector<Knot> m_knots;
    double m_rounding_nm = 0;
    double m_top_nm = 0;
};

}  // namespace norvane
