#include <algorithm>
#include <cmath>
#include <utility>

#include "blackbox/landing.h"

namespace norvane {

namespace {

/// The line is fitted to so much of the flight, of the vertical speed and, where a simulator does
/// not tell that, of the height.
constexpr double speed_window_s = 0.25;
constexpr double height_window_s = 0.5;
/// Where samples are few, the last ones of this time are taken. What happened in it decides too
/// whether there is a rate at all.
constexpr double longest_window_s = 1.5;
constexpr std::size_t least_samples = 3;
/// A time without samples before the contact that is no gap: so long, or so many usual ones.
constexpr double shortest_gap_s = 0.3;
constexpr double usual_intervals = 2.5;
/// With fewer samples a wrong one cannot be told from the others.
constexpr std::size_t least_to_reject = 5;
/// Farther from the middle line than this, and than so many times the usual distance, a sample is
/// wrong.
constexpr double least_outlier = 60;
constexpr double outlier_ratio = 6;
constexpr double fpm_per_knot = feet_per_nm / 60;

/// A sample as it is fitted: seconds from the contact, and feet a minute or feet.
struct Fit_Point {
    double seconds = 0;
    double value = 0;
};

struct Line {
    double at_contact = 0;
    double per_second = 0;
};

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

Line Fit_Line(const std::vector<Fit_Point>& points) {
    double mean_seconds = 0;
    double mean_value = 0;
    for (const Fit_Point& point : points) {
        mean_seconds += point.seconds / static_cast<double>(points.size());
        mean_value += point.value / static_cast<double>(points.size());
    }
    double product = 0;
    double square = 0;
    for (const Fit_Point& point : points) {
        product += (point.seconds - mean_seconds) * (point.value - mean_value);
        square += (point.seconds - mean_seconds) * (point.seconds - mean_seconds);
    }
    const double slope = square > 0 ? product / square : 0;
    return {mean_value - slope * mean_seconds, slope};
}

/// Leaves out what one failed sample would spoil: the line through the medians does not notice it.
void Reject_Outliers(std::vector<Fit_Point>& points) {
    if (points.size() < least_to_reject)
        return;
    std::vector<double> slopes;
    for (std::size_t i = 0; i < points.size(); ++i) {
        for (std::size_t j = i + 1; j < points.size(); ++j) {
            if (points[j].seconds != points[i].seconds)
                slopes.push_back((points[j].value - points[i].value) /
                                 (points[j].seconds - points[i].seconds));
        }
    }
    if (slopes.empty())
        return;
    const double slope = Median(std::move(slopes));
    const auto rest = [&](const Fit_Point& point) { return point.value - slope * point.seconds; };
    std::vector<double> rests;
    rests.reserve(points.size());
    for (const Fit_Point& point : points)
        rests.push_back(rest(point));
    const double middle = Median(rests);
    for (double& value : rests)
        value = std::abs(value - middle);
    const double limit = std::max(least_outlier, outlier_ratio * Median(rests));
    std::erase_if(points,
                  [&](const Fit_Point& point) { return std::abs(rest(point) - middle) > limit; });
}

/// The samples before one contact.
class Contact_Approach {
  public:
    Contact_Approach(const std::vector<Flight_Sample>& flown, std::size_t contact)
        : m_flown(flown), m_contact(contact) {}

    /// Nothing was missed just before the contact.
    [[nodiscard]] bool Is_Whole() const {
        const double contact_s = Seconds(m_contact);
        for (std::size_t i = m_contact; contact_s - Seconds(i) <= longest_window_s; --i) {
            if (m_flown[i].point.begins_segment)
                return false;
            if (i == 0)
                break;
        }
        return contact_s - Seconds(m_contact - 1) <=
               std::max(shortest_gap_s, usual_intervals * Usual_Interval());
    }

    /// Those of the last `window` seconds or, where they are few, the last ones of a longer time:
    /// the newest first. A sample that shows nothing new is none.
    [[nodiscard]] std::vector<const Flight_Sample*> Last(double window) const {
        std::vector<const Flight_Sample*> last;
        const double end_s = Contact_Seconds();
        for (std::size_t i = m_contact; i-- > 0;) {
            const double before = end_s - Seconds(i);
            if (before > longest_window_s || (before > window && last.size() >= least_samples) ||
                m_flown[i].point.on_ground)
                break;
            if (m_flown[i].is_new)
                last.push_back(&m_flown[i]);
        }
        return last;
    }

    /// The wheels touched between two samples.
    [[nodiscard]] double Contact_Seconds() const {
        return (Seconds(m_contact) + Seconds(m_contact - 1)) / 2;
    }

  private:
    [[nodiscard]] double Seconds(std::size_t i) const { return m_flown[i].point.seconds; }

    [[nodiscard]] double Usual_Interval() const {
        constexpr std::size_t looked_at = 20;
        std::vector<double> intervals;
        for (std::size_t i = m_contact - 1; i > 0 && intervals.size() < looked_at; --i)
            intervals.push_back(Seconds(i) - Seconds(i - 1));
        return intervals.empty() ? 0 : Median(std::move(intervals));
    }

    const std::vector<Flight_Sample>& m_flown;
    std::size_t m_contact;
};

double Rate_Hz(const std::vector<const Flight_Sample*>& last) {
    if (last.size() < 2)
        return 0;
    const double lasted = last.front()->point.seconds - last.back()->point.seconds;
    return lasted > 0 ? static_cast<double>(last.size() - 1) / lasted : 0;
}

}  // namespace

std::optional<Touch_Rate> Rate_At_Contact(const Recorded_Flight& flight, std::size_t contact,
                                          double slope) {
    const bool by_speed = flight.served.vertical_speed;
    if (contact == 0 || (!by_speed && !flight.served.exact_altitude))
        return std::nullopt;
    const Contact_Approach approach(flight.samples, contact);
    if (!approach.Is_Whole())
        return std::nullopt;
    const auto last = approach.Last(by_speed ? speed_window_s : height_window_s);
    // A height alone has no slope.
    if (last.size() < (by_speed ? 1U : 2U))
        return std::nullopt;
    std::vector<Fit_Point> points;
    for (const Flight_Sample* sample : last) {
        const Flight_Point& point = sample->point;
        points.push_back({point.seconds - approach.Contact_Seconds(),
                          by_speed ? point.vertical_speed_fpm : point.altitude_ft});
    }
    Reject_Outliers(points);
    const Line line = Fit_Line(points);
    constexpr double seconds_a_minute = 60;
    const double fpm = by_speed ? line.at_contact : line.per_second * seconds_a_minute;
    return Touch_Rate{fpm - slope * last.front()->point.ground_speed_kt * fpm_per_knot,
                      static_cast<int>(points.size()), Rate_Hz(last)};
}

}  // namespace norvane
