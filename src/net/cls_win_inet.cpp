#include "net/cls_win_inet.h"

#include <algorithm>
#include <vector>

#include "common/file_writer.h"
#include "common/find_file.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_va_settings.h"
#include "net/form_encoding.h"
#include "net/vatsim_data.h"

namespace norvane {

namespace {

constexpr std::size_t report_lines = 4;

}  // namespace

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

std::string clsWinInet::HTTP_Request(std::string_view host, Http_Verb verb, std::string_view path) {
    return Trim(m_client.Request({verb, std::string(host), std::string(path),
                                  verb == Http_Verb::post ? m_form : std::string()}));
}

void clsWinInet::Add_Field(std::string_view name, std::string_view value) {
    if (m_airline.URL_Encode()) {
        m_form += Encode_URL(name) + '=' + Encode_URL(value) + '&';
        return;
    }
    m_form.append(name).append("=").append(value).append("&");
}

Post_Result clsWinInet::Send_PIREP(std::string_view web_server, std::string_view post_script,
                                   std::string_view pirep) {
    Post_Result result;
    Guarded(m_services, "clsWinInet.Send_PIREP()", Show::silent, [&] {
        m_form.clear();
        const std::vector<std::string> values = Split(pirep, field_separator);
        const int last =
            std::min(m_airline.PIREP_Fields_Ubound(), static_cast<int>(values.size()) - 1);
        for (int i = 0; i <= last; ++i)
            Add_Field(m_airline.PIREP_Fields(i), values.at(static_cast<std::size_t>(i)));
        try {
            result.answer = HTTP_Request(web_server, Http_Verb::post, post_script);
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

Post_Result clsWinInet::Send_ACARS_Report(std::string_view web_server, std::string_view post_page,
                                          const ACARS_Report& report) {
    Post_Result result;
    Guarded(m_services, "clsWinInet.Send_ACARS_Report()", Show::silent, [&] {
        m_form.clear();
        const std::vector<std::string> lines = Split(report.message, cr_lf);
        if (lines.size() < report_lines) {
            throw Run_Error(error_number::subscript_out_of_range,
                            "An ACARS report needs a message of at least four lines");
        }
        std::string text;
        for (std::size_t i = report_lines; i < lines.size(); ++i)
            text += lines[i] + ' ';
        Add_Field("acars0", Replace_All(lines[0], "Z", ":00"));
        Add_Field("acars1", lines[1]);
        Add_Field("acars2", lines[2]);
        Add_Field("acars3", lines[3]);
        Add_Field("acars4", text);
        Add_Field("acars5", report.pilot_id);
        Add_Field("acars6", report.departure_icao);
        Add_Field("acars7", report.arrival_icao);
        result.answer = HTTP_Request(web_server, Http_Verb::post, post_page);
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
