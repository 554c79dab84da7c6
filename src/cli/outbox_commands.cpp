#include "cli/outbox_commands.h"

#include <fmt/format.h>

#include <chrono>

#include "cli/exit_status.h"
#include "cli/network_commands.h"
#include "common/run_error.h"
#include "common/text.h"
#include "deliveries/delivery_rules.h"
#include "deliveries/outbox.h"

namespace norvane {

namespace {

/// The requests' own limits end the wait long before.
constexpr std::chrono::hours for_ever(24);

Run_Error No_Such_Delivery(std::int64_t id) {
    return {error_number::other, fmt::format("There is no delivery {}", id)};
}

std::string Moment_Text(std::int64_t utc_s) {
    if (utc_s == 0)
        return {};
    const Date_Time moment = Date_Time_Of_Seconds(utc_s);
    return fmt::format("{}T{:02}:{:02}:{:02}Z", Format_Iso_Date(moment.date), moment.time.hour,
                       moment.time.minute, moment.time.second);
}

}  // namespace

int Outbox_List(Session& session) {
    const Delivery_Store store(session.Outside().program_directory, Delivery_Store::Use::look);
    for (const Airline_Delivery& each : store.List()) {
        Console_Desktop::Print(fmt::format("{}\t{}\t{}\t{}\t{}\t{}", each.id, each.airline,
                                           Name_Of(each.kind), each.flight, Name_Of(each.state),
                                           Outcome_Words(each)));
    }
    return exit_status::done;
}

int Outbox_Show(Session& session, std::int64_t id) {
    const Delivery_Store store(session.Outside().program_directory, Delivery_Store::Use::look);
    const auto delivery = store.Find(id);
    if (!delivery)
        throw No_Such_Delivery(id);
    struct Line {
        std::string_view name;
        std::string value;
    };
    const std::vector<Line> lines{{"Airline", delivery->airline},
                                  {"Kind", std::string(Name_Of(delivery->kind))},
                                  {"Flight", delivery->flight},
                                  {"State", std::string(Name_Of(delivery->state))},
                                  {"Created", Moment_Text(delivery->created_s)},
                                  {"Attempts", std::to_string(delivery->attempts)},
                                  {"Next", Moment_Text(delivery->next_s)},
                                  {"File", delivery->file},
                                  {"Sent", delivery->method + " " + delivery->address},
                                  {"Body", delivery->body},
                                  {"Outcome", Outcome_Words(*delivery)}};
    for (const auto& [name, value] : lines)
        Console_Desktop::Print(fmt::format("{}: {}", name, value));
    if (!delivery->answer.empty())
        Print_Server_Answer(Trim(delivery->answer));
    return exit_status::done;
}

int Outbox_Retry(Console& console, Session& session, std::int64_t id) {
    Outbox outbox(session.Outside(), console.Until_Signal(), Random_Share());
    outbox.Changed.Connect([](const Airline_Delivery& each) {
        if (each.state != Delivery_State::sending && each.attempts > 0) {
            Console_Desktop::Print(
                fmt::format("{}\t{}\t{}", each.id, Name_Of(each.state), Outcome_Words(each)));
        }
    });
    outbox.Begin();
    if (id != 0 && !outbox.Send_Now(id))
        throw No_Such_Delivery(id);
    console.desktop.Wait_Until([&] { return !outbox.Is_Active(); }, for_ever);
    outbox.Close();
    if (outbox.Waiting() == 0)
        return exit_status::done;
    Console_Desktop::Say(fmt::format("Deliveries that wait: {}", outbox.Waiting()));
    return exit_status::failed;
}

int Outbox_Drop(Console& console, Session& session, std::int64_t id) {
    Outbox outbox(session.Outside(), console.Until_Signal(), Random_Share());
    if (!outbox.Give_Up(id)) {
        throw Run_Error(error_number::other,
                        fmt::format("Delivery {} is not there, or is over already", id));
    }
    return exit_status::done;
}

}  // namespace norvane
