#include "cli/world_commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "acars/airports.h"
#include "acars/cls_acars.h"
#include "acars/cls_utc.h"
#include "acars/world_file.h"
#include "cli/console_desktop.h"
#include "cli/exit_status.h"
#include "common/boxes.h"
#include "common/code_page.h"
#include "common/find_file.h"
#include "common/log_error.h"
#include "common/text.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "simlink/link_address.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/socket_transport.h"
#include "worldtools/airport_search.h"

namespace norvane {

namespace {

std::string Simulator_Of(World_Of world) {
    return world == World_Of::fs2000_and_fs2002 ? "FS2002" : "";
}

std::filesystem::path World_Path(Session& session, const std::string& name) {
    return Find_Path(session.Outside(), session.Outside().program_directory, "bin\\" + name);
}

World_Locations User_World(Session& session, World_Of world) {
    return World_Locations(World_Path(session, World_UD_Name(Simulator_Of(world))));
}

void Print_Location(const World_Locations& locations, std::size_t place) {
    const World_Location& each = locations.Locations()[place];
    Console_Desktop::Print(fmt::format("{}\t{}\t{}\t{}\t{}\t{}\t{}", place + 1, each.icao,
                                       each.name, each.date_added, each.latitude, each.longitude,
                                       each.elevation));
}

/// A place, and the names of the files that it is for.
struct World_Place {
    Aircraft_Place place;
    std::string world;
    std::string world_ud;
};

/// None when the simulator is not there, which has been said.
std::optional<World_Place> Ask_Simulator(Session& session, const std::string& address) {
    Services& services = session.Outside();
    const clsAppSettings settings(services);
    const clsVASettings airline(services);
    const clsUTC utc(services.clock);
    Socket_Transport transport(Parse_Link_Address(address));
    modFSUIPC link(transport, services.clock);
    clsACARS engine({services, link, settings, airline, utc});
    clsACARS::Start_Request link_only;
    link_only.initialise = false;
    std::string error_text;
    if (!engine.Start(error_text, link_only)) {
        Console_Desktop::Say(error_text);
        return std::nullopt;
    }
    return World_Place{Read_Aircraft_Place(engine), engine.World(), engine.WorldUD()};
}

}  // namespace

int World_List(Session& session, World_Of world) {
    const World_Locations locations = User_World(session, world);
    for (std::size_t i = 0; i < locations.Locations().size(); ++i)
        Print_Location(locations, i);
    return exit_status::done;
}

int World_Add(Session& session, const New_Location& location, World_Of world) {
    Services& services = session.Outside();
    const std::string code = Location_Code(From_Utf8(location.code));
    const std::string_view fault = Check_Location_Code(code);
    if (!fault.empty())
        throw Run_Error(error_number::invalid_call, std::string(fault));
    std::optional<World_Place> at;
    if (location.place) {
        const std::string simulator = Simulator_Of(world);
        at = {*location.place, World_Name(simulator), World_UD_Name(simulator)};
    } else {
        at = Ask_Simulator(session, location.simulator);
    }
    if (!at)
        return exit_status::no_simulator;
    std::string name;
    Guarded(services, "frmFSWorld.Get_Airport_Name()", Show::box,
            [&] { name = World_Airport_Name(services, at->world, code); });
    World_Locations locations(World_Path(session, at->world_ud));
    const auto& others = locations.Locations();
    if (std::any_of(others.begin(), others.end(),
                    [&](const World_Location& other) { return other.icao == code; }))
        Console_Desktop::Say(code + " is in the list already; it stands there twice now.");
    locations.Add(Make_Location(services, code, name, at->place));
    locations.Save();
    Print_Location(locations, locations.Locations().size() - 1);
    return exit_status::done;
}

int World_Delete(Session& session, std::size_t number, World_Of world) {
    World_Locations locations = User_World(session, world);
    const World_Location gone = locations.Locations().size() < number
                                    ? World_Location()
                                    : locations.Locations()[number - 1];
    locations.Remove(number - 1);
    const Answer answer =
        Ask(session.Outside().desktop,
            fmt::format("Are you sure that you would like to delete the location {}?", gone.icao),
            Icon::question, "Delete FS World Location");
    if (answer != Answer::yes)
        return exit_status::failed;
    locations.Save();
    return exit_status::done;
}

int World_Build(const std::string& from, const std::string& to, Heliports heliports) {
    const World_Builder world = Build_World(from, to, heliports);
    for (std::size_t i = 0; i < skip_reason_count; ++i) {
        const auto reason = static_cast<Skip_Reason>(i);
        const Skipped& skipped = world.Skips(reason);
        if (skipped.count == 0)
            continue;
        Console_Desktop::Say(fmt::format("Passed over {} {}; the first: {}, line {}", skipped.count,
                                         Skip_Reason_Text(reason), From_Utf8(from),
                                         skipped.first_line));
    }
    Console_Desktop::Print(fmt::format("{} airports in {}", world.Size(), From_Utf8(to)));
    return exit_status::done;
}

int Airport_Find(Session& session, const std::string& text, World_Of world) {
    const std::string wanted = From_Utf8(text);
    if (!Airport_Search::Is_Search(wanted)) {
        throw Run_Error(error_number::invalid_call, "Nearly every airport holds \"" + wanted +
                                                        "\": search for two letters or "
                                                        "more");
    }
    const std::string simulator = Simulator_Of(world);
    Airport_Search search;
    search.Load(World_Path(session, World_Name(simulator)),
                World_Path(session, World_UD_Name(simulator)));
    constexpr auto all = std::numeric_limits<std::size_t>::max();
    for (const Found_Airport& each : search.Find(wanted, all).airports) {
        Console_Desktop::Print(fmt::format(
            "{}\t{}\t{}\t{}\t{}", each.icao, each.name, Format_Significant(each.position.latitude),
            Format_Significant(each.position.longitude), each.elevation_ft));
    }
    return exit_status::done;
}

int Airport_Nearest(Session& session, const Aircraft_Place& place, World_Of world) {
    const std::string simulator = Simulator_Of(world);
    Nearest_Search search;
    search.from = place.position;
    search.ground_elevation_ft = place.ground_elevation_ft;
    const auto look = [&](const std::filesystem::path& file, Equal_Distance rule) {
        World_File airports;
        airports.Load(file);
        if (!airports.First_Fault().empty())
            Console_Desktop::Say(airports.First_Fault());
        airports.Search(search, rule, nullptr);
    };
    look(World_Path(session, World_Name(simulator)), Equal_Distance::keeps_best);
    const auto user_file = World_Path(session, World_UD_Name(simulator));
    if (std::filesystem::exists(user_file))
        look(user_file, Equal_Distance::replaces_best);
    const Nearest_Search::Candidate& best = search.Best();
    if (!best.found) {
        Console_Desktop::Say(
            "No airport lies within 50 nm at that elevation, nor within 5 nm at any.");
        return exit_status::failed;
    }
    Console_Desktop::Print(fmt::format("{}\t{}\t{}", best.icao, best.name, best.distance_nm));
    return exit_status::done;
}

}  // namespace norvane
