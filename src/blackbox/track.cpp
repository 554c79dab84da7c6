#include "blackbox/track.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

namespace norvane {

namespace {

constexpr double most_metres_off = 50;
constexpr double most_feet_off = 50;
/// Of the limits: closer, a point more would not be seen.
constexpr double fine_enough = 0.1;
/// A stretch is split at its worst point again and again, which could take the square of its
/// length.
constexpr std::size_t longest_stretch = 2048;
constexpr double always = std::numeric_limits<double>::infinity();

double Longitude_Difference(double from, double to) {
    return std::remainder(to - from, 360);
}

/// How far a point is from the line between two others, as a share of the limits.
class Line_Error {
  public:
    Line_Error(const Flight_Point& from, const Flight_Point& to) : m_from(from), m_to(to) {
        constexpr double radians = std::numbers::pi / 180;
        m_metres_north = metres_per_nm * 60;
        m_metres_east = m_metres_north * std::cos(from.position.latitude * radians);
        m_east = East(to);
        m_north = North(to);
        m_square = m_east * m_east + m_north * m_north;
    }

    [[nodiscard]] double Of(const Flight_Point& point) const {
        const double east = East(point);
        const double north = North(point);
        const double share =
            m_square > 0 ? std::clamp((east * m_east + north * m_north) / m_square, 0.0, 1.0) : 0;
        const double metres = std::hypot(east - share * m_east, north - share * m_north);
        const double lasts = m_to.seconds - m_from.seconds;
        const double time_share = lasts > 0 ? (point.seconds - m_from.seconds) / lasts : 0;
        const double line_ft =
            m_from.altitude_ft + time_share * (m_to.altitude_ft - m_from.altitude_ft);
        return std::max(metres / most_metres_off,
                        std::abs(point.altitude_ft - line_ft) / most_feet_off);
    }

  private:
    [[nodiscard]] double East(const Flight_Point& point) const {
        return Longitude_Difference(m_from.position.longitude, point.position.longitude) *
               m_metres_east;
    }
    [[nodiscard]] double North(const Flight_Point& point) const {
        return (point.position.latitude - m_from.position.latitude) * m_metres_north;
    }

    const Flight_Point& m_from;
    const Flight_Point& m_to;
    double m_metres_north = 0;
    double m_metres_east = 0;
    double m_east = 0;
    double m_north = 0;
    double m_square = 0;
};

struct Stretch {
    std::size_t first = 0;
    std::size_t last = 0;
    /// A point is never more important than the one that split its stretch off.
    double at_most = always;
};

/// Gives each sample between the ends of `whole` the error without it.
void Weigh_Stretch(const std::vector<Flight_Sample>& flown, const Stretch& whole,
                   std::vector<double>& weights) {
    std::vector<Stretch> open{whole};
    while (!open.empty()) {
        const Stretch stretch = open.back();
        open.pop_back();
        const Line_Error error(flown[stretch.first].point, flown[stretch.last].point);
        double worst = 0;
        std::size_t at = stretch.first;
        for (std::size_t i = stretch.first + 1; i < stretch.last; ++i) {
            const double off = error.Of(flown[i].point);
            if (off > worst) {
                worst = off;
                at = i;
            }
        }
        if (worst < fine_enough)
            continue;
        weights[at] = std::min(worst, stretch.at_most);
        open.push_back({stretch.first, at, weights[at]});
        open.push_back({at, stretch.last, weights[at]});
    }
}

/// Both ends of a segment, and where the phase changes, stand in every track.
bool Is_Needed(const std::vector<Flight_Sample>& flown, std::size_t i) {
    const Flight_Point& point = flown[i].point;
    return i == 0 || i + 1 == flown.size() || point.begins_segment ||
           flown[i + 1].point.begins_segment || flown[i - 1].point.phase != point.phase;
}

std::vector<double> Weigh(const std::vector<Flight_Sample>& flown) {
    std::vector<double> weights(flown.size(), 0);
    std::size_t first = 0;
    for (std::size_t i = 0; i < flown.size(); ++i) {
        if (!Is_Needed(flown, i) && i - first < longest_stretch)
            continue;
        weights[i] = always;
        if (!flown[i].point.begins_segment && i > first)
            Weigh_Stretch(flown, {first, i}, weights);
        first = i;
    }
    return weights;
}

}  // namespace

std::vector<Flight_Point> Thin_Track(const std::vector<Flight_Sample>& flown) {
    const std::vector<double> weights = Weigh(flown);
    std::vector<std::size_t> chosen;
    for (std::size_t i = 0; i < flown.size(); ++i) {
        if (weights[i] > 0)
            chosen.push_back(i);
    }
    if (chosen.size() > most_track_points) {
        const auto end = chosen.begin() + most_track_points;
        std::nth_element(chosen.begin(), end, chosen.end(),
                         [&](std::size_t a, std::size_t b) { return weights[a] > weights[b]; });
        chosen.erase(end, chosen.end());
        std::sort(chosen.begin(), chosen.end());
    }
    std::vector<Flight_Point> track;
    std::size_t next = 0;
    bool begins = false;
    for (std::size_t i = 0; i < flown.size() && next < chosen.size(); ++i) {
        begins |= flown[i].point.begins_segment;
        if (i != chosen[next])
            continue;
        track.push_back(flown[i].point);
        track.back().begins_segment = std::exchange(begins, false);
        ++next;
    }
    return track;
}

}  // namespace norvane
