#include "cli/flight_commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <optional>

#include "blackbox/derive.h"
#include "blackbox/flight_export.h"
#include "blackbox/flight_json.h"
#include "blackbox/flight_library.h"
#include "blackbox/flight_text.h"
#include "blackbox/flight_time.h"
#include "cli/console_desktop.h"
#include "cli/exit_status.h"
#include "cli/open_flights.h"
#include "common/code_page.h"
#include "common/file_writer.h"
#include "common/text.h"

namespace norvane {

namespace {

std::optional<Date> Day_Of(const std::string& text, const Regional& regional) {
    if (text.empty())
        return std::nullopt;
    const auto day = Parse_Date_Time(From_Utf8(text), regional.short_date);
    if (!day)
        throw Run_Error(error_number::invalid_call, "\"" + From_Utf8(text) + "\" is no date");
    return day->date;
}

std::string Worst_Rate_Text(const Flight_Summary& flight) {
    std::optional<double> worst;
    for (const Landing_Record& landing : flight.landings) {
        if (const auto rate = landing.Worst_Rate())
            worst = std::min(worst.value_or(*rate), *rate);
    }
    return worst ? Format_Whole(*worst) : std::string();
}

/// A field of a line whose fields are divided by tabs.
std::string Field(std::string_view text) {
    return Replace_All(text, "\t", " ");
}

/// Text that ends its last line.
int Print_Lines(std::string_view text) {
    if (text.ends_with('\n'))
        text.remove_suffix(1);
    Console_Desktop::Print(text);
    return exit_status::done;
}

}  // namespace

int Flight_List(Session& session, const Flight_Choice& choice) {
    const Regional& regional = session.Outside().regional;
    const Flight_Filter filter{Day_Of(choice.from, regional), Day_Of(choice.to, regional),
                               Trim(From_Utf8(choice.airport))};
    for (const auto& flight : Open_Flights(session, Store_Use::look).library.List(filter)) {
        Console_Desktop::Print(
            Join({Field(flight.id), Field(flight.began_utc), Field(flight.origin),
                  Field(flight.destination), Field(flight.flight_number), Field(flight.aircraft),
                  Duration_Text(flight.length_seconds), Worst_Rate_Text(flight)},
                 "\t"));
    }
    return exit_status::done;
}

int Flight_Show(Session& session, const std::string& id, bool json) {
    const Flight_Summary flight = Flight_Of(session, id);
    if (!json)
        return Print_Lines(Flight_Text(flight));
    fmt::print("{}\n", Flight_Json(flight));
    return exit_status::done;
}

int Flight_Explain(Session& session, const std::string& id) {
    return Print_Lines(Evidence_Words(Flight_Of(session, id)));
}

int Flight_Landing(Session& session, const std::string& id) {
    return Print_Lines(Landing_Text(Flight_Of(session, id)));
}

int Flight_Export(Session& session, const std::string& id, const std::string& format,
                  const std::string& file) {
    const auto wanted = Export_Format_Of(format);
    if (!wanted)
        throw Run_Error(error_number::invalid_call, "There is no format " + From_Utf8(format));
    Write_File_Atomically(file, Export_Flight(Flight_Of(session, id), *wanted));
    return exit_status::done;
}

int Flight_Import(Session& session, const std::string& file) {
    Open_Flights flights(session, Store_Use::write);
    Console_Desktop::Print(flights.library.Import(file).id);
    return exit_status::done;
}

int Flight_Rebuild(Session& session) {
    Open_Flights flights(session, Store_Use::write);
    const std::size_t count = flights.library.Rebuild();
    Console_Desktop::Say(fmt::format("Flights derived and stored: {}", count));
    return exit_status::done;
}

int Flight_Verify(Session& session) {
    const Open_Flights flights(session, Store_Use::look);
    const auto verified = flights.library.Verify();
    const auto shown = [](const std::string& text) { return text.empty() ? "(none)" : text; };
    for (const Verified_Flight& flight : verified) {
        for (const Flight_Difference& difference : flight.differences) {
            Console_Desktop::Print(fmt::format("{}: {}: {} -> {}", flight.id, difference.field,
                                               shown(difference.stored),
                                               shown(difference.derived)));
        }
    }
    return verified.empty() && flights.faults == 0 ? exit_status::done : exit_status::failed;
}

}  // namespace norvane
