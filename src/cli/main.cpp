// norvane-cli: the ACARS panel and the flight log without a window.

#include <CLI/CLI.hpp>
#include <functional>

#include "app/session_options.h"
#include "cli/command_line.h"
#include "cli/exit_status.h"
#include "cli/fly_command.h"
#include "cli/listing_commands.h"
#include "cli/network_commands.h"
#include "cli/outbox_commands.h"
#include "cli/plan_command.h"
#include "common/log_error.h"
#include "common/version.h"

namespace {

using namespace norvane;

void Add_Fly(CLI::App& app, Session_Options& session, Fly_Options& fly, Work& work) {
    auto* command = app.add_subcommand("fly", "Fly one flight to the gate and log it");
    command->add_option("--flight-number", fly.flight_number, "Airline flight number");
    command->add_option("--aircraft", fly.aircraft, "Aircraft type");
    command->add_flag("--new", fly.start_new, "Drop a stored flight instead of resuming it");
    command->add_option("--time-scale", fly.time_scale, "Run timers and stand-in X times as fast")
        ->check(CLI::Range(0.01, 1000.0));
    command
        ->add_option("--give-up", fly.give_up_s,
                     "Seconds (of the scaled time) after which a dropped link is given up")
        ->check(CLI::Range(0.0, 1e9));
    auto* demo = command->add_flag("--demo", fly.demo, "Fly the demonstration flight");
    auto* scenario = command->add_option("--scenario", fly.scenario, "Fly a scenario file")
                         ->check(CLI::ExistingFile)
                         ->excludes(demo);
    command->add_option("--replay", fly.replay, "Fly along with a recording")
        ->check(CLI::ExistingFile)
        ->excludes(demo)
        ->excludes(scenario);
    auto* plan =
        command->add_option("--plan", fly.plan, "Read a saved flight plan when the flight begins")
            ->check(CLI::ExistingFile);
    command
        ->add_option("--simbrief", fly.simbrief_user,
                     "Fly by the last plan of this SimBrief user, a name or a number")
        ->excludes(plan);
    command->callback([&] {
        session.places.demonstration = Has_Own_Simulator(fly);
        work = {Access::write, [&](Console& console, Session& open) {
                    fly.simulator = Simulator_Address(session, open.Outside().settings);
                    return Run_Fly(console, open, fly);
                }};
    });
}

void Add_Settings(CLI::App& app, Words& words, Work& work) {
    auto* settings = app.add_subcommand("settings", "The settings")->require_subcommand(1);
    settings->add_subcommand("list", "List every setting")->callback([&] {
        work = {Access::look, [&](Console&, Session& open) { return Settings_List(open); }};
    });
    auto* get = settings->add_subcommand("get", "Print one setting");
    get->add_option("NAME", words.name)->required();
    get->callback([&] {
        work = {Access::look,
                [&](Console&, Session& open) { return Settings_Get(open, words.name); }};
    });
    auto* set = settings->add_subcommand("set", "Change one setting");
    set->add_option("NAME", words.name)->required();
    set->add_option("VALUE", words.value)->required();
    set->callback([&] {
        work = {Access::write, [&](Console&, Session& open) {
                    return Settings_Set(open, words.name, words.value);
                }};
    });
}

void Add_Airline(CLI::App& app, Words& words, Work& work) {
    auto* airline = app.add_subcommand("airline", "The virtual airlines")->require_subcommand(1);
    airline->add_subcommand("list", "List the airlines")->callback([&] {
        work = {Access::look, [&](Console&, Session& open) { return Airline_List(open); }};
    });
    airline->add_subcommand("show", "The active airline's server and fields")->callback([&] {
        work = {Access::look, [&](Console&, Session& open) { return Airline_Show(open); }};
    });
    auto* use = airline->add_subcommand("use", "Make an airline the active one");
    use->add_option("NAME", words.name)->required();
    use->callback([&] {
        work = {Access::write,
                [&](Console&, Session& open) { return Airline_Use(open, words.name); }};
    });
}

void Add_Plan(CLI::App& app, Words& words, Work& work) {
    auto* plan = app.add_subcommand("plan", "Show what a flight plan says")->require_option(1);
    plan->add_option("FILE.pln", words.name, "The simulator's flight plan");
    auto* user = plan->add_option("--simbrief", words.value,
                                  "The SimBrief user, a name or a number, whose last plan it is");
    plan->callback([&words, &work, user] {
        work = {Access::look,
                [&words, is_of_user = !user->empty()](Console& console, Session& open) {
                    return is_of_user ? Show_SimBrief_Plan(console, open, words.value)
                                      : Show_Plan(open, words.name);
                }};
    });
}

/// A command that asks the network with one word.
void Add_Request(CLI::App* command, const std::string& word, Words& words, Work& work,
                 int (*run)(Console&, Session&, const std::string&)) {
    command->add_option(word, words.name)->required();
    command->callback([&words, &work, run] {
        work = {Access::look, [&words, run](Console& console, Session& open) {
                    return run(console, open, words.name);
                }};
    });
}

void Add_Requests(CLI::App& app, Words& words, Work& work) {
    Add_Request(app.add_subcommand("metar", "An airport's METAR"), "ICAO", words, work, Show_METAR);
    Add_Request(app.add_subcommand("wx", "An airport's METAR and TAF"), "ICAO", words, work,
                Show_WX);
    Add_Request(app.add_subcommand("vatsim", "What a pilot has filed with the online network"),
                "PID", words, work, Show_VATSIM);
    auto* pirep = app.add_subcommand("pirep", "PIREP files")->require_subcommand(1);
    Add_Request(pirep->add_subcommand("send", "Send a PIREP file to the active airline"), "FILE",
                words, work, PIREP_Send);
}

void Add_Outbox(CLI::App& app, Words& words, Work& work) {
    auto* outbox = app.add_subcommand("outbox", "What airlines are to get")->require_subcommand(1);
    outbox->add_subcommand("list", "List the deliveries")->callback([&] {
        work = {Access::look, [](Console&, Session& open) { return Outbox_List(open); }};
    });
    auto* show = outbox->add_subcommand("show", "What was sent, and what came of it");
    show->add_option("ID", words.row)->required();
    show->callback([&] {
        work = {Access::look, [&](Console&, Session& open) {
                    return Outbox_Show(open, static_cast<std::int64_t>(words.row));
                }};
    });
    auto* retry = outbox->add_subcommand("retry", "Send what waits, and wait for the answers");
    retry->add_option("ID", words.row, "This one, whatever became of it before");
    retry->callback([&] {
        work = {Access::write, [&](Console& console, Session& open) {
                    return Outbox_Retry(console, open, static_cast<std::int64_t>(words.row));
                }};
    });
    auto* drop = outbox->add_subcommand("drop", "Give a delivery up");
    drop->add_option("ID", words.row)->required();
    drop->callback([&] {
        work = {Access::write, [&](Console& console, Session& open) {
                    return Outbox_Drop(console, open, static_cast<std::int64_t>(words.row));
                }};
    });
}

/// Runs the chosen command; what it raises becomes a line, an entry of the error log and a status.
int Run(const Session_Options& options, Console& console, const Work& work) {
    try {
        Session session(options, work.access, console.desktop, console.clock);
        try {
            return work.run(console, session);
        } catch (...) {
            const Run_Error error = Caught_Error();
            Console_Desktop::Say(error.Description());
            Log_Error(session.Outside(), "modMain.Main()", error, Show::silent);
            return exit_status::failed;
        }
    } catch (const Store_In_Use& error) {
        Console_Desktop::Say(error.Description());
        return exit_status::store_in_use;
    } catch (...) {
        Console_Desktop::Say(Caught_Error().Description());
        return exit_status::failed;
    }
}

}  // namespace

int main(int argc, char** argv) {
    Session_Options session;
    Fly_Options fly;
    Words words;
    Work work;
    CLI::App app("Norvane without a window: flies along with a simulator and keeps the flight log",
                 "norvane-cli");
    app.set_version_flag("--version", std::string("norvane-cli ") + norvane::version);
    Add_Session_Options(app, session);
    app.add_flag("--yes", words.yes, "Answer questions with Yes");
    app.require_subcommand(1);
    Add_Fly(app, session, fly, work);
    Add_Log_Commands(app, words, work);
    Add_Flight_Commands(app, words, work);
    Add_Settings(app, words, work);
    Add_Airline(app, words, work);
    Add_Plan(app, words, work);
    Add_Requests(app, words, work);
    Add_Outbox(app, words, work);
    Add_World_Commands(app, session, words, work);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? exit_status::done : exit_status::wrong_usage;
    }
    Console console(fly.time_scale, words.yes);
    return Run(session, console, work);
}
