#include "blackbox/landing.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "blackbox/flight_fields.h"

namespace norvane {

namespace {

constexpr double armed_after_s = 15;
constexpr double armed_above_ft = 10 * feet_per_metre;
/// Less than both is no bounce: a wheel that was light for a moment.
constexpr double bounce_s = 0.3;
constexpr double bounce_ft = 0.5 * feet_per_metre;
/// Higher, the aircraft flew on.
constexpr double fly_on_ft = 50;
/// Another contact within either of them belongs to the same landing.
constexpr double same_landing_s = 30;
constexpr double same_landing_nm = 300 / metres_per_nm;
constexpr double g_window_s = 2;
/// Over a longer time three samples are no peak.
constexpr double longest_g_span_s = 0.5;
constexpr double rolled_out_kt = 40;
/// The track is the line from where the aircraft was so long before the contact.
constexpr double track_s = 1;
constexpr double least_track_nm = 5 / metres_per_nm;
constexpr double degrees = 180 / std::numbers::pi;

double Angle_Between(double from_deg, double to_deg) {
    return std::remainder(to_deg - from_deg, 360);
}

double Bearing(Position from, Position to) {
    const double east =
        std::remainder(to.longitude - from.longitude, 360) * std::cos(from.latitude / degrees);
    return std::atan2(east, to.latitude - from.latitude) * degrees;
}

/// None where the aircraft stood, or came from nowhere.
std::optional<double> Track_At(const std::vector<Flight_Sample>& flown, std::size_t contact) {
    const Flight_Point& at = flown[contact].point;
    std::size_t first = contact;
    while (first > 0 && !flown[first].point.begins_segment &&
           at.seconds - flown[first].point.seconds < track_s)
        --first;
    const Position from = flown[first].point.position;
    if (Great_Circle_Nm(from, at.position) < least_track_nm)
        return std::nullopt;
    return Bearing(from, at.position);
}

std::optional<double> Peak_G(const std::vector<Flight_Sample>& flown, std::size_t contact) {
    std::optional<double> peak;
    std::vector<const Flight_Sample*> last;
    const double end_s = flown[contact].point.seconds + g_window_s;
    for (std::size_t i = contact; i < flown.size() && flown[i].point.seconds <= end_s; ++i) {
        if (flown[i].point.begins_segment)
            break;
        if (!flown[i].is_new)
            continue;
        last.push_back(&flown[i]);
        if (last.size() < 3)
            continue;
        const auto three = last.end() - 3;
        if (three[2]->point.seconds - three[0]->point.seconds > longest_g_span_s)
            continue;
        const double mean = (three[0]->g_load + three[1]->g_load + three[2]->g_load) / 3;
        peak = std::max(peak.value_or(mean), mean);
    }
    return peak;
}

/// The store keeps no sign of a zero.
struct Zero_Without_Sign {
    void operator()(const char*, std::optional<double>& figure) const {
        if (figure)
            *figure += 0.0;
    }
    template <class Other>
    void operator()(const char*, Other&) const {}
};

Touch Make_Touch(const Recorded_Flight& flight, std::size_t contact) {
    const Flight_Sample& sample = flight.samples[contact];
    const Served_Variables& served = flight.served;
    Touch touch;
    touch.seconds = sample.point.seconds;
    touch.position = sample.point.position;
    if (served.indicated_airspeed)
        touch.indicated_airspeed_kt = sample.point.indicated_airspeed_kt;
    if (served.ground_speed)
        touch.ground_speed_kt = sample.point.ground_speed_kt;
    if (served.weight)
        touch.weight_lbs = sample.weight_lbs;
    if (const auto rate = Rate_At_Contact(flight, contact)) {
        touch.rate_fpm = rate->fpm;
        touch.samples = rate->samples;
        touch.sample_rate_hz = rate->sample_rate_hz;
    }
    if (served.g_load)
        touch.peak_g = Peak_G(flight.samples, contact);
    if (served.pitch)
        touch.pitch_deg = sample.pitch_deg;
    if (served.bank)
        touch.bank_deg = sample.bank_deg;
    if (served.flaps)
        touch.flaps_percent = sample.flaps_percent;
    const auto track = Track_At(flight.samples, contact);
    if (track)
        touch.crab_deg = Angle_Between(*track, sample.point.true_heading_deg);
    if (served.wind) {
        const double along = track.value_or(sample.point.true_heading_deg);
        const double angle = (sample.wind_direction_deg - along) / degrees;
        touch.headwind_kt = sample.wind_speed_kt * std::cos(angle);
        touch.crosswind_kt = sample.wind_speed_kt * std::sin(angle);
    }
    Each_Field(touch, Zero_Without_Sign());
    return touch;
}

std::optional<double> Roll_Out(const std::vector<Flight_Sample>& flown, std::size_t contact) {
    if (flown[contact].point.ground_speed_kt <= rolled_out_kt)
        return std::nullopt;
    double rolled_nm = 0;
    const double ground_ft = Height_Ft(flown[contact].point);
    for (std::size_t i = contact + 1; i < flown.size(); ++i) {
        const Flight_Point& point = flown[i].point;
        if (point.begins_segment || Height_Ft(point) > ground_ft + fly_on_ft)
            break;
        rolled_nm += Great_Circle_Nm(flown[i - 1].point.position, point.position);
        if (point.on_ground && point.ground_speed_kt <= rolled_out_kt)
            return rolled_nm * feet_per_nm;
    }
    return std::nullopt;
}

/// Walks along the flight from one contact to the next.
class Landing_Finder {
  public:
    explicit Landing_Finder(const Recorded_Flight& flight) : m_flight(flight) {}

    void Walk() {
        for (std::size_t i = 0; i < m_flight.samples.size(); ++i) {
            const Flight_Sample& sample = m_flight.samples[i];
            if (sample.break_before == Break::jump)
                Begin_Anew();
            if (!sample.point.on_ground)
                Fly(i);
            else
                Stand(i);
        }
    }

    std::vector<Landing_Record> landings;

  private:
    /// Nothing that was flown led to where the aircraft is now.
    void Begin_Anew() {
        m_is_airborne = m_has_landed = false;
        m_high_s = 0;
    }

    void Fly(std::size_t i) {
        const Flight_Sample& sample = m_flight.samples[i];
        const double height_ft = Height_Ft(sample.point);
        if (!m_is_airborne) {
            m_is_airborne = true;
            m_left_s = sample.point.seconds;
            m_highest_ft = height_ft;
            m_high_s = 0;
        } else if (sample.break_before != Break::stopped &&
                   height_ft - m_rest_ft > armed_above_ft) {
            m_high_s += sample.point.seconds - m_flight.samples[i - 1].point.seconds;
        }
        m_highest_ft = std::max(m_highest_ft, height_ft);
        if (m_has_landed && m_highest_ft - m_rest_ft > fly_on_ft)
            landings.back().is_touch_and_go = true;
    }

    void Stand(std::size_t i) {
        if (m_is_airborne)
            Touch_Down(i);
        m_is_airborne = false;
        m_rest_ft = Height_Ft(m_flight.samples[i].point);
    }

    void Touch_Down(std::size_t i) {
        const Flight_Sample& sample = m_flight.samples[i];
        const bool is_armed = m_high_s >= armed_after_s;
        const bool flew_on = m_highest_ft - m_rest_ft > fly_on_ft;
        const bool is_near =
            m_has_landed && !flew_on &&
            (sample.point.seconds - landings.back().touches.back().seconds <= same_landing_s ||
             Great_Circle_Nm(landings.back().touches.back().position, sample.point.position) <=
                 same_landing_nm);
        if (is_near) {
            if (sample.point.seconds - m_left_s >= bounce_s && m_highest_ft - m_rest_ft > bounce_ft)
                landings.back().touches.push_back(Make_Touch(m_flight, i));
        } else if (is_armed || (m_has_landed && flew_on)) {
            if (m_has_landed)
                landings.back().is_touch_and_go = true;
            Landing_Record& landing = landings.emplace_back();
            landing.touches.push_back(Make_Touch(m_flight, i));
            landing.roll_out_ft = Roll_Out(m_flight.samples, i);
            m_has_landed = true;
        }
    }

    const Recorded_Flight& m_flight;
    bool m_is_airborne = false;
    bool m_has_landed = false;
    /// Since it left the ground: when that was, how high it came, how long it was above 10 m.
    double m_left_s = 0;
    double m_highest_ft = 0;
    double m_high_s = 0;
    /// Height of the aircraft when it stands.
    double m_rest_ft = 0;
};

}  // namespace

std::vector<Landing_Record> Find_Landings(const Recorded_Flight& flight) {
    Landing_Finder finder(flight);
    finder.Walk();
    return std::move(finder.landings);
}

std::optional<double> Landing_Record::Worst_Rate() const {
    std::optional<double> worst;
    for (const Touch& touch : touches) {
        if (touch.rate_fpm)
            worst = std::min(worst.value_or(*touch.rate_fpm), *touch.rate_fpm);
    }
    return worst;
}

}  // namespace norvane
