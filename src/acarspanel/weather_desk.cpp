#include "acarspanel/weather_desk.h"

#include <fmt/format.h>

#include "acarspanel/request_round.h"
#include "acarspanel/step_queue.h"
#include "common/log_error.h"
#include "common/services.h"
#include "config/cls_app_settings.h"
#include "config/setting_codes.h"
#include "net/cls_win_inet.h"

namespace norvane {

namespace {

constexpr std::chrono::seconds weather_delay(1);

}  // namespace

Weather_Desk::Weather_Desk(const Panel_Parts& parts, ACARS_Form& form, const Step_Queue& steps,
                           const Request_Round& round)
    : tmrWX{{{parts.services.desktop.Timers(), weather_delay},
             {parts.services.desktop.Timers(), weather_delay}}},
      m_parts(parts),
      m_form(form),
      m_steps(steps),
      m_round(round) {
    for (std::size_t end = 0; end < tmrWX.size(); ++end)
        tmrWX.at(end).tick.Connect([this, end] { Tick(end); });
}

void Weather_Desk::Schedule(std::size_t end) {
    const Weather_Source source = Weather_Source_Of(m_parts.settings.WX_URL());
    const bool from_web = source != Weather_Source::simulator && source != Weather_Source::none;
    if (!m_form.Code(end).Is_Empty() && from_web && !Is_Typed(end))
        tmrWX.at(end).Set_Enabled(true);
}

void Weather_Desk::Stop() {
    for (Timer& timer : tmrWX)
        timer.Set_Enabled(false);
}

bool Weather_Desk::Awaits(std::size_t end) const {
    return tmrWX.at(end).Enabled() || m_is_fetching.at(end);
}

bool Weather_Desk::Is_Typed(std::size_t end) const {
    const Text_Box& field = m_form.Weather(end);
    return !field.Is_Empty() && field.Text() != m_fetched.at(end);
}

bool Weather_Desk::Shows_Fetched(std::size_t end) const {
    const Text_Box& field = m_form.Weather(end);
    return !field.Is_Empty() && field.Text() == m_fetched.at(end);
}

void Weather_Desk::Take_As_Fetched(std::size_t end) {
    m_fetched.at(end) = m_form.Weather(end).Text();
}

void Weather_Desk::Drop(std::size_t end) {
    tmrWX.at(end).Set_Enabled(false);
    if (!Is_Typed(end))
        m_form.Weather(end).Set_Text({});
}

void Weather_Desk::Tick(std::size_t end) {
    // The timer is still enabled and ticks again.
    if (m_steps.Is_Stepping())
        return;
    Guarded(m_parts.services, "ucACARS.tmrWX_Timer()", Show::silent, [&] {
        tmrWX.at(end).Set_Enabled(false);
        const int round = m_round.Now();
        if (m_form.Code(end).Is_Empty())
            return;
        const std::string code = m_form.Code(end).Text();
        m_is_fetching.at(end) = true;
        const std::string report = Get_WX(code);
        if (!m_round.Is_Over(round) && m_form.Code(end).Text() == code)
            Take(end, report);
    });
    m_is_fetching.at(end) = false;
    settled.Emit();
}

/// A report that did not come leaves the one that is there.
void Weather_Desk::Take(std::size_t end, const std::string& report) {
    if (report.empty() || Is_Typed(end))
        return;
    m_form.Weather(end).Set_Text(report);
    Take_As_Fetched(end);
    taken.Emit(end);
}

std::string Weather_Desk::Get_WX(std::string_view icao) {
    const Wait_Notice notice(m_parts.services.desktop,
                             fmt::format("Fetching the weather of {} ...", icao));
    const auto is_over = [this, round = m_round.Now()] { return m_round.Is_Over(round); };
    clsWinInet client(m_parts.services, m_parts.settings, m_parts.airline,
                      Given_Up_When(is_over, m_parts.http));
    return client.Get_METAR(icao);
}

}  // namespace norvane
