#pragma once
// The weather reports of both ends of a flight, as the ACARS panel fetches them for its fields: a
// moment after an airport is known, and never over what the pilot typed. Owned by the panel.

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "acarspanel/acars_form.h"
#include "acarspanel/panel_parts.h"
#include "common/signal.h"
#include "common/timer_queue.h"

namespace norvane {

class Request_Round;
class Step_Queue;

class Weather_Desk {
  public:
    Weather_Desk(const Panel_Parts& parts, ACARS_Form& form, const Step_Queue& steps,
                 const Request_Round& round);

    /// Fetches the weather of one end in a moment, unless the simulator tells it or the pilot typed
    /// it.
    void Schedule(std::size_t end);
    /// Begins no request any more.
    void Stop();
    /// A report of this end is on its way, or about to be asked for.
    [[nodiscard]] bool Awaits(std::size_t end) const;
    /// The airport's report as `clsWinInet::Get_METAR` gives it; empty when the flight that it was
    /// asked for is over before the answer is there.
    [[nodiscard]] std::string Get_WX(std::string_view icao);

    /// The field shows what was fetched, not what the pilot typed.
    [[nodiscard]] bool Shows_Fetched(std::size_t end) const;
    /// What the field shows was fetched, by an earlier run.
    void Take_As_Fetched(std::size_t end);
    /// The airport of this end is not the flight's after all: its report goes.
    void Drop(std::size_t end);
    void Forget_All() { m_fetched = {}; }

    /// A report stands in the field of this end.
    Signal<std::size_t> taken;
    /// A request has ended, with a report or without.
    Signal<> settled;

    /// Fetch the weather once, a moment after they were enabled: of the origin, the destination.
    std::array<Timer, flight_end::count> tmrWX;

  private:
    void Tick(std::size_t end);
    void Take(std::size_t end, const std::string& report);
    [[nodiscard]] bool Is_Typed(std::size_t end) const;

    Panel_Parts m_parts;
    ACARS_Form& m_form;
    const Step_Queue& m_steps;
    const Request_Round& m_round;
    std::array<std::string, flight_end::count> m_fetched;
    std::array<bool, flight_end::count> m_is_fetching{};
};

}  // namespace norvane
