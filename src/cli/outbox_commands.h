#pragma once
// The commands about what airlines are to get: "outbox".

#include <cstdint>

#include "app/session.h"
#include "cli/console_desktop.h"

namespace norvane {

/// Number, airline, kind, flight, state and what came last, separated by tabs.
int Outbox_List(Session& session);
/// What was sent, and what came of it.
int Outbox_Show(Session& session, std::int64_t id);
/// Tries what may be sent now and waits for the answers; with a number, that one, whatever became
/// of it before. Failed while anything waits.
int Outbox_Retry(Console& console, Session& session, std::int64_t id);
int Outbox_Drop(Console& console, Session& session, std::int64_t id);

}  // namespace norvane
