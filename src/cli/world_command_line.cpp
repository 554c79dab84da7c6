#include <array>
#include <optional>
#include <string>

#include "cli/command_line.h"
#include "cli/world_commands.h"
#include "common/number.h"

namespace norvane {

namespace {

/// A finite number within limits; the parser's own range lets "nan" pass.
CLI::Validator Within(double least, double most) {
    return CLI::Validator(
        [least, most](const std::string& text) {
            const auto value = Parse_Number(text);
            if (value && *value >= least && *value <= most)
                return std::string();
            return text + " is no number from " + Format_Whole(least) + " to " + Format_Whole(most);
        },
        "");
}

/// The three figures of a place, under names that make them options or positions.
struct Place_Options {
    Place_Options(CLI::App* command, Aircraft_Place& place,
                  const std::array<std::string, 3>& names) {
        latitude =
            command->add_option(names[0], place.position.latitude, "Degrees, north positive");
        longitude =
            command->add_option(names[1], place.position.longitude, "Degrees, east positive");
        elevation = command->add_option(names[2], place.ground_elevation_ft, "Feet");
        latitude->check(Within(-90, 90));
        longitude->check(Within(-180, 180));
        elevation->check(Within(-2000, 30000));
    }

    CLI::Option* latitude;
    CLI::Option* longitude;
    CLI::Option* elevation;
};

void Add_Older(CLI::App* command, Words& words) {
    command->add_flag("--fs2002", words.older_world, "The world files of FS2000 and FS2002");
}

World_Of Chosen_World(const Words& words) {
    return words.older_world ? World_Of::fs2000_and_fs2002 : World_Of::newer_simulators;
}

void Add_World_Add(CLI::App* world, const Session_Options& session, Words& words, Work& work) {
    auto* add = world->add_subcommand(
        "add", "Add a location: where the aircraft stands, unless a place is given");
    add->add_option("ICAO", words.name, "The location's code")->required();
    const Place_Options place(add, words.place, {"--lat", "--lon", "--elevation"});
    place.latitude->needs(place.longitude)->needs(place.elevation);
    place.longitude->needs(place.latitude);
    place.elevation->needs(place.latitude);
    auto* older = add->add_flag("--fs2002", words.older_world,
                                "The world files of FS2000 and FS2002; with a place only");
    older->needs(place.latitude);
    add->callback([&, latitude = place.latitude] {
        const bool placed = latitude->count() > 0;
        work = {Access::write, [&, placed](Console&, Session& open) {
                    const auto given = placed ? std::optional(words.place) : std::nullopt;
                    return World_Add(
                        open,
                        {words.name, given, Simulator_Address(session, open.Outside().settings)},
                        Chosen_World(words));
                }};
    });
}

void Add_World_Build(CLI::App* world, Words& words, Work& work) {
    auto* build =
        world->add_subcommand("build", "Build a world file from the simulator's list of airports");
    build
        ->add_option("--from", words.name,
                     "An apt.dat of X-Plane or FlightGear or an airports.csv of OurAirports, also "
                     "packed by gzip")
        ->required()
        ->check(CLI::ExistingFile);
    build->add_option("-o", words.value, "The world file; an older one is kept as .bak")
        ->required();
    build->add_flag("--heliports", words.heliports, "Take heliports too");
    build->callback([&] {
        work = {Access::look, [&](Console&, Session&) {
                    return World_Build(words.name, words.value,
                                       words.heliports ? Heliports::take : Heliports::leave_out);
                }};
    });
}

void Add_World(CLI::App& app, const Session_Options& session, Words& words, Work& work) {
    auto* world = app.add_subcommand("world", "The pilot's own world locations, and the world file")
                      ->require_subcommand(1);
    auto* list = world->add_subcommand("list", "List the locations");
    Add_Older(list, words);
    list->callback([&] {
        work = {Access::look,
                [&](Console&, Session& open) { return World_List(open, Chosen_World(words)); }};
    });
    Add_World_Add(world, session, words, work);
    Add_World_Build(world, words, work);
    auto* remove = world->add_subcommand("delete", "Delete a location (asks)");
    remove->add_option("N", words.row, "The location's number in \"world list\", from 1")
        ->required()
        ->check(CLI::Range(1, 999999999));
    Add_Older(remove, words);
    remove->callback([&] {
        work = {Access::write, [&](Console&, Session& open) {
                    return World_Delete(open, words.row, Chosen_World(words));
                }};
    });
}

void Add_Airport(CLI::App& app, Words& words, Work& work) {
    auto* airport =
        app.add_subcommand("airport", "The airports of the world files")->require_subcommand(1);
    auto* find = airport->add_subcommand("find", "Find airports by any part of code or name");
    find->add_option("TEXT", words.name, "Part of the code or the name")->required();
    Add_Older(find, words);
    find->callback([&] {
        work = {Access::look, [&](Console&, Session& open) {
                    return Airport_Find(open, words.name, Chosen_World(words));
                }};
    });
    auto* nearest =
        airport->add_subcommand("nearest", "The airport that a flight from here departs from");
    const Place_Options place(nearest, words.place, {"LAT", "LON", "ELEVATION"});
    for (CLI::Option* figure : {place.latitude, place.longitude, place.elevation})
        figure->required();
    Add_Older(nearest, words);
    nearest->callback([&] {
        work = {Access::look, [&](Console&, Session& open) {
                    return Airport_Nearest(open, words.place, Chosen_World(words));
                }};
    });
}

}  // namespace

void Add_World_Commands(CLI::App& app, const Session_Options& session, Words& words, Work& work) {
    Add_World(app, session, words, work);
    Add_Airport(app, words, work);
}

}  // namespace norvane
