#include "acarspanel/simbrief_desk.h"

#include <fmt/format.h>

#include <utility>

#include "acars/cls_acars.h"
#include "acarspanel/flight_stage.h"
#include "acarspanel/request_round.h"
#include "acarspanel/simbrief_fields.h"
#include "acarspanel/step_queue.h"
#include "blackbox/recording_head.h"
#include "common/boxes.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"

namespace norvane {

namespace {

constexpr std::int64_t seconds_of_an_hour = 3600;
constexpr std::int64_t hours_of_a_day = 24;
/// A plan that is older was hardly made for this flight.
constexpr std::int64_t longest_age_s = 12 * seconds_of_an_hour;
constexpr std::string_view procedure = "ucACARS.hypSimBrief_Click()";

/// "OUT 1020Z, OFF 1035Z"; of fuel likewise.
std::string Planned_Line(const Planned_Flight& planned, bool of_fuel, int fuel_unit) {
    constexpr std::array<std::string_view, planned_count> captions{
        "OUT", "OFF", "ON", "IN", "OUT", "OFF", "ON", "block", "flight"};
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < planned.size(); ++i) {
        const auto figure = static_cast<Planned>(i);
        if (Is_Fuel(figure) == of_fuel && !planned.at(i).empty())
            parts.push_back(fmt::format("{} {}", captions.at(i),
                                        Shown_Planned(figure, planned.at(i), fuel_unit)));
    }
    return Join(parts, ", ");
}

}  // namespace

Simbrief_Desk::Simbrief_Desk(const Panel_Parts& parts, ACARS_Form& form, const Flight_Stage& stage,
                             Step_Queue& steps, const Request_Round& round)
    : m_parts(parts), m_form(form), m_stage(stage), m_steps(steps), m_round(round) {
    m_form.hypSimBrief.clicked.Connect([this] { m_steps.After_Step([this] { Fetch(); }); });
}

/// The flight that was asked for is under way.
bool Simbrief_Desk::Is_Wanted(int round) const {
    return m_stage.Is_Active() && !m_stage.Is_Finished() && !m_round.Is_Over(round);
}

void Simbrief_Desk::Fetch() {
    if (!m_form.hypSimBrief.Enabled() || std::exchange(m_is_asking, true))
        return;
    const int round = m_round.Now();
    Guarded(m_parts.services, procedure, Show::box, [&] {
        Simbrief_Plan plan;
        try {
            const Wait_Notice notice(m_parts.services.desktop,
                                     "Fetching your plan from SimBrief ...");
            const auto is_over = [this, round] { return m_round.Is_Over(round); };
            plan = Fetch_Simbrief_Plan(m_parts.services, m_parts.settings.SimBrief_User(),
                                       Given_Up_When(is_over, m_parts.http));
        } catch (...) {
            // What was asked for a flight that is over has not failed.
            if (m_round.Is_Over(round))
                return;
            throw;
        }
        if (!Is_Wanted(round))
            return;
        const Answer answer =
            Ask(m_parts.services.desktop, Question(plan),
                Doubts(plan).empty() ? Icon::question : Icon::exclamation, "SimBrief");
        // The flight goes on behind the question: it may be over, or a step may be running.
        if (answer == Answer::yes) {
            m_steps.After_Step([this, round, plan] {
                if (Is_Wanted(round))
                    agreed.Emit(plan);
            });
        }
    });
    m_is_asking = false;
}

std::vector<std::string> Simbrief_Desk::Doubts(const Simbrief_Plan& plan) const {
    std::vector<std::string> doubts;
    if (plan.generated) {
        const std::int64_t age_s = Seconds_Of(Read_Clocks(m_parts.services).utc) - *plan.generated;
        if (age_s > longest_age_s) {
            const std::int64_t hours = age_s / seconds_of_an_hour;
            doubts.push_back(
                hours < 2 * hours_of_a_day
                    ? fmt::format("The plan was made {} hours ago.", hours)
                    : fmt::format("The plan was made {} days ago.", hours / hours_of_a_day));
        }
    }
    const std::string stands_at =
        m_steps.Engine() == nullptr ? std::string() : m_steps.Engine()->Departure_ICAO();
    if (!stands_at.empty() && !plan.origin.icao.empty() &&
        !Equal_No_Case(stands_at, plan.origin.icao)) {
        doubts.push_back(fmt::format("It begins at {}, but the aircraft stands at {}.",
                                     plan.origin.icao, stands_at));
    }
    return doubts;
}

std::string Simbrief_Desk::Question(const Simbrief_Plan& plan) const {
    std::string text = "This is your plan with SimBrief";
    if (plan.generated) {
        const Date_Time made = Date_Time_Of_Seconds(*plan.generated);
        text += fmt::format(", made on {} at {}", Format_Iso_Date(made.date),
                            Planned_Time_Text(plan.generated));
    }
    text += ".\r\n";
    const auto add = [&](std::string_view caption, const std::string& value) {
        if (!value.empty())
            text += fmt::format("\r\n{}: {}", caption, value);
    };
    for (const Simbrief_Field& field : Simbrief_Fields(plan, m_parts.settings)) {
        const std::string now = Without_Placeholder((m_form.*field.box).Text());
        add(field.caption, now.empty() || now == field.text
                               ? field.text
                               : fmt::format("{} in place of {}", field.text, now));
    }
    add("ATC Flight", plan.call_sign);
    if (plan.is_ifr)
        add("Rules", *plan.is_ifr ? "IFR" : "VFR");
    const Planned_Flight figures = Planned_Of(plan);
    add("Planned times", Planned_Line(figures, false, m_parts.settings.ACARS_Fuel()));
    add("Planned fuel", Planned_Line(figures, true, m_parts.settings.ACARS_Fuel()));
    text += "\r\n";
    for (const std::string& doubt : Doubts(plan))
        text += "\r\n" + doubt;
    return text + (text.ends_with('.') ? "\r\n\r\n" : "\r\n") +
           "Would you like to take it over for this flight?";
}

}  // namespace norvane
