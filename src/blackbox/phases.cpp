#include "blackbox/phases.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <string>

#include "common/number.h"
#include "common/text.h"

namespace norvane {

namespace {

/// Above the lowest place so far by this much, the aircraft has flown.
constexpr double climbed_ft = 25;
/// After a landing the aircraft flies on once it was off the ground in so many steps in a row and
/// has climbed.
constexpr int steps_to_fly_on = 6;
/// Fuel that grows by more from one sample to the next was filled in.
constexpr double refuelled_gal = 0.5;

/// Walks through the phases as the engine does.
class Phase_Finder {
  public:
    explicit Phase_Finder(Flight_Notes& notes) : m_notes(notes) {}

    void Step(const Flight_Sample& sample) {
        const double altitude_ft = sample.point.altitude_ft;
        m_steps_off_ground = sample.point.on_ground ? 0 : m_steps_off_ground + 1;
        switch (m_phase) {
            case Flight_Phase::before_out:
                if (!sample.parking_brake)
                    Record(Block_Event::out, Block_Rule::brake_released, sample);
                break;
            case Flight_Phase::out:
                m_ground_ft = altitude_ft;
                if (!sample.point.on_ground)
                    Record(Block_Event::off, Block_Rule::off_ground, sample);
                break;
            case Flight_Phase::off:
                m_has_climbed |= altitude_ft > m_ground_ft + climbed_ft;
                if (sample.point.on_ground && m_has_climbed) {
                    Record(Block_Event::on, Block_Rule::on_ground, sample);
                    m_ground_ft = altitude_ft;
                }
                break;
            case Flight_Phase::on:
                if (sample.parking_brake)
                    Record(Block_Event::in, Block_Rule::brake_set, sample);
                else if (m_steps_off_ground >= steps_to_fly_on &&
                         altitude_ft > m_ground_ft + climbed_ft)
                    Fly_On(sample);
                break;
            case Flight_Phase::in:
                break;
        }
    }

  private:
    void Record(Block_Event event, Block_Rule rule, const Flight_Sample& sample) {
        m_phase = Phase_From(event);
        m_notes.events.push_back({event, sample.point.seconds, {rule, 0, {}, {}}});
        m_notes.phases.push_back({sample.point.seconds, m_phase});
    }

    void Fly_On(const Flight_Sample& sample) {
        m_phase = Flight_Phase::off;
        m_notes.events.pop_back();
        m_notes.phases.push_back({sample.point.seconds, m_phase});
    }

    Flight_Notes& m_notes;
    Flight_Phase m_phase = Flight_Phase::before_out;
    double m_ground_ft = 0;
    bool m_has_climbed = false;
    int m_steps_off_ground = 0;
};

std::string Engines_Line(const Flight_Sample& sample) {
    std::vector<std::string> running;
    for (std::size_t i = 0; i < sample.engine_runs.size(); ++i) {
        if (sample.engine_runs.at(i))
            running.push_back(std::to_string(i + 1));
    }
    if (running.empty())
        return "no engine running";
    if (running.size() == 1)
        return "engine " + running[0] + " running";
    const std::string last = running.back();
    running.pop_back();
    return "engines " + Join(running, ", ") + " and " + last + " running";
}

std::vector<std::string> Lines_Near(const Flight_Sample& sample) {
    std::vector<std::string> lines{
        sample.parking_brake ? "parking brake set" : "parking brake released",
        sample.point.on_ground ? "on the ground" : "in the air"};
    if (sample.engine_count > 0)
        lines.push_back(Engines_Line(sample));
    lines.push_back("ground speed " + Format_Whole(sample.point.ground_speed_kt) + " kt");
    lines.push_back("altitude " + Format_Grouped(sample.point.altitude_ft) + " ft");
    if (sample.fuel_gal > 0)
        lines.push_back("fuel " + Format_Fixed(sample.fuel_gal, 1) + " gal");
    return lines;
}

}  // namespace

void Find_Events(const std::vector<Flight_Sample>& flown, Flight_Notes& notes) {
    Phase_Finder finder(notes);
    for (const Flight_Sample& sample : flown) {
        if (!sample.is_fast)
            finder.Step(sample);
    }
}

void Set_Phases(std::vector<Flight_Sample>& flown, const std::vector<Phase_Change>& changes) {
    auto next = changes.begin();
    Flight_Phase phase = Flight_Phase::before_out;
    for (Flight_Sample& sample : flown) {
        for (; next != changes.end() && next->seconds <= sample.point.seconds; ++next)
            phase = next->phase;
        sample.point.phase = phase;
    }
}

std::vector<Phase_Sum> Sum_Phases(const std::vector<Flight_Sample>& flown) {
    constexpr std::size_t phase_count = 5;
    std::array<Phase_Sum, phase_count> all;
    for (std::size_t i = 0; i < all.size(); ++i)
        all.at(i).phase = static_cast<Flight_Phase>(i);
    for (std::size_t i = 1; i < flown.size(); ++i) {
        const Flight_Sample& from = flown[i - 1];
        const Flight_Sample& to = flown[i];
        Phase_Sum& sum = all.at(static_cast<std::size_t>(from.point.phase));
        const double burnt_gal = from.fuel_gal - to.fuel_gal;
        if (burnt_gal > -refuelled_gal && to.break_before != Break::jump)
            sum.fuel_gal += burnt_gal;
        if (to.break_before == Break::none || to.break_before == Break::unseen)
            sum.seconds += to.point.seconds - from.point.seconds;
    }
    std::vector<Phase_Sum> sums;
    std::copy_if(all.begin(), all.end(), std::back_inserter(sums),
                 [](const Phase_Sum& sum) { return sum.seconds > 0; });
    return sums;
}

std::vector<Recorded_Event> Describe_Events(const std::vector<Flight_Sample>& flown,
                                            const std::vector<Noted_Event>& events) {
    std::vector<Recorded_Event> described;
    for (const Noted_Event& event : events) {
        Recorded_Event& made = described.emplace_back();
        made.event = event.event;
        made.seconds = event.seconds;
        made.evidence = event.evidence;
        const Flight_Sample* after = Sample_At(flown, event.seconds);
        if (after == nullptr)
            continue;
        made.position = after->point.position;
        made.near = Lines_Near(*after);
    }
    return described;
}

}  // namespace norvane
