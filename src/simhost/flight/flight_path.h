#pragma once
// The line over the ground that a stand-in's aircraft follows: great circles between points, joined
// by arcs where they turn. Built once when a scenario is loaded; afterwards a place on it is a
// function of the distance along it, so that any moment of a flight can be asked for directly.

#include <cstddef>
#include <string>
#include <vector>

#include "common/great_circle.h"

namespace norvane {

inline constexpr double metres_per_nm = 1852;

/// A point of the line, with the radius of the turn made near it. The turn cuts the corner, and is
/// made tighter where the legs beside it are too short for its radius.
struct Path_Point {
    Position position;
    double turn_radius_m = 0;
};

/// Degrees 0 to 360 at `from` towards `to`.
[[nodiscard]] double Bearing_Deg(Position from, Position to);
/// The place `distance_m` from `from`, leaving it in direction `bearing_deg`.
[[nodiscard]] Position Place_At(Position from, double bearing_deg, double distance_m);
/// The angle brought into -180 to 180 degrees.
[[nodiscard]] double Half_Turn(double degrees);

class Flight_Path {
  public:
    struct Place {
        Position position;
        double course_deg = 0;  // 0 to 360, true
    };

    struct Turn {
        double start_m = 0;
        double end_m = 0;
        double angle_deg = 0;  // positive to the right
    };

    /// At least two points. Raises an error that calls the line `name` when two points in a row
    /// are the same place or the line turns back on itself.
    Flight_Path(const std::vector<Path_Point>& points, const std::string& name);

    [[nodiscard]] double Length_M() const { return m_point_m.back(); }
    /// Where the line is after `distance_m`; beyond its ends, its ends.
    [[nodiscard]] Place At(double distance_m) const;
    /// How far along the line a point stands; for a point whose corner is cut, the turn's middle.
    [[nodiscard]] double Distance_Of_Point(std::size_t point) const { return m_point_m.at(point); }
    [[nodiscard]] const std::vector<Turn>& Turns() const { return m_turns; }

  private:
    struct Piece {
        double start_m = 0;
        double length_m = 0;
        Position from;
        Position to;
        double course_deg = 0;  // at the start
        double turn_per_m = 0;  // degrees a metre, 0 for a great circle
    };

    void Add_Straight(Position from, Position to);
    void Add_Turn(Position from, Position to, double course_deg, double angle_deg, double length_m);
    [[nodiscard]] double End_M() const;

    std::vector<Piece> m_pieces;
    std::vector<Turn> m_turns;
    std::vector<double> m_point_m;
};

}  // namespace norvane
