#include "net/cls_win_inet.h"

#include "common/file_writer.h"
#include "common/find_file.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_va_settings.h"
#include "net/airline_forms.h"
#include "net/vatsim_data.h"

namespace norvane {

clsWinInet::clsWinInet(Services& services, const clsAppSettings& settings,
                       const clsVASettings& airline, const Http_Options& options)
    : m_services(services),
      m_settings(settings),
      m_airline(airline),
      m_client(services.desktop, options),
      m_given_up(options.given_up),
      m_sources(services) {
    m_sources.Set_INI_FilePath(Find_Path(services, services.program_directory, "bin\\url.cfg"));
}

std::string clsWinInet::HTTP_Request(std::string_view host, Http_Verb verb, std::string_view path,
                                     const std::string& form) {
    return Trim(m_client.Request({verb, std::string(host), std::string(path), form}));
}

Post_Result clsWinInet::Send_PIREP(std::string_view web_server, std::string_view post_script,
                                   std::string_view pirep) {
    Post_Result result;
    Guarded(m_services, "clsWinInet.Send_PIREP()", Show::silent, [&] {
        const std::string form = PIREP_Form(m_airline, pirep);
        try {
            result.answer = HTTP_Request(web_server, Http_Verb::post, post_script, form);
        } catch (...) {
            const Run_Error error = Caught_Error();
            result.failure = error.Description();
            result.for_pilot = error.For_Pilot();
            throw;
        }
        Write_File(m_services.program_directory / "sr", result.answer + std::string(cr_lf));
        result.success = true;
    });
    return result;
}

std::optional<std::string> clsWinInet::Get_VATSIM_FlightPlan(std::string_view pilot_id) {
    std::optional<std::string> line;
    Guarded(m_services, "clsWinInet.Get_VATSIM_FlightPlan()", Show::silent, [&] {
        if (pilot_id.empty()) {
            line.emplace();
            return;
        }
        m_sources.Get_URLs("VATSIM");
        std::string data;
        try {
            data = HTTP_Request(m_sources.URL(), Http_Verb::get, m_sources.URL_Data());
        } catch (...) {
            // A poll that nobody waits for any longer has not failed.
            if (m_given_up && m_given_up())
                return;
            throw;
        }
        line = Find_VATSIM_Line(data, pilot_id, [&] { m_services.desktop.Process_Events(); });
    });
    return line;
}

}  // namespace norvane
