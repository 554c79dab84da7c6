#include "acars/airports.h"

#include <fmt/format.h>

#include <functional>
#include <optional>
#include <utility>

#include "acars/cls_acars.h"
#include "acars/engine_context.h"
#include "acars/sampler.h"
#include "common/find_file.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/number.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_app_settings.h"

namespace norvane {

namespace {

constexpr std::string_view procedure = "clsACARS.Get_Airport()";

bool Has_Older_World(std::string_view simulator_name) {
    return simulator_name == "FS2000" || simulator_name == "FS2002";
}

std::filesystem::path World_Path(Services& services, const std::string& name) {
    return Find_Path(services, services.program_directory, "bin\\" + name);
}

/// A lookup goes on past lines it cannot read; the first of them is reported.
void Report_Fault(Services& services, const World_File& world) {
    if (world.First_Fault().empty())
        return;
    Log_Error(services, procedure, {error_number::type_mismatch, world.First_Fault()},
              Show::silent);
}

void Search_World_Files(Engine_Context& engine, Nearest_Search& search) {
    Services& services = engine.services;
    std::function<void()> yield;
    if (engine.settings.Yield_In_Loop())
        yield = [&services] { services.desktop.Process_Events(); };

    const std::string& simulator = engine.state.simulator_name;
    engine.world.Load(World_Path(services, World_Name(simulator)));
    Report_Fault(services, engine.world);
    engine.world.Search(search, Equal_Distance::keeps_best, yield);

    const auto user_file = World_Path(services, World_UD_Name(simulator));
    if (!std::filesystem::exists(user_file))
        return;
    engine.world_ud.Load(user_file);
    if (engine.world.First_Fault().empty())
        Report_Fault(services, engine.world_ud);
    engine.world_ud.Search(search, Equal_Distance::replaces_best, yield);
}

/// Field 4 of a world line, counted from 0, when the line holds "|" code "|".
std::optional<std::string> Name_In_Line(std::string_view line, std::string_view icao) {
    for (auto bar = line.find(field_separator); bar != std::string_view::npos;
         bar = line.find(field_separator, bar + 1)) {
        const auto end = bar + 1 + icao.size();
        const bool found = end < line.size() && line[end] == field_separator &&
                           Equal_No_Case(line.substr(bar + 1, icao.size()), icao);
        if (!found)
            continue;
        const auto texts = Split_World_Line(line);
        if (!texts)
            throw Run_Error(error_number::subscript_out_of_range, "Subscript out of range");
        return std::string(texts->name);
    }
    return std::nullopt;
}

}  // namespace

std::string World_Name(std::string_view simulator_name) {
    return Has_Older_World(simulator_name) ? "fs2002.wld" : "fs9.wld";
}

std::string World_UD_Name(std::string_view simulator_name) {
    return Has_Older_World(simulator_name) ? "fs2002UD.wld" : "fs9UD.wld";
}

Airport_Fix Get_Airport(Engine_Context& engine) {
    Sample_Position(engine, Sample_Extent::position_only);
    if (engine.reader.Failed())
        return {};
    Nearest_Search search;
    search.from = engine.state.sample.position;
    search.ground_elevation_ft = engine.state.sample.ground_elevation_ft;
    Guarded(engine.services, procedure, Show::silent, [&] { Search_World_Files(engine, search); });
    return {true, search.Best().icao, search.Best().name, search.from};
}

Airport_Fix Look_Up_Airport(Engine_Context& engine) {
    Airport_Fix found = Get_Airport(engine);
    if (!found.known || !found.icao.empty() || std::exchange(engine.state.no_airport_told, true))
        return found;
    engine.output.Post(
        engine.events.No_Airport,
        fmt::format("{} {} at {:.0f} ft: no airport within 50 nm at that elevation, nor within 5 "
                    "nm at any",
                    Format_Fixed(found.position.latitude, 5),
                    Format_Fixed(found.position.longitude, 5),
                    engine.state.sample.ground_elevation_ft));
    return found;
}

std::string Get_Airport_Name(Services& services, std::string_view icao) {
    std::optional<std::string> name;
    Guarded(services, "modFunctions.Get_Airport_Name()", Show::silent, [&] {
        if (icao.empty())
            return;
        const std::string content = Read_File(World_Path(services, "fs9.wld"));
        Line_Reader reader(content);
        while (!name && reader.Next())
            name = Name_In_Line(reader.Line(), icao);
    });
    return name.value_or(std::string());
}

}  // namespace norvane
