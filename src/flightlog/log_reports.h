#pragma once
// The reports of a flight log: the logbook, the statistics sheet, the ACARS report of a row. Each
// is written to "report.html" in the program directory, in place of the last one, and opened by the
// caller. Failures are raised; what was written by then stays.

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "common/number.h"

namespace norvane {

struct Services;
class Grid_Layout;
class Log_Table;
class clsAppSettings;

/// A column that has a caption, and whether reports hold it.
struct Report_Field {
    std::string caption;
    std::size_t column = 0;
    bool included = true;
};

/// The columns that have a caption, each by one of its own, all of them included.
[[nodiscard]] std::vector<Report_Field> All_Report_Fields(const Grid_Layout& layout);

/// Every flight in the table's order, with the fields that are included; `totals` is the line under
/// the heading.
std::filesystem::path Write_Logbook(const Services& services, const Log_Table& table,
                                    const std::vector<Report_Field>& fields,
                                    std::string_view totals);
/// Hours, fuel, distance and load of all flights, in the units of the settings.
std::filesystem::path Write_Statistics(const Services& services, const clsAppSettings& settings,
                                       const Log_Table& table);
/// One flight. The pilot's and the airline's own fields are in it where the layout shows the first
/// of them. A row outside the table raises 9.
std::filesystem::path Write_ACARS_Report(const Services& services, const Log_Table& table,
                                         std::size_t row, const Grid_Layout& layout);

/// The number that a cell holds, with or without a unit behind a blank; 0 when it holds none.
[[nodiscard]] double Column_Number(std::string_view text, const Regional& regional);
struct Column_Total {
    std::size_t column = 0;
    /// Only of flights under these rules, "IFR" or "VFR" in whatever case; empty: of all.
    std::string_view filter;
};
/// The sums of the columns' numbers, all in one pass over the table.
[[nodiscard]] std::vector<double> Total_Coumn(const Log_Table& table,
                                              const std::vector<Column_Total>& wanted,
                                              const Regional& regional);

}  // namespace norvane
