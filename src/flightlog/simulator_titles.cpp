// The part of the flight log panel that fetches the names of the simulator's aircraft.

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "common/file_writer.h"
#include "common/find_file.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "flightlog/pick_lists.h"
#include "flightlog/uc_flight_log.h"

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

}  // namespace

bool ucFlightLog::Load_FS_AC() {
    bool written = false;
    Guarded(m_services, "ucFlightLog.Load_FS_AC()", Show::box, [&] {
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
        std::vector<std::string> titles;
        for (const fs::path& aircraft :
             Subdirectories(Find_Path(m_services, m_services.program_directory, directory))) {
            const fs::path file = Find_Path(m_services, aircraft, "aircraft.cfg");
            // One aircraft that cannot be read does not hide the others.
            Guarded(m_services, "ucFlightLog.Load_FS_AC()", Show::silent, [&] {
                if (fs::exists(file))
                    Append_Titles(file, titles);
            });
        }
        if (titles.empty())
            return;
        Write_File_Atomically(
            Find_Path(m_services, m_services.program_directory, aircraft_list_file),
            Join(titles, std::string(1, list_separator)).append(cr_lf));
        written = true;
    });
    return written;
}

}  // namespace norvane
