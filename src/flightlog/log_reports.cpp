#include "flightlog/log_reports.h"

#include <fmt/format.h>

#include "common/services.h"
#include "common/text.h"
#include "config/cls_app_settings.h"
#include "config/units.h"
#include "flightlog/acars_page.h"
#include "flightlog/grid_layout.h"
#include "flightlog/html_writers.h"
#include "flightlog/log_table.h"

namespace norvane {

namespace {

using enum Log_Field;

/// What stands behind a total.
enum class Total_Unit { none, fuel, weight, nautical_miles };

struct Statistic {
    std::string_view label;
    Log_Field field;
    /// Flight rules of the flights that count; empty: of all.
    std::string_view filter;
    int decimals;
    Total_Unit unit;
};

constexpr auto statistics_sheet = std::to_array<Statistic>({
    {"IFR Time: ", BLOCK_TIME, "IFR", 1, Total_Unit::none},
    {"VFR Time: ", BLOCK_TIME, "VFR", 1, Total_Unit::none},
    {"Block Time: ", BLOCK_TIME, {}, 1, Total_Unit::none},
    {"Block Fuel: ", BLOCK_FUEL_USED, {}, 0, Total_Unit::fuel},
    {"Flight Time: ", FLIGHT_TIME, {}, 1, Total_Unit::none},
    {"Flight Fuel: ", FLIGHT_FUEL_USED, {}, 0, Total_Unit::fuel},
    {"Total Distance: ", FLIGHT_DISTANCE, {}, 0, Total_Unit::nautical_miles},
    {"Total PAX: ", PAX, {}, 0, Total_Unit::none},
    {"Total Cargo: ", CARGO, {}, 0, Total_Unit::weight},
});

std::string_view Unit_Text(Total_Unit unit, const clsAppSettings& settings) {
    switch (unit) {
        case Total_Unit::fuel:
            return Unit_Of(fuel_units, settings.ACARS_Fuel());
        case Total_Unit::weight:
            return Unit_Of(weight_units, settings.ACARS_Weight());
        case Total_Unit::nautical_miles:
            return " nm";
        case Total_Unit::none:
            break;
    }
    return {};
}

using Row = Row_Plan<Log_Field>;
constexpr Row spacer = Planned_Spacer<Log_Field>();

constexpr auto aircraft_rows = std::to_array<Row>({
    {{{{"Aircraft ID", AIRCRAFT_ID}}}},
    {{{{"Flight Number", FLIGHT_NUMBER}, {"Aircraft Type", AIRCRAFT_TYPE}}}},
    {{{{"Zero Fuel Weight", WEIGHT_ZEROFUEL}, {"Flight Level", FLIGHT_LEVEL}}}},
    {{{{"PAX", PAX}, {"Cargo/Baggage", CARGO}}}},
});

constexpr auto flight_rows = std::to_array<Row>({
    {{{{"Date", FLIGHT_DATE}}}},
    spacer,
    {{{{"Origin", FLIGHT_ORIGIN}, {"Airport", AIRPORT_ORIGIN}}}, Row_Kind::wide},
    spacer,
    {{{{"Time OUT", TIME_OUT}, {"Taxi Weight", WEIGHT_TAXI}, {"Fuel OUT", FUEL_OUT}}}},
    {{{{"Time OFF", TIME_OFF}, {"Take Off Weight", WEIGHT_TAKEOFF}}}},
    spacer,
    {{{{"Destination", FLIGHT_DESTINATION}, {"Airport", AIRPORT_DESTINATION}}}, Row_Kind::wide},
    spacer,
    {{{{"Time ON", TIME_ON}, {"Landing Weight", WEIGHT_LANDING}}}},
    {{{{"Time IN", TIME_IN}, {"Ramp Weight", WEIGHT_RAMP}, {"Fuel IN", FUEL_IN}}}},
    spacer,
    {{{{"Block Time", BLOCK_TIME},
       {"Block HH:MM", BLOCK_TIME_HHMM},
       {"Block Fuel", BLOCK_FUEL_USED}}}},
    {{{{"Flight Time", FLIGHT_TIME},
       {"Flight HH:MM", FLIGHT_TIME_HHMM},
       {"Flight Fuel", FLIGHT_FUEL_USED}}}},
    spacer,
    {{{{"Dep IAS", IAS_TAKEOFF}, {"N Settings", ENG_SETTINGS}}}, Row_Kind::wide},
    {{{{"Arr IAS", IAS_LANDING}, {"Vertical Speed", VERTICAL_SPEED}}}},
    spacer,
    {{{{"Distance", FLIGHT_DISTANCE}}}},
});

/// The flight's own fields from column `first` up to `end`; nothing where the first one is hidden.
void Add_Columns(ACARS_Page& page, const Grid_Layout& layout,
                 std::span<const std::string_view, log_column_count> cells,
                 std::pair<std::size_t, std::size_t> range) {
    if (!layout.columns.at(range.first).visible)
        return;
    std::vector<HTML_Pair> fields;
    for (std::size_t column = range.first; column < range.second; ++column)
        fields.push_back({layout.columns.at(column).caption, std::string(cells[column])});
    Add_Own_Fields(page, fields);
}

}  // namespace

std::vector<Report_Field> All_Report_Fields(const Grid_Layout& layout) {
    std::vector<Report_Field> fields;
    for (std::size_t column = 0; column < layout.columns.size(); ++column) {
        if (!layout.columns.at(column).caption.empty())
            fields.push_back({layout.Distinct_Caption(column), column, true});
    }
    return fields;
}

std::filesystem::path Write_Logbook(const Services& services, const Log_Table& table,
                                    const std::vector<Report_Field>& fields,
                                    std::string_view totals) {
    constexpr std::string_view line_begin =
        R"(<p align="Center"><b><font face="Arial" size="2" color="#000080">)";
    constexpr std::string_view line_end = "</font></b></p>";
    Report_File file(services, "Norvane Logbook");
    file.Line(line_begin, "Norvane Logbook", line_end);
    file.Line(line_begin, HTML_Text(totals), line_end);
    file.Line(R"(<table border="1" width="100%">)");
    file.Line(" <tr>");
    for (const Report_Field& field : fields) {
        if (field.included) {
            file.Line(R"(<td width="2%"><font size="1" face="Arial" color="#000080"><b>)",
                      HTML_Text(field.caption), "</b></td>");
        }
    }
    file.Line("</tr>");
    for (std::size_t row = 0; row < table.Row_Count(); ++row) {
        const auto cells = table.Cells(row);
        file.Line(" <tr>");
        for (const Report_Field& field : fields) {
            const std::string_view value = cells.at(field.column);
            if (field.included) {
                file.Line(R"(<td width="2%"><font size="1" face="Arial">)",
                          value.empty() ? "-" : HTML_Text(value), "</td>");
            }
        }
        file.Line("</tr>");
    }
    file.Line("</table>");
    return file.Finish();
}

std::filesystem::path Write_Statistics(const Services& services, const clsAppSettings& settings,
                                       const Log_Table& table) {
    // A blank keeps a spacer's texts empty to the eye.
    const HTML_Pair spacer_pair{" ", " "};
    Report_File file(services, "Norvane Flight Statistics Report");
    HTML_Heading(file, "Flight Statistics Report");
    HTML_Stat_Header(file, {"STATISTIC", "TOTAL"});
    std::vector<Column_Total> wanted;
    wanted.reserve(statistics_sheet.size());
    for (const Statistic& statistic : statistics_sheet)
        wanted.push_back({Column_Of(statistic.field), statistic.filter});
    const std::vector<double> totals = Total_Coumn(table, wanted, services.regional);
    for (std::size_t i = 0; i < totals.size(); ++i) {
        const Statistic& statistic = statistics_sheet.at(i);
        HTML_Stat_Row(file, spacer_pair);
        HTML_Stat_Row(
            file,
            {std::string(statistic.label),
             fmt::format("{}{}", Format_Pilot(totals[i], statistic.decimals, services.regional),
                         Unit_Text(statistic.unit, settings))});
    }
    HTML_Stat_Row(file, spacer_pair, Row_Kind::bottom);
    file.Line("</table>");
    return file.Finish();
}

std::filesystem::path Write_ACARS_Report(const Services& services, const Log_Table& table,
                                         std::size_t row, const Grid_Layout& layout) {
    const auto cells = table.Cells(row);
    const auto cell = [&](Log_Field field) { return cells.at(Column_Of(field)); };
    const auto text = [&](Log_Field field) { return std::string(cell(field)); };
    ACARS_Page page{Filled_Rows(aircraft_rows, cell),
                    Filled_Rows(flight_rows, cell),
                    text(WX_ORIGIN),
                    text(WX_DESTINATION),
                    text(FLIGHT_PLAN),
                    text(COMMENTS)};
    Add_Columns(page, layout, cells, {log_column::first_optional, log_column::first_airline});
    Add_Columns(page, layout, cells, {log_column::first_airline, log_column_count});
    return Write_ACARS_Page(services, page);
}

double Column_Number(std::string_view text, const Regional& regional) {
    if (const auto number = Parse_Pilot_Number(text, regional))
        return *number;
    return Parse_Pilot_Number(Before(text, " "), regional).value_or(0);
}

std::vector<double> Total_Coumn(const Log_Table& table, const std::vector<Column_Total>& wanted,
                                const Regional& regional) {
    std::vector<Decimal_Sum> sums(wanted.size());
    for (std::size_t row = 0; row < table.Row_Count(); ++row) {
        const auto cells = table.Cells(row);
        const std::string_view rules = cells[log_column::ifr_vfr];
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            const auto& [column, filter] = wanted[i];
            if (filter.empty() || Equal_No_Case(rules, filter))
                sums[i].Add(Column_Number(cells.at(column), regional));
        }
    }
    std::vector<double> totals;
    totals.reserve(sums.size());
    for (const Decimal_Sum& sum : sums)
        totals.push_back(sum.Value());
    return totals;
}

}  // namespace norvane
