#include "acarspanel/flight_stage.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace norvane {

namespace {

struct Transition {
    Stage from;
    Stage to;
};

/// From any stage a flight can also be dropped (`none`).
constexpr auto transitions = std::to_array<Transition>({
    {Stage::none, Stage::stored},        // a flight of an earlier run was found
    {Stage::none, Stage::unlogged},      // it was finished already
    {Stage::none, Stage::tracked},       // "On"
    {Stage::stored, Stage::tracked},     // "On" goes on with it
    {Stage::tracked, Stage::paused},     // "Pause", or the link dropped
    {Stage::paused, Stage::tracked},     // "Resume"
    {Stage::tracked, Stage::at_gate},    // IN
    {Stage::paused, Stage::at_gate},     // "Pause" during the step of IN
    {Stage::at_gate, Stage::unlogged},   // the flight has all that it will have
    {Stage::unlogged, Stage::logged},    // the log has it
    {Stage::unlogged, Stage::given_up},  // the pilot does not want it in the log
    {Stage::given_up, Stage::logged},    // "Log Flight" all the same
});

}  // namespace

void Flight_Stage::Enter(Stage next) {
    const bool is_known =
        next == m_now || next == Stage::none ||
        std::any_of(transitions.begin(), transitions.end(), [&](const Transition& transition) {
            return transition.from == m_now && transition.to == next;
        });
    if (!is_known)
        throw std::logic_error("A flight cannot go from its stage to the one that is asked for");
    m_now = next;
}

bool Flight_Stage::Is_Active() const {
    return m_now == Stage::tracked || m_now == Stage::paused || m_now == Stage::at_gate;
}

bool Flight_Stage::Is_Finished() const {
    return m_now >= Stage::at_gate;
}

bool Flight_Stage::Is_Unlogged() const {
    return m_now == Stage::at_gate || m_now == Stage::unlogged;
}

bool Flight_Stage::Is_To_Be_Kept() const {
    return m_now < Stage::logged;
}

}  // namespace norvane
