#include "common/log_error.h"

#include <fmt/format.h>

#include <string>

#include "common/date_time.h"
#include "common/services.h"
#include "common/text.h"
#include "common/timer_queue.h"

namespace norvane {

void Log_Error(Services& services, std::string_view procedure, const Run_Error& error, Show show) {
    try {
        const std::string report = fmt::format(
            "{} has encountered an error: \r\n\r\nError Source: {}\r\nError Number: {}\r\n"
            "Error Description: {}",
            product_name, procedure, error.Number(), error.Description());
        services.desktop.Set_Busy(false);
        Timer_Queue& timers = services.desktop.Timers();
        if (show == Show::box && !timers.Is_Ticking() && timers.First_Within_A_Minute(report)) {
            services.desktop.Show_Message(
                {report, std::string(product_name) + " Error", Icon::exclamation, Buttons::ok});
        }
        const std::string date = Format_Date(services.clock.Local_Now().date, "yyyyMMdd");
        services.error_log.Append(fmt::format("{}   {}\r\n\r\n", date, report));
    } catch (...) {
        // Reporting must never become a failure of its own.
        return;
    }
}

}  // namespace norvane
