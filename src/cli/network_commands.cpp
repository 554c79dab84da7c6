#include "cli/network_commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <vector>

#include "cli/exit_status.h"
#include "cli/heard_error_log.h"
#include "common/code_page.h"
#include "common/line_reader.h"
#include "common/run_error.h"
#include "common/text.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "logentry/cls_log_entry.h"
#include "net/cls_win_inet.h"
#include "net/http_failure.h"
#include "net/vatsim_data.h"

namespace norvane {

namespace {

/// One command's request: a pilot's settings, an airline, and what is reported while it runs.
class Network_Request {
  public:
    Network_Request(Console& console, Session& session)
        : m_console(console),
          m_settings(session.Outside()),
          m_airline(session.Outside()),
          m_log(session.Outside().error_log),
          m_services(With_Error_Log(session.Outside(), m_log)) {
        m_airline.Get_VA_Settings(m_settings.Virtual_Airline());
    }

    [[nodiscard]] clsWinInet Client() {
        return {m_services, m_settings, m_airline, m_console.Until_Signal()};
    }
    int Print_Weather(const std::string& weather);
    int Print_Plan(const std::string& line, const std::string& pilot_id);
    int Send(const std::string& file);

  private:
    bool Tell_Reasons(std::string_view what);

    Console& m_console;
    clsAppSettings m_settings;
    clsVASettings m_airline;
    Heard_Error_Log m_log;
    Services m_services;
};

/// Says why the request failed, or failed in part; false when nothing failed.
bool Network_Request::Tell_Reasons(std::string_view what) {
    if (m_console.signals.Raised()) {
        Console_Desktop::Say("Ended by a signal.");
        return true;
    }
    for (const std::string& reason : m_log.Reasons())
        Console_Desktop::Say(fmt::format("{}: {}", what, With_Meaning(reason)));
    return !m_log.Reasons().empty();
}

int Network_Request::Print_Weather(const std::string& weather) {
    const std::string& source = m_settings.WX_URL();
    const bool failed = Tell_Reasons("Weather from " + source);
    if (Holds_Report(weather)) {
        std::string text = weather;
        while (text.ends_with('\r') || text.ends_with('\n'))
            text.pop_back();
        Console_Desktop::Print(text);
        return exit_status::done;
    }
    if (!failed) {
        throw Run_Error(error_number::other,
                        weather.empty() ? "The weather source " + source + " offers no such report"
                                        : std::string(Before(weather, cr_lf)));
    }
    return exit_status::failed;
}

int Network_Request::Print_Plan(const std::string& line, const std::string& pilot_id) {
    struct Value {
        std::string_view name;
        std::size_t place;
    };
    static constexpr std::array<Value, 7> values{{
        {"Callsign", vatsim_place::callsign},
        {"Aircraft", vatsim_place::aircraft},
        {"Origin_ICAO", vatsim_place::departure},
        {"Destination_ICAO", vatsim_place::arrival},
        {"Altitude", vatsim_place::altitude},
        {"Flight_Type", vatsim_place::rules},
        {"Route", vatsim_place::route},
    }};
    if (line.empty() && Tell_Reasons("The network's data"))
        return exit_status::failed;
    if (line.empty()) {
        throw Run_Error(error_number::other,
                        "The network's data holds no flight plan of pilot " + From_Utf8(pilot_id));
    }
    const std::vector<std::string> fields = Split(line, ':');
    if (fields.size() <= values.back().place) {
        throw Run_Error(
            error_number::subscript_out_of_range,
            "The network's data of pilot " + From_Utf8(pilot_id) + " ends too early: " + line);
    }
    for (const auto& [name, place] : values) {
        std::string value = Trim(Replace_All(fields[place], "\r", ""));
        if (name == "Flight_Type")
            value = value == "I" ? "IFR" : "VFR";
        Console_Desktop::Print(fmt::format("{}: {}", name, value));
    }
    return exit_status::done;
}

int Network_Request::Send(const std::string& file) {
    std::error_code failure;
    if (!std::filesystem::exists(file, failure) && !failure)
        throw Run_Error(error_number::file_not_found, "File not found: " + From_Path(file));
    if (m_airline.WebServer().empty() || m_airline.Script_PIREP().empty()) {
        throw Run_Error(error_number::other,
                        fmt::format("The airline {} takes no PIREPs: {}/server.cfg names no server "
                                    "with a PIREP script",
                                    m_airline.Name(), m_airline.Directory()));
    }
    clsLogEntry entry(m_services);
    entry.Set(Log_Field::PIREP_FILE_NAME, From_Path(std::filesystem::absolute(file)));
    const std::optional<Run_Error> not_sent =
        entry.Send_PIREP(m_settings, m_airline, m_console.Until_Signal());
    if (!not_sent) {
        Print_Server_Answer(Read_File(m_services.program_directory / "sr"));
        return exit_status::done;
    }
    (void)Tell_Reasons("The PIREP was not sent");
    return exit_status::failed;
}

}  // namespace

int Show_METAR(Console& console, Session& session, const std::string& icao) {
    Network_Request request(console, session);
    return request.Print_Weather(request.Client().Get_METAR(From_Utf8(icao)));
}

int Show_WX(Console& console, Session& session, const std::string& icao) {
    Network_Request request(console, session);
    return request.Print_Weather(request.Client().Get_WX(From_Utf8(icao)));
}

int Show_VATSIM(Console& console, Session& session, const std::string& pilot_id) {
    Network_Request request(console, session);
    return request.Print_Plan(
        request.Client().Get_VATSIM_FlightPlan(From_Utf8(pilot_id)).value_or(""), pilot_id);
}

int PIREP_Send(Console& console, Session& session, const std::string& file) {
    return Network_Request(console, session).Send(file);
}

void Print_Server_Answer(std::string_view page) {
    while (page.ends_with('\n') || page.ends_with('\r'))
        page.remove_suffix(1);
    const std::string lines = Replace_All(Replace_All(page, cr_lf, "\n"), "\r", "\n");
    fmt::print("{}\n", Console_Desktop::Printable(Is_Utf8(lines) ? lines : To_Utf8(lines)));
    std::fflush(stdout);
}

}  // namespace norvane
