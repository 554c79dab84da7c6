#include "acarspanel/row_keeper.h"

#include <fmt/format.h>

#include "acarspanel/panel_store.h"
#include "common/boxes.h"
#include "common/code_page.h"
#include "common/log_error.h"
#include "common/services.h"
#include "config/cls_app_settings.h"
#include "flightlog/log_keeping.h"

namespace norvane {

std::filesystem::path Row_Keeper::Next_File() const {
    const std::filesystem::path log = m_parts.settings.FlightLog_Path();
    std::filesystem::path file = Beside_Log(log, ".unsaved");
    std::error_code unknown;
    for (int number = 2; std::filesystem::exists(file, unknown); ++number)
        file = Beside_Log(log, fmt::format(".unsaved{}", number));
    return file;
}

std::filesystem::path Row_Keeper::Keep() {
    m_last = Write_Unsaved(m_parts.services, m_parts.settings.FlightLog_Path(), m_store.Row());
    return m_last;
}

std::optional<std::filesystem::path> Row_Keeper::Keep_Or_Ask(std::string_view question) {
    std::string failure;
    try {
        return Keep();
    } catch (...) {
        const Run_Error error = Caught_Error();
        Log_Error(m_parts.services, "ucACARS.Keep_Row()", error, Show::silent);
        failure = error.Description();
    }
    const Answer answer = Ask(
        m_parts.services.desktop,
        fmt::format("This flight could be kept nowhere ({}), and its figures would be lost.  Make "
                    "room on the disk, or answer Yes to lose them.\r\n\r\n{}",
                    failure, question),
        Icon::exclamation);
    if (answer != Answer::yes)
        return std::nullopt;
    return std::filesystem::path();
}

void Row_Keeper::Keep_Somewhere() {
    if (!Guarded(m_parts.services, "ucACARS.Close()", Show::box, [&] { Keep(); })) {
        Log_Error(m_parts.services, "ucACARS.Close()",
                  {error_number::other, "The flight could be kept nowhere else: " + m_store.Row()},
                  Show::silent);
    }
}

void Row_Keeper::Tell_Where(const std::filesystem::path& kept) const {
    if (!kept.empty()) {
        Tell(m_parts.services.desktop,
             fmt::format("The row of this flight is kept in {}; \"Recover Unsaved Flights ...\" in "
                         "the menu \"Flight Logs\" brings it back.",
                         From_Path(kept)));
    }
}

}  // namespace norvane
