#include "simhost/flight/flight_path.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "common/run_error.h"

namespace norvane {

namespace {

constexpr double radians = std::numbers::pi / 180;
/// One minute of arc is one nautical mile.
constexpr double earth_radius_m = metres_per_nm * 60 / radians;
constexpr double same_place_m = 0.5;
constexpr double straight_deg = 0.05;
constexpr double sharpest_turn_deg = 170;
/// Of a leg, so that the turns at both its ends find room.
constexpr double room_for_turn = 0.49;

double Distance_M(Position from, Position to) {
    const double half_latitude = std::sin((to.latitude - from.latitude) * radians / 2);
    const double half_longitude = std::sin((to.longitude - from.longitude) * radians / 2);
    const double square = half_latitude * half_latitude + std::cos(from.latitude * radians) *
                                                              std::cos(to.latitude * radians) *
                                                              half_longitude * half_longitude;
    return 2 * earth_radius_m * std::asin(std::min(1.0, std::sqrt(square)));
}

double Full_Circle(double degrees) {
    const double rest = std::fmod(degrees, 360.0);
    return rest < 0 ? rest + 360 : rest;
}

}  // namespace

double Half_Turn(double degrees) {
    const double rest = Full_Circle(degrees);
    return rest > 180 ? rest - 360 : rest;
}

double Bearing_Deg(Position from, Position to) {
    const double start = from.latitude * radians;
    const double end = to.latitude * radians;
    const double east = (to.longitude - from.longitude) * radians;
    const double y = std::sin(east) * std::cos(end);
    const double x =
        std::cos(start) * std::sin(end) - std::sin(start) * std::cos(end) * std::cos(east);
    return Full_Circle(std::atan2(y, x) / radians);
}

Position Place_At(Position from, double bearing_deg, double distance_m) {
    const double angle = distance_m / earth_radius_m;
    const double start = from.latitude * radians;
    const double bearing = bearing_deg * radians;
    const double sine =
        std::sin(start) * std::cos(angle) + std::cos(start) * std::sin(angle) * std::cos(bearing);
    const double east = std::atan2(std::sin(bearing) * std::sin(angle) * std::cos(start),
                                   std::cos(angle) - std::sin(start) * sine);
    return {std::asin(sine) / radians, Half_Turn(from.longitude + east / radians)};
}

Flight_Path::Flight_Path(const std::vector<Path_Point>& points, const std::string& name) {
    for (std::size_t i = 1; i < points.size(); ++i)
        if (Distance_M(points[i - 1].position, points[i].position) < same_place_m)
            throw Run_Error(error_number::other,
                            fmt::format("{}: points {} and {} are the same place", name, i, i + 1));
    m_point_m.push_back(0);
    Position from = points.front().position;
    for (std::size_t i = 1; i + 1 < points.size(); ++i) {
        const Position corner = points[i].position;
        const double before = Distance_M(points[i - 1].position, corner);
        const double after = Distance_M(corner, points[i + 1].position);
        const double back = Bearing_Deg(corner, points[i - 1].position);
        const double out = Bearing_Deg(corner, points[i + 1].position);
        const double angle = Half_Turn(out - back - 180);
        if (std::abs(angle) > sharpest_turn_deg)
            throw Run_Error(error_number::other,
                            fmt::format("{}: turns back on itself at point {}", name, i + 1));
        const double half = std::tan(std::abs(angle) * radians / 2);
        const double cut =
            std::min(points[i].turn_radius_m * half, std::min(before, after) * room_for_turn);
        if (std::abs(angle) < straight_deg || cut <= 0) {
            Add_Straight(from, corner);
            m_point_m.push_back(End_M());
            from = corner;
            continue;
        }
        const Position turn_from = Place_At(corner, back, cut);
        const Position turn_to = Place_At(corner, out, cut);
        Add_Straight(from, turn_from);
        const double length = cut / half * std::abs(angle) * radians;
        m_point_m.push_back(End_M() + length / 2);
        Add_Turn(turn_from, turn_to, Bearing_Deg(turn_from, corner), angle, length);
        from = turn_to;
    }
    Add_Straight(from, points.back().position);
    m_point_m.push_back(End_M());
}

void Flight_Path::Add_Straight(Position from, Position to) {
    m_pieces.push_back({.start_m = End_M(),
                        .length_m = Distance_M(from, to),
                        .from = from,
                        .to = to,
                        .course_deg = Bearing_Deg(from, to)});
}

void Flight_Path::Add_Turn(Position from, Position to, double course_deg, double angle_deg,
                           double length_m) {
    const double start = End_M();
    m_turns.push_back({start, start + length_m, angle_deg});
    m_pieces.push_back({start, length_m, from, to, course_deg, angle_deg / length_m});
}

double Flight_Path::End_M() const {
    return m_pieces.empty() ? 0 : m_pieces.back().start_m + m_pieces.back().length_m;
}

Flight_Path::Place Flight_Path::At(double distance_m) const {
    const double along = std::clamp(distance_m, 0.0, Length_M());
    const auto after = std::upper_bound(
        m_pieces.begin() + 1, m_pieces.end(), along,
        [](double distance, const Piece& piece) { return distance < piece.start_m; });
    const Piece& piece = *(after - 1);
    const double into = along - piece.start_m;
    if (piece.turn_per_m == 0) {
        const Position here = Place_At(piece.from, piece.course_deg, into);
        // The course of a great circle changes along it; the farther end gives it most exactly.
        if (into * 2 < piece.length_m)
            return {here, Bearing_Deg(here, piece.to)};
        return {here,
                into > 0 ? Full_Circle(Bearing_Deg(here, piece.from) + 180) : piece.course_deg};
    }
    // Turns are small enough to be drawn on a plane.
    const double turned = piece.turn_per_m * into * radians;
    const double radius = 1 / (piece.turn_per_m * radians);
    const double ahead = radius * std::sin(turned);
    const double aside = radius * (1 - std::cos(turned));
    const double bearing = piece.course_deg + std::atan2(aside, ahead) / radians;
    return {Place_At(piece.from, bearing, std::hypot(ahead, aside)),
            Full_Circle(piece.course_deg + turned / radians)};
}

}  // namespace norvane
