#include "common/log_error.h"

#include <fmt/format.h>

#include <string>

#include "common/date_time.h"
#include "common/services.h"
#include "common/text.h"
#include "common/timer_queue.h"

namespace norvane {

namespace {

/// What a failure of which only the number is known means for the pilot, and what to do.
struct Number_Words {
    int number;
    std::string_view words;
};
constexpr Number_Words number_words[] = {
    {error_number::disk_full,
     "The disk is full.  Nothing that was on it before is lost.  Please make room on it, then try "
     "again."},
    {error_number::permission_denied,
     "A file or directory may not be read or written.  Nothing that was in it is lost.  Please "
     "check its owner and its protection, then try again."},
    {error_number::file_not_found,
     "A file that is needed here does not exist.  Please check its name and place, then try "
     "again."},
    {error_number::path_not_found,
     "A directory that is needed here does not exist.  Please check its name, then try again."},
    {error_number::path_file_access,
     "A file cannot be used under this name.  Please check its name, then try again."},
    {error_number::device_io_error,
     "A device or disk did not do what was asked of it.  Please check that it is connected and "
     "works, then try again."},
};
constexpr std::string_view other_words =
    "This could not be carried out; everything else goes on as before.  If it comes back, the "
    "error log tells what a technician wants to know.";

}  // namespace

std::string Words_For_Pilot(const Run_Error& error) {
    if (!error.For_Pilot().empty())
        return error.For_Pilot();
    for (const Number_Words& row : number_words) {
        if (row.number == error.Number())
            return std::string(row.words);
    }
    return std::string(other_words);
}

void Log_Error(Services& services, std::string_view procedure, const Run_Error& error, Show show) {
    try {
        const std::string report = fmt::format(
            "{} has encountered an error: \r\n\r\nError Source: {}\r\nError Number: {}\r\n"
            "Error Description: {}",
            product_name, procedure, error.Number(), error.Description());
        services.desktop.End_Busy();
        // The log comes first: while a box is open the program may be ended.
        try {
            const std::string date = Format_Date(services.clock.Local_Now().date, "yyyyMMdd");
            services.error_log.Append(fmt::format("{}   {}\r\n\r\n", date, report));
        } catch (...) {
            // A log that cannot be written does not keep the pilot from being told.
        }
        Timer_Queue& timers = services.desktop.Timers();
        if (show == Show::box && !timers.Is_Ticking() && timers.First_Within_A_Minute(report)) {
            services.desktop.Show_Message({Words_For_Pilot(error),
                                           std::string(product_name) + " Error", Icon::exclamation,
                                           Buttons::ok, report});
        }
    } catch (...) {
        // Reporting must never become a failure of its own.
        return;
    }
}

Connection Log_Failing_Ticks(Services& services) {
    return services.desktop.Timers().tick_failed.Connect([&services](const Run_Error& error) {
        Log_Error(services, "Timer.tick", error, Show::silent);
    });
}

}  // namespace norvane
