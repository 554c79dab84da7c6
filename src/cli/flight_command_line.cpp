#include "cli/command_line.h"
#include "cli/flight_commands.h"

namespace norvane {

namespace {

CLI::App* Add_Named(CLI::App* flight, const char* name, const char* help, Words& words) {
    auto* command = flight->add_subcommand(name, help);
    command->add_option("ID", words.name, "The flight's ID in \"flight list\"")->required();
    return command;
}

void Add_Lookers(CLI::App* flight, Words& words, Work& work) {
    auto* list = flight->add_subcommand("list", "List the recorded flights");
    list->add_option("--from", words.days.from, "Flights of this day (UTC) and later ones");
    list->add_option("--to", words.days.to, "Flights of this day (UTC) and earlier ones");
    list->add_option("--airport", words.days.airport, "Flights from or to this airport");
    list->callback([&] {
        work = {Access::look,
                [&](Console&, Session& open) { return Flight_List(open, words.days); }};
    });
    auto* show = Add_Named(flight, "show", "Show what is known of a flight", words);
    show->add_flag("--json", words.json, "As JSON");
    show->callback([&] {
        work = {Access::look,
                [&](Console&, Session& open) { return Flight_Show(open, words.name, words.json); }};
    });
    Add_Named(flight, "explain", "Say why OUT, OFF, ON and IN are when they are", words)
        ->callback([&] {
            work = {Access::look,
                    [&](Console&, Session& open) { return Flight_Explain(open, words.name); }};
        });
    Add_Named(flight, "landing", "Show a flight's landings, touch by touch", words)->callback([&] {
        work = {Access::look,
                [&](Console&, Session& open) { return Flight_Landing(open, words.name); }};
    });
    auto* write = Add_Named(flight, "export", "Write a flight's track for another program", words);
    write->add_option("--format", words.format, "kml, gpx, geojson or csv")
        ->required()
        ->check(CLI::IsMember({"kml", "gpx", "geojson", "csv"}, CLI::ignore_case));
    write->add_option("-o", words.value, "The file; an older one is written over")->required();
    write->callback([&] {
        work = {Access::look, [&](Console&, Session& open) {
                    return Flight_Export(open, words.name, words.format, words.value);
                }};
    });
    Add_Named(flight, "row", "Find the row that a flight was logged as, in whatever log it stands",
              words)
        ->callback([&] {
            work = {Access::look,
                    [&](Console&, Session& open) { return Flight_Row_Of(open, words.name); }};
        });
    flight
        ->add_subcommand("verify",
                         "Derive every recording again, and list what differs from what is stored")
        ->callback([&] {
            work = {Access::look, [](Console&, Session& open) { return Flight_Verify(open); }};
        });
}

void Add_Recompute(CLI::App* flight, Words& words, Work& work) {
    auto* again = Add_Named(
        flight, "recompute",
        "Compute a flight again from its recording, and list what differs from its row", words);
    again->add_option("--set", words.changes, "Another setting than then, as ACARS_EOF=1");
    again->add_flag("--apply", words.apply,
                    "Put what differs into the row, which stands in the active log (asks)");
    again->callback([&] {
        work = {words.apply ? Access::write : Access::look, [&](Console&, Session& open) {
                    return (words.apply ? Flight_Apply : Flight_Recompute)(open, words.name,
                                                                           words.changes);
                }};
    });
}

}  // namespace

void Add_Flight_Commands(CLI::App& app, Words& words, Work& work) {
    auto* flight = app.add_subcommand("flight", "The recorded flights")->require_subcommand(1);
    Add_Lookers(flight, words, work);
    Add_Recompute(flight, words, work);
    auto* take = flight->add_subcommand("import", "Take a recording in as a flight");
    take->add_option("FILE.rec", words.name, "The recording; its name is the flight's ID")
        ->required()
        ->check(CLI::ExistingFile);
    take->callback([&] {
        work = {Access::write,
                [&](Console&, Session& open) { return Flight_Import(open, words.name); }};
    });
    flight->add_subcommand("rebuild", "Derive and store every recording anew")->callback([&] {
        work = {Access::write, [](Console&, Session& open) { return Flight_Rebuild(open); }};
    });
}

}  // namespace norvane
