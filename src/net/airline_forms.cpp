#include "net/airline_forms.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "common/run_error.h"
#include "common/text.h"
#include "config/cls_va_settings.h"
#include "net/form_encoding.h"

namespace norvane {

namespace {

constexpr std::size_t report_lines = 4;

class Form {
  public:
    explicit Form(const clsVASettings& airline) : m_encoded(airline.URL_Encode()) {}

    void Add(std::string_view name, std::string_view value) {
        text += m_encoded ? Encode_URL(name) + '=' + Encode_URL(value)
                          : std::string(name).append("=").append(value);
        text += '&';
    }
    std::string text;

  private:
    bool m_encoded;
};

}  // namespace

std::string PIREP_Form(const clsVASettings& airline, std::string_view pirep) {
    Form form(airline);
    const std::vector<std::string> values = Split(pirep, field_separator);
    const int last = std::min(airline.PIREP_Fields_Ubound(), static_cast<int>(values.size()) - 1);
    for (int i = 0; i <= last; ++i)
        form.Add(airline.PIREP_Fields(i), values.at(static_cast<std::size_t>(i)));
    return form.text;
}

std::string Report_Form(const clsVASettings& airline, const ACARS_Report& report) {
    const std::vector<std::string> lines = Split(report.message, cr_lf);
    if (lines.size() < report_lines) {
        throw Run_Error(error_number::subscript_out_of_range,
                        "An ACARS report needs a message of at least four lines");
    }
    std::string text;
    for (std::size_t i = report_lines; i < lines.size(); ++i)
        text += lines[i] + ' ';
    Form form(airline);
    form.Add("acars0", Replace_All(lines[0], "Z", ":00"));
    form.Add("acars1", lines[1]);
    form.Add("acars2", lines[2]);
    form.Add("acars3", lines[3]);
    form.Add("acars4", text);
    form.Add("acars5", report.pilot_id);
    form.Add("acars6", report.departure_icao);
    form.Add("acars7", report.arrival_icao);
    return form.text;
}

}  // namespace norvane
