// The part of the flight log panel that fetches the names of the simulator's aircraft.

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "common/code_page.h"
#include "common/file_writer.h"
#include "common/find_file.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "flightlog/pick_lists.h"
#include "logpanel/uc_flight_log.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

/// The directories in `directory`, in name order, so that the list is the same each time.
std::vector<fs::path> Subdirectories(const fs::path& directory) {
    std::vector<fs::path> found;
    std::error_code failure;
    for (fs::directory_iterator entry(directory, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        std::error_code unknown;
        if (entry->is_directory(unknown))
            found.push_back(entry->path());
    }
    std::sort(found.begin(), found.end());
    return found;
}

/// The text behind the "=" of every title that an aircraft's configuration file gives.
void Append_Titles(const fs::path& configuration, std::vector<std::string>& titles) {
    for (const std::string& line : Read_Lines(configuration)) {
        if (!Contains_No_Case(line, "title="))
            continue;
        std::string title = Trim(std::string_view(line).substr(line.find('=') + 1));
        std::replace(title.begin(), title.end(), list_separator, ' ');
        if (!title.empty())
            titles.push_back(std::move(title));
    }
}

/// The titles of all aircraft below a directory.
std::vector<std::string> Titles_Below(Services& services, const fs::path& directory) {
    std::vector<std::string> titles;
    for (const fs::path& aircraft : Subdirectories(directory)) {
        const fs::path file = Find_Path(services, aircraft, "aircraft.cfg");
        // One aircraft that cannot be read does not hide the others.
        Guarded(services, "ucFlightLog.Load_FS_AC()", Show::silent, [&] {
            if (fs::exists(file))
                Append_Titles(file, titles);
        });
    }
    return titles;
}

constexpr std::string_view no_simulator =
    "Unable to Load Aircraft Types.  Please make sure that Flight Simulator is running.";

/// The simulator answered, but its aircraft are not where it says, or none of them has a title.
std::string No_Titles(std::string_view directory, const fs::path& here) {
    std::error_code unknown;
    if (fs::is_directory(here, unknown)) {
        return fmt::format(
            "Unable to Load Aircraft Types.  The folder {} has no aircraft with a title.",
            From_Path(here));
    }
    return fmt::format(
        "Unable to Load Aircraft Types.  The simulator is running and has its aircraft in {}, "
        "which "
        "is not found on this computer as {}.  If the simulator runs on another system or in Wine, "
        "please start Norvane with --map and the place where that drive is here, for instance "
        "--map 'C:\\=/home/me/drive_c/'.",
        directory, From_Path(here));
}

}  // namespace

std::string ucFlightLog::Load_FS_AC() {
    std::string fault;
    Guarded(m_services, "ucFlightLog.Load_FS_AC()", Show::box, [&] {
        fault = no_simulator;
        if (!m_simulator)
            return;
        const Busy_Cursor busy(m_services.desktop);
        clsACARS engine(*m_simulator);
        std::string error_text;
        if (!engine.Start(error_text, {}))
            return;
        const std::string below =
            Equal_No_Case(engine.FS_VERSION(), "FSX") ? "SimObjects\\Airplanes\\" : "Aircraft\\";
        const std::string directory = engine.FS_Path() + below;
        engine.Stop_();
        const fs::path here = Find_Simulator_Path(m_services, directory);
        const std::vector<std::string> titles = Titles_Below(m_services, here);
        if (titles.empty()) {
            fault = No_Titles(directory, here);
            return;
        }
        Write_File_Atomically(
            Find_Path(m_services, m_services.program_directory, aircraft_list_file),
            Join(titles, std::string(1, list_separator)).append(cr_lf));
        fault.clear();
    });
    return fault;
}

}  // namespace norvane
