#include "logpanel/uc_stats.h"

#include "common/boxes.h"
#include "common/log_error.h"
#include "common/number.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_app_settings.h"
#include "flightlog/html_writers.h"
#include "flightlog/log_columns.h"
#include "flightlog/log_file.h"
#include "flightlog/log_table.h"

namespace norvane {

namespace {

constexpr std::string_view caption_start = "Total Flight Time: ";

}  // namespace

Hours_By_Type Sum_Hours_By_Type(Log_Table table, const Regional& regional) {
    Hours_By_Type sums;
    if (table.Row_Count() == 0)
        return sums;
    Sort_XArray(table, 1, regional.short_date);
    const auto open = [&](std::string_view type) { sums.types.push_back({std::string(type), 0}); };
    // Flights without a type count nowhere; that they are there shows by a group without hours.
    open(table.Get(0, log_column::aircraft_type));
    Decimal_Sum type_hours;
    Decimal_Sum all_hours;
    for (std::size_t row = 0; row < table.Row_Count(); ++row) {
        const std::string_view type = table.Get(row, log_column::aircraft_type);
        if (Trimmed_View(type).empty())
            continue;
        if (type != sums.types.back().aircraft_type) {
            open(type);
            type_hours = {};
        }
        const double hours =
            Parse_Pilot_Number(table.Get(row, log_column::block_time), regional).value_or(0);
        type_hours.Add(hours);
        all_hours.Add(hours);
        sums.types.back().hours = type_hours.Value();
    }
    sums.all_hours = all_hours.Value();
    return sums;
}

ucStats::ucStats(Services& services, const clsAppSettings& settings)
    : m_services(services), m_settings(settings) {
    tdbTimeCaption.Set_Text(caption_start);
    hypACARS[0].clicked.Connect([this] { Display_Flight_Stats(); });
    hypACARS[1].clicked.Connect([this] { Create_Report(); });
}

void ucStats::Display_Flight_Stats() {
    Guarded(m_services, "ucStats.Display_Flight_Stats()", Show::box, [&] {
        m_totals.clear();
        tdbTimeCaption.Set_Text(caption_start);
        totals_changed.Emit();
        Log_File file(m_services, m_settings.FlightLog_Path());
        std::vector<Log_File::Trouble> troubles;
        bool empty = false;
        {
            const Busy_Cursor busy(m_services.desktop);
            Log_Table table;
            troubles = file.Load_XArray(table);
            empty = table.Row_Count() == 0;
            // Of a log that cannot be read no hours are known.
            if (file.Loaded_To_Its_End())
                Show_Sums(Sum_Hours_By_Type(std::move(table), m_services.regional));
        }
        for (const auto& [procedure, error] : troubles)
            Log_Error(m_services, procedure, error, Show::box);
        if (empty && file.Loaded_To_Its_End())
            Tell(m_services.desktop, "No Flight Time Recorded");
    });
}

void ucStats::Show_Sums(const Hours_By_Type& sums) {
    const auto text = [&](double hours) { return Format_Pilot(hours, 1, m_services.regional); };
    // A second refresh may have come while a message was shown.
    m_totals.clear();
    for (const auto& [type, hours] : sums.types)
        m_totals.push_back({type, text(hours)});
    tdbTimeCaption.Set_Text(std::string(caption_start) + text(sums.all_hours));
    totals_changed.Emit();
}

void ucStats::Create_Report() {
    Guarded(m_services, "ucStats.Create_Report()", Show::box, [&] {
        const auto report = [&] {
            const Busy_Cursor busy(m_services.desktop);
            return Write_Report();
        }();
        m_services.desktop.Open_File(report);
    });
}

std::filesystem::path ucStats::Write_Report() const {
    const std::string& caption = tdbTimeCaption.Text();
    Report_File file(m_services, "Norvane Flight Time Report");
    HTML_Heading(file, "Flight Time Report");
    HTML_Stat_Header(file, {"AIRCRAFT TYPE", "TOTAL TIME"});
    HTML_Stat_Row(file, {});
    for (const Type_Total& total : m_totals)
        HTML_Stat_Row(file, {total.aircraft_type, total.total_time});
    HTML_Stat_Row(file, {});
    HTML_Stat_Row(file, {std::string(caption_start), caption.substr(caption_start.size())});
    HTML_Stat_Row(file, {}, Row_Kind::bottom);
    file.Line("</table>");
    return file.Finish();
}

}  // namespace norvane
