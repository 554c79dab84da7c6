#include "blackbox/segments.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace norvane {

namespace {

/// Without a sample for longer, something was not recorded.
constexpr double gap_seconds = 3;
/// Three times the speed of sound: nothing that is flown is faster.
constexpr double fastest_metres_per_second = 3 * 340;
/// Samples close together are stamped less exactly than they are apart.
constexpr double least_seconds = 0.1;
/// Slewed less far, the aircraft is where it was.
constexpr double least_slew_nm = 0.01;

double Distance_Nm(const Flight_Point& from, const Flight_Point& to) {
    const double along = Great_Circle_Nm(from.position, to.position);
    return std::hypot(along, (to.altitude_ft - from.altitude_ft) / feet_per_nm);
}

class Segment_Marker {
  public:
    explicit Segment_Marker(const std::vector<Noted_Rest>& rests) : m_rests(rests) {
        for (const Noted_Rest& rest : rests)
            m_incidents.push_back(
                {rest.kind, rest.from_seconds, rest.to_seconds - rest.from_seconds, 0});
    }

    /// True when the sample was flown.
    bool Mark(Flight_Sample& sample) {
        const double seconds = sample.point.seconds;
        Note_Rate(sample);
        Note_Lasting(Incident_Kind::pause, sample.paused, seconds, m_stopped_since);
        Note_Lasting(Incident_Kind::replay, sample.replaying, seconds, m_replayed_since);
        m_was_slewed |= sample.slewing;
        m_was_replayed |= sample.replaying;
        m_was_stopped |= sample.paused;
        const bool is_flown = !sample.paused && !sample.replaying && !sample.slewing;
        if (is_flown && m_last) {
            sample.break_before = Break_Before(sample);
            sample.point.begins_segment = sample.break_before != Break::none;
        }
        m_last_seconds = seconds;
        if (is_flown) {
            sample.point.begins_segment |= !m_last;
            m_last = sample.point;
            m_was_slewed = m_was_replayed = m_was_stopped = false;
        }
        return is_flown;
    }

    std::vector<Flight_Incident> Take(double end_seconds) {
        Note_Lasting(Incident_Kind::pause, false, end_seconds, m_stopped_since);
        Note_Lasting(Incident_Kind::replay, false, end_seconds, m_replayed_since);
        std::stable_sort(m_incidents.begin(), m_incidents.end(),
                         [](const auto& a, const auto& b) { return a.seconds < b.seconds; });
        return std::move(m_incidents);
    }

  private:
    Break Break_Before(const Flight_Sample& sample) {
        const double seconds = sample.point.seconds;
        const double since = seconds - m_last_seconds;
        // A gap that a remark explains is no second incident.
        const bool rested = std::any_of(m_rests.begin(), m_rests.end(), [&](const auto& rest) {
            return rest.to_seconds > m_last_seconds && rest.from_seconds < seconds;
        });
        const bool is_gap = since > gap_seconds;
        if (is_gap && !rested)
            m_incidents.push_back({Incident_Kind::gap, m_last_seconds, since, 0});
        const double moved_nm = Distance_Nm(*m_last, sample.point);
        const double furthest_nm = fastest_metres_per_second * sample.simulation_rate *
                                   std::max(since, least_seconds) / metres_per_nm;
        const bool is_slewed = m_was_slewed && moved_nm > least_slew_nm;
        if (!m_was_replayed && (is_slewed || moved_nm > furthest_nm)) {
            m_incidents.push_back({Incident_Kind::teleport, seconds, 0, moved_nm});
            return Break::jump;
        }
        if (m_was_replayed || m_was_slewed)
            return Break::jump;
        if (m_was_stopped)
            return Break::stopped;
        return is_gap || rested ? Break::unseen : Break::none;
    }

    void Note_Rate(const Flight_Sample& sample) {
        if (sample.simulation_rate == m_rate)
            return;
        m_rate = sample.simulation_rate;
        m_incidents.push_back({Incident_Kind::rate_change, sample.point.seconds, 0, m_rate});
    }

    void Note_Lasting(Incident_Kind kind, bool is_on, double seconds,
                      std::optional<double>& since) {
        if (is_on && !since) {
            since = seconds;
        } else if (!is_on && since) {
            m_incidents.push_back({kind, *since, seconds - *since, 0});
            since.reset();
        }
    }

    const std::vector<Noted_Rest>& m_rests;
    std::vector<Flight_Incident> m_incidents;
    /// The sample flown last, and when the last one of any kind was.
    std::optional<Flight_Point> m_last;
    double m_last_seconds = 0;
    double m_rate = 1;
    std::optional<double> m_stopped_since;
    std::optional<double> m_replayed_since;
    /// Since the sample flown last.
    bool m_was_stopped = false;
    bool m_was_replayed = false;
    bool m_was_slewed = false;
};

}  // namespace

std::vector<Flight_Incident> Mark_Segments(std::vector<Flight_Sample>& samples,
                                           const std::vector<Noted_Rest>& rests) {
    if (samples.empty())
        return {};
    Segment_Marker marker(rests);
    const double end_seconds = samples.back().point.seconds;
    std::vector<Flight_Sample> flown;
    flown.reserve(samples.size());
    for (Flight_Sample& sample : samples) {
        if (marker.Mark(sample))
            flown.push_back(sample);
    }
    samples = std::move(flown);
    return marker.Take(end_seconds);
}

}  // namespace norvane
