#include "blackbox/flown_figures.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <string>

#include "blackbox/flight_time.h"
#include "common/number.h"
#include "config/setting_codes.h"

namespace norvane {

namespace {

/// Where the event was captured, or null.
const Recorded_Event* Find_Event(const Flight_Summary& summary, Block_Event event) {
    const auto found =
        std::find_if(summary.events.begin(), summary.events.end(),
                     [&](const Recorded_Event& recorded) { return recorded.event == event; });
    return found == summary.events.end() ? nullptr : &*found;
}

bool Is_Timed_By_Computer(const Flight_Summary& summary) {
    return std::any_of(summary.settings.begin(), summary.settings.end(), [](const auto& setting) {
        return setting.first == "ACARS_UseTime" &&
               Parse_Int32(setting.second) == static_cast<std::int32_t>(Clock_Source::computer);
    });
}

/// What a flight's samples say of its block events.
class Flown_Figures {
  public:
    Flown_Figures(const std::vector<Flight_Sample>& flown, const Flight_Summary& summary)
        : m_flown(flown), m_summary(summary) {}

    [[nodiscard]] std::string Time(Block_Event event) const {
        const Recorded_Event* recorded = Find_Event(m_summary, event);
        if (recorded == nullptr)
            return {};
        if (!Is_Timed_By_Computer(m_summary)) {
            const Flight_Sample* sample = Sample_At(m_flown, recorded->seconds);
            return sample == nullptr ? std::string()
                                     : fmt::format("{:02}{:02}Z", sample->utc_minutes / 60,
                                                   sample->utc_minutes % 60);
        }
        // 2026-11-23T14:05:12.345Z
        const auto moment = Utc_At(m_summary, recorded->seconds);
        const std::size_t clock = moment ? moment->find('T') : std::string::npos;
        return clock == std::string::npos
                   ? std::string()
                   : moment->substr(clock + 1, 2) + moment->substr(clock + 4, 2) + "Z";
    }

    /// In lbs of whole gallons, as the engine counts.
    [[nodiscard]] std::optional<double> Fuel(Block_Event event) const {
        const Recorded_Event* recorded = Find_Event(m_summary, event);
        const Flight_Sample* sample =
            recorded == nullptr ? nullptr : Sample_At(m_flown, recorded->seconds);
        if (sample == nullptr || sample->fuel_lb_per_gal <= 0)
            return std::nullopt;
        return Round_Half_Up(Round_Half_Up(sample->fuel_gal) * sample->fuel_lb_per_gal);
    }

    [[nodiscard]] std::string Used(Block_Event from, Block_Event to) const {
        const auto before = Fuel(from);
        const auto after = Fuel(to);
        return before && after ? Format_Whole(*before - *after) : std::string();
    }

    [[nodiscard]] std::string Figure(Planned figure) const {
        if (!Is_Fuel(figure))
            return Time(static_cast<Block_Event>(figure));
        if (figure == Planned::block_fuel)
            return Used(Block_Event::out, Block_Event::in);
        if (figure == Planned::flight_fuel)
            return Used(Block_Event::off, Block_Event::on);
        const auto fuel = Fuel(static_cast<Block_Event>(static_cast<int>(figure) -
                                                        static_cast<int>(Planned::fuel_out)));
        return fuel ? Format_Whole(*fuel) : std::string();
    }

  private:
    const std::vector<Flight_Sample>& m_flown;
    const Flight_Summary& m_summary;
};

}  // namespace

std::vector<Planned_Figure> Beside_Planned(const Planned_Flight& planned,
                                           const std::vector<Flight_Sample>& flown,
                                           const Flight_Summary& summary) {
    const Flown_Figures figures(flown, summary);
    std::vector<Planned_Figure> rows;
    for (std::size_t i = 0; i < planned.size(); ++i) {
        const auto figure = static_cast<Planned>(i);
        if (!planned.at(i).empty())
            rows.push_back({std::string(Name_Of(figure)), planned.at(i), figures.Figure(figure)});
    }
    return rows;
}

}  // namespace norvane
