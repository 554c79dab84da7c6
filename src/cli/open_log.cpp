#include "cli/open_log.h"

#include <fmt/format.h>

#include <string_view>

#include "cli/console_desktop.h"
#include "common/code_page.h"
#include "common/date_time.h"
#include "common/text.h"
#include "flightlog/log_columns.h"

namespace norvane {

namespace {

bool Same_Date(std::string_view one, std::string_view other, std::string_view short_date) {
    const auto left = Parse_Date_Time(one, short_date);
    const auto right = Parse_Date_Time(other, short_date);
    return left && right ? left->date == right->date : one == other;
}

}  // namespace

std::size_t Checked_Row(const Log_Table& table, const Row_Choice& row, const Regional& regional) {
    if (row.number == 0 || row.number > table.Row_Count()) {
        throw Run_Error(error_number::subscript_out_of_range,
                        fmt::format("There is no row {}: the log has {} of them", row.number,
                                    table.Row_Count()));
    }
    const std::size_t index = row.number - 1;
    const std::string_view date = table.Get(index, log_column::date);
    const std::string wanted = Trim(From_Utf8(row.date));
    if (!wanted.empty() && !Same_Date(date, wanted, regional.short_date)) {
        throw Run_Error(error_number::invalid_call,
                        fmt::format("Row {} has the date {}, not {}", row.number, date, wanted));
    }
    return index;
}

Open_Log::Open_Log(Session& session)
    : services(session.Outside()),
      settings(services),
      airline(services),
      entry(services),
      panel(services, settings, airline, entry) {
    panel.Grid_Load();
    if (!panel.File().Loaded_To_Its_End()) {
        throw Run_Error(error_number::path_file_access,
                        From_Path(panel.File().Path()) + " cannot be read");
    }
}

Open_Log::Open_Log(Session& session, const Row_Choice& row) : Open_Log(session) {
    panel.Set_Current_Row(Checked_Row(panel.Table(), row, services.regional));
}

std::string Open_Log::Flight() const {
    const std::size_t row = panel.Current_Row().value_or(0);
    return fmt::format("{} {}-{}", panel.Table().Get(row, log_column::date),
                       panel.Table().Get(row, log_column::origin),
                       panel.Table().Get(row, log_column::destination));
}

bool Open_Log::Save() {
    const bool saved = panel.Grid_Save();
    if (!panel.lblStatus.Text().empty())
        Console_Desktop::Say(panel.lblStatus.Text());
    return saved;
}

}  // namespace norvane
