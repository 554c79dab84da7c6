#include "simhost/flight/flight_profile.h"

#include <algorithm>

namespace norvane {

namespace {

/// How far the first and the last slope are carried on beyond the descent.
constexpr double margin_nm = 100;

}  // namespace

Descent_Profile::Descent_Profile(const Descent_Plan& plan) : m_rounding_nm(plan.rounding_nm) {
    m_knots.push_back({-margin_nm, plan.ground_ft - plan.final_ft_per_nm * margin_nm});
    double to_go = 0;
    double altitude = plan.ground_ft;
    double slope = plan.final_ft_per_nm;
    for (const Level_Off& level : plan.level_offs) {
        to_go += (level.altitude_ft - altitude) / slope;
        altitude = level.altitude_ft;
        m_knots.push_back({to_go, altitude});
        to_go += level.for_nm;
        m_knots.push_back({to_go, altitude});
        slope = plan.descent_ft_per_nm;
    }
    to_go += (plan.from_ft - altitude) / slope;
    m_knots.push_back({to_go, plan.from_ft});
    m_knots.push_back({to_go + margin_nm, plan.from_ft});
    m_top_nm = to_go + m_rounding_nm;
    for (std::size_t i = 1; i < m_knots.size(); ++i) {
        const Knot& before = m_knots[i - 1];
        m_knots[i].sum = before.sum + (m_knots[i].to_go_nm - before.to_go_nm) *
                                          (m_knots[i].altitude_ft + before.altitude_ft) / 2;
    }
}

const Descent_Profile::Knot* Descent_Profile::Knot_Before(double to_go_nm) const {
    const auto after = std::upper_bound(
        m_knots.begin() + 1, m_knots.end() - 1, to_go_nm,
        [](double distance, const Knot& knot) { return distance < knot.to_go_nm; });
    return &*(after - 1);
}

double Descent_Profile::Plain_Altitude_Ft(double to_go_nm) const {
    const Knot* before = Knot_Before(to_go_nm);
    const Knot* after = before + 1;
    const double share = (to_go_nm - before->to_go_nm) / (after->to_go_nm - before->to_go_nm);
    return before->altitude_ft + share * (after->altitude_ft - before->altitude_ft);
}

double Descent_Profile::Sum_To(double to_go_nm) const {
    const Knot* before = Knot_Before(to_go_nm);
    return before->sum +
           (to_go_nm - before->to_go_nm) * (before->altitude_ft + Plain_Altitude_Ft(to_go_nm)) / 2;
}

double Descent_Profile::Altitude_Ft(double to_go_nm) const {
    return (Sum_To(to_go_nm + m_rounding_nm) - Sum_To(to_go_nm - m_rounding_nm)) /
           (2 * m_rounding_nm);
}

double Descent_Profile::Slope_Ft_Per_Nm(double to_go_nm) const {
    return (Plain_Altitude_Ft(to_go_nm + m_rounding_nm) -
            Plain_Altitude_Ft(to_go_nm - m_rounding_nm)) /
           (2 * m_rounding_nm);
}

}  // namespace norvane
