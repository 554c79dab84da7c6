#pragma once
// Composition of ACARS messages: date line, aircraft line, label line with the message's numbers,
// flight line, body. A composed message is held in the step's output as an `ACARSMessage` event
// and, when the settings ask for it, as a text to show in the simulator.

#include <string_view>

#include "acars/acars_events.h"

namespace norvane {

struct Engine_Context;

/// `text` is the body of weather and comment messages and the altitude of altitude messages; other
/// types ignore it.
void Compose_Message(Engine_Context& engine, Message_Type type, std::string_view text = {});

}  // namespace norvane
