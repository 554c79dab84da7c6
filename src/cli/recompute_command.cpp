// "flight recompute": what a recorded flight comes to, beside its row, and into it.

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "app/recompute.h"
#include "cli/exit_status.h"
#include "cli/flight_commands.h"
#include "cli/open_flights.h"
#include "cli/open_log.h"
#include "common/boxes.h"
#include "common/text.h"
#include "flightlog/corrections.h"
#include "flightlog/flight_rows.h"

namespace norvane {

namespace {

Setting_Changes Changes_Of(const std::vector<std::string>& words) {
    Setting_Changes changes;
    for (const std::string& word : words) {
        const std::string text = From_Utf8(word);
        const auto equals = text.find('=');
        if (equals == std::string::npos || equals == 0)
            throw Run_Error(error_number::invalid_call, "\"" + text + "\" is no NAME=VALUE");
        changes.emplace_back(text.substr(0, equals), text.substr(equals + 1));
    }
    return changes;
}

std::vector<Recorded_Moment> Moments_Of(Session& session, const std::string& id) {
    const auto recordings = List_Recordings(Flights_Directory(session.Outside()));
    const auto recording = std::ranges::find(recordings, id, &Recording_File::id);
    if (recording == recordings.end())
        throw Run_Error(error_number::file_not_found,
                        "The recording of \"" + id + "\" is not kept any more");
    return Read_Recording(recording->file);
}

std::optional<Flight_Row> Row_Of(Session& session, const Flight_Summary& flight) {
    Corrections corrections(session.Outside());
    return Find_Flight_Row(session.Outside(), corrections, flight.logged_row, flight.log_name);
}

/// A flight computed again, and the row that it is held against.
struct Computed_Flight {
    /// None where no log has it (any more).
    std::optional<Flight_Row> row;
    std::vector<Row_Difference> differences;
};

/// None once it has been said why.
std::optional<Computed_Flight> Compute(Session& session, const std::string& id,
                                       const std::vector<std::string>& changes) {
    const Setting_Changes set = Changes_Of(changes);
    const Flight_Summary flight = Flight_Of(session, id);
    const auto moments = Moments_Of(session, flight.id);
    std::string logged = flight.logged_row;
    // One that was never logged is held against what was computed with the settings of then.
    if (logged.empty())
        logged = Recompute(session.Outside(), moments, {}, {}).row;
    const Recomputed computed = Recompute(session.Outside(), moments, logged, set);
    if (computed.row.empty()) {
        Console_Desktop::Say(
            "With these settings the recorded flight does not come to the gate: the recording ends "
            "where the flight ended by the settings of then");
        return std::nullopt;
    }
    Computed_Flight result{Row_Of(session, flight), {}};
    result.differences = Differences(result.row ? result.row->line : logged, computed.row);
    for (const Row_Difference& found : result.differences)
        Console_Desktop::Print(found.caption + ": " + found.logged + " -> " + found.computed);
    if (result.differences.empty())
        Console_Desktop::Print("no difference");
    return result;
}

}  // namespace

int Flight_Row_Of(Session& session, const std::string& id) {
    const auto row = Row_Of(session, Flight_Of(session, id));
    if (!row) {
        Console_Desktop::Say("No flight log has a row of this flight");
        return exit_status::failed;
    }
    Console_Desktop::Print(fmt::format("{}\t{}\t{}", row->log, row->row + 1, row->line));
    return exit_status::done;
}

int Flight_Recompute(Session& session, const std::string& id,
                     const std::vector<std::string>& changes) {
    return Compute(session, id, changes) ? exit_status::done : exit_status::failed;
}

int Flight_Apply(Session& session, const std::string& id, const std::vector<std::string>& changes) {
    const auto computed = Compute(session, id, changes);
    if (!computed)
        return exit_status::failed;
    if (!computed->row)
        throw Run_Error(error_number::invalid_call, "No flight log has a row of this flight");
    if (computed->differences.empty())
        return exit_status::done;
    if (computed->row->log != clsAppSettings(session.Outside()).FlightLog()) {
        throw Run_Error(error_number::invalid_call,
                        fmt::format("The flight's row stands in \"{}\", which is not the active "
                                    "log: \"log use\" makes it so",
                                    computed->row->log));
    }
    Open_Log log(session, {computed->row->row + 1, {}});
    if (log.panel.Table().Line(computed->row->row) != computed->row->line)
        throw Run_Error(error_number::other, "The flight log was changed meanwhile");
    const Answer answer =
        Ask(log.services.desktop,
            "Are you sure you want to put these values into the flight of " + log.Flight() + "?");
    if (answer != Answer::yes)
        return exit_status::failed;
    std::string why = "computed again";
    for (const std::string& change : changes)
        why += ", " + From_Utf8(change);
    for (const Row_Difference& found : computed->differences)
        log.panel.Correct_Cell(computed->row->row, found.column, found.computed, why);
    return log.Save() ? exit_status::done : exit_status::failed;
}

}  // namespace norvane
