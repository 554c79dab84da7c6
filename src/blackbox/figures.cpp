#include "blackbox/figures.h"

#include <algorithm>

namespace norvane {

namespace {

/// So long within so few feet, the aircraft flies level.
constexpr double level_seconds = 60;
constexpr double level_ft = 200;
/// Level flight above this share of the climb is cruise, not a pause in the climb.
constexpr double cruise_share = 0.9;
constexpr double profile_step_seconds = 5;

void Measure_Distances(const std::vector<Flight_Sample>& flown, Flight_Summary& summary) {
    const Flight_Point* first = nullptr;
    const Flight_Point* last = nullptr;
    for (std::size_t i = 1; i < flown.size(); ++i) {
        const Flight_Point& from = flown[i - 1].point;
        const Flight_Point& to = flown[i].point;
        if (from.on_ground && to.on_ground)
            continue;
        if (first == nullptr)
            first = &from;
        last = &to;
        if (flown[i].break_before != Break::jump)
            summary.distance_flown_nm += Great_Circle_Nm(from.position, to.position);
    }
    if (first != nullptr)
        summary.great_circle_nm = Great_Circle_Nm(first->position, last->position);
}

void Measure_Extremes(const std::vector<Flight_Sample>& flown, Flight_Summary& summary) {
    const bool has_flown = std::any_of(flown.begin(), flown.end(),
                                       [](const auto& sample) { return !sample.point.on_ground; });
    bool any = false;
    for (const Flight_Sample& sample : flown) {
        const Flight_Point& point = sample.point;
        summary.fastest_ground_speed_kt =
            std::max(summary.fastest_ground_speed_kt, point.ground_speed_kt);
        if (has_flown && point.on_ground)
            continue;
        summary.highest_ft =
            any ? std::max(summary.highest_ft, point.altitude_ft) : point.altitude_ft;
        summary.lowest_ft =
            any ? std::min(summary.lowest_ft, point.altitude_ft) : point.altitude_ft;
        any = true;
    }
}

/// The flight in the air, a sample every few seconds.
std::vector<Flight_Point> Profile(const std::vector<Flight_Sample>& flown) {
    std::vector<Flight_Point> profile;
    for (const Flight_Sample& sample : flown) {
        const double seconds = sample.point.seconds;
        if (!sample.point.on_ground &&
            (profile.empty() || seconds - profile.back().seconds >= profile_step_seconds))
            profile.push_back(sample.point);
    }
    return profile;
}

void Find_Cruise(const std::vector<Flight_Point>& profile, Flight_Summary& summary) {
    const double cruise_ft =
        summary.lowest_ft + cruise_share * (summary.highest_ft - summary.lowest_ft);
    for (std::size_t i = 0; i < profile.size(); ++i) {
        double lowest_ft = profile[i].altitude_ft;
        double highest_ft = lowest_ft;
        for (std::size_t j = i; j < profile.size(); ++j) {
            lowest_ft = std::min(lowest_ft, profile[j].altitude_ft);
            highest_ft = std::max(highest_ft, profile[j].altitude_ft);
            if (lowest_ft < cruise_ft || highest_ft - lowest_ft > level_ft)
                break;
            if (profile[j].seconds - profile[i].seconds < level_seconds)
                continue;
            if (!summary.top_of_climb_s)
                summary.top_of_climb_s = profile[i].seconds;
            summary.top_of_descent_s = profile[j].seconds;
            break;
        }
    }
}

}  // namespace

void Measure_Flight(const std::vector<Flight_Sample>& flown, Flight_Summary& summary) {
    Measure_Distances(flown, summary);
    Measure_Extremes(flown, summary);
    Find_Cruise(Profile(flown), summary);
}

}  // namespace norvane
