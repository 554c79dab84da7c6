#include "cli/log_commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

#include "cli/console_desktop.h"
#include "cli/exit_status.h"
#include "cli/heard_error_log.h"
#include "cli/open_flights.h"
#include "cli/plan_command.h"
#include "common/boxes.h"
#include "common/code_page.h"
#include "common/date_time.h"
#include "common/text.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "config/log_names.h"
#include "flightlog/corrections.h"
#include "flightlog/flight_rows.h"
#include "flightlog/log_reading.h"
#include "flightlog/log_reports.h"
#include "flightlog/mod_fs_log.h"
#include "flightlog/unsaved_rows.h"
#include "logentry/cls_log_entry.h"
#include "logpanel/frm_flight_log.h"
#include "logpanel/uc_flight_log.h"
#include "logpanel/uc_stats.h"

namespace norvane {

namespace {

int Status_Of(bool done) {
    return done ? exit_status::done : exit_status::failed;
}

/// The dialog "Manage Flight Logs" with a name typed in.
class Log_Management {
  public:
    Log_Management(Session& session, const std::string& name)
        : services(session.Outside()), settings(services), form(services, settings) {
        Fill_Logs(session.Outside(), form.cboLogs);
        form.cboLogs.Enter(Log_Name_From_Utf8(name));
    }
    void Demand_Log() const {
        const std::string hidden = Hidden_Log_Fault(services, form.cboLogs.Text());
        if (!hidden.empty())
            throw Run_Error(error_number::path_file_access, hidden, hidden);
        if (form.cboLogs.Selected() < 0) {
            throw Run_Error(error_number::file_not_found,
                            "There is no flight log named \"" + form.cboLogs.Text() + "\"");
        }
    }

    Services& services;
    clsAppSettings settings;
    frmFlightLog form;
};

/// The captions as the pilot reads them.
Grid_Layout Layout_Of(Services& services, const clsAppSettings& settings) {
    clsVASettings airline(services);
    airline.Get_VA_Settings(settings.Virtual_Airline());
    Grid_Layout layout(services);
    layout.Load(false, airline.Directory());
    return layout;
}

/// What a report of the active log is made of.
struct Report_Source {
    explicit Report_Source(Session& session)
        : services(session.Outside()),
          settings(services),
          table(Read_Log(services, settings.FlightLog())),
          layout(Layout_Of(services, settings)) {}
    int Show(const std::filesystem::path& report) const {
        services.desktop.Open_File(report);
        return exit_status::done;
    }

    Services& services;
    clsAppSettings settings;
    Log_Table table;
    Grid_Layout layout;
};

std::optional<std::size_t> Column_Number_Of(std::string_view text) {
    std::size_t column = 0;
    const auto* const end = text.data() + text.size();
    const auto [stop, failure] = std::from_chars(text.data(), end, column);
    return failure == std::errc() && stop == end ? std::optional(column) : std::nullopt;
}

/// Leaves only the wanted fields included. A caption that several columns have means all of them.
void Choose_Fields(std::vector<Report_Field>& fields, const Grid_Layout& layout,
                   const std::vector<std::string>& wanted) {
    for (Report_Field& field : fields)
        field.included = wanted.empty();
    for (const std::string& each : wanted) {
        const std::string text = Trim(From_Utf8(each));
        bool found = false;
        const auto include = [&](const auto& is_meant) {
            for (Report_Field& field : fields) {
                if (is_meant(field))
                    field.included = found = true;
            }
        };
        include([&](const Report_Field& field) {
            return Equal_No_Case(field.caption, text) ||
                   Equal_No_Case(layout.columns.at(field.column).caption, text);
        });
        if (!found) {
            include([column = Column_Number_Of(text)](const Report_Field& field) {
                return field.column == column;
            });
        }
        if (!found)
            throw Run_Error(error_number::invalid_call, "The log has no field \"" + text + "\"");
    }
}

/// A row of the log of that name, or of the active one where there is none.
std::string Chosen_Line(Session& session, const Row_Choice& row, const std::string& name) {
    Services& outside = session.Outside();
    const Log_Table table = Read_Log(
        outside, name.empty() ? clsAppSettings(outside).FlightLog() : Log_Name_From_Utf8(name));
    return table.Line(Checked_Row(table, row, outside.regional));
}

}  // namespace

int Log_List(Session& session) {
    const clsAppSettings settings(session.Outside());
    for (const std::string& name : List_Logs(session.Outside()))
        Console_Desktop::Print((name == settings.FlightLog() ? "* " : "  ") + name);
    for (const auto& file : Hidden_Logs(session.Outside())) {
        Console_Desktop::Say("Not listed, because its name cannot be told from another one here: " +
                             From_Path(file));
    }
    return exit_status::done;
}

int Log_New(Session& session, const std::string& name) {
    return Status_Of(Log_Management(session, name).form.FlightLog_Add());
}

int Log_Remove(Session& session, const std::string& name) {
    Log_Management management(session, name);
    management.Demand_Log();
    return Status_Of(management.form.FlightLog_Delete());
}

int Log_Use(Session& session, const std::string& name) {
    Log_Management management(session, name);
    management.Demand_Log();
    return Status_Of(management.form.FlightLog_Active());
}

int Log_Copy(Session& session, const Row_Choice& row, const std::string& name) {
    return Status_Of(Open_Log(session, row).panel.Copy_To_Log(Log_Name_From_Utf8(name)));
}

int Log_Delete(Session& session, const Row_Choice& row) {
    Open_Log log(session, row);
    const Answer answer =
        Ask(log.services.desktop,
            "Are you sure you want to delete the flight of " + log.Flight() + "?");
    if (answer != Answer::yes)
        return exit_status::failed;
    log.panel.Delete_LogEntry();
    return Status_Of(log.panel.Grid_Save());
}

int Log_Import_Plan(Session& session, const Row_Choice& row, const std::string& file) {
    // The panel takes from a broken plan what it can; what is scripted is to fail then.
    Heard_Error_Log heard(session.Outside().error_log);
    Services services = With_Error_Log(session.Outside(), heard);
    static_cast<void>(Read_Plan(services, file));
    if (!heard.Reasons().empty())
        return exit_status::failed;
    Open_Log log(session, row);
    log.panel.Read_Flight_Plan(file);
    return Status_Of(log.panel.Grid_Save());
}

int Log_History(Session& session, const Row_Choice& row, const std::string& name) {
    Services& outside = session.Outside();
    const std::string line = Chosen_Line(session, row, name);
    const Grid_Layout layout = Layout_Of(outside, clsAppSettings(outside));
    Corrections corrections(outside);
    for (const Correction& each : corrections.History(line)) {
        std::vector<std::string> texts{each.when, layout.Distinct_Caption(each.column), each.was,
                                       each.is, each.why};
        for (std::string& text : texts)
            std::replace(text.begin(), text.end(), '\t', ' ');
        Console_Desktop::Print(Join(texts, "\t"));
    }
    return exit_status::done;
}

int Log_Flight(Session& session, const Row_Choice& row, const std::string& name) {
    const std::string line = Chosen_Line(session, row, name);
    const Open_Flights flights(session, Store_Use::look);
    const auto recorded = flights.library.List({});
    std::vector<std::string> logged;
    logged.reserve(recorded.size());
    for (const Flight_Summary& flight : recorded)
        logged.push_back(flight.logged_row);
    Corrections corrections(session.Outside());
    const auto found = Find_Logged_Line(corrections, line, logged);
    if (!found) {
        Console_Desktop::Say(fmt::format("The flight of row {} was not recorded", row.number));
        return exit_status::failed;
    }
    Console_Desktop::Print(recorded[*found].id);
    return exit_status::done;
}

int Log_Undo(Session& session, const Row_Choice& row) {
    Open_Log log(session, row);
    const auto correction = log.panel.Correction_To_Take_Back();
    if (!correction) {
        throw Run_Error(error_number::invalid_call,
                        fmt::format("Row {} has no correction to take back", row.number));
    }
    const Answer answer = Ask(
        log.services.desktop,
        fmt::format("Are you sure you want to take back the correction of {}: {} from \"{}\" to "
                    "\"{}\"?",
                    log.Flight(),
                    Layout_Of(log.services, log.settings).Distinct_Caption(correction->column),
                    correction->is, correction->was));
    if (answer != Answer::yes)
        return exit_status::failed;
    log.panel.Take_Back_Correction();
    return Status_Of(log.Save());
}

int Log_Recover(Session& session, bool all, const std::vector<std::size_t>& rows) {
    const auto unsaved = Find_Unsaved_Rows(session.Outside());
    std::vector<std::string> chosen;
    for (std::size_t i = 0; i < unsaved.size(); ++i) {
        if (all)
            chosen.push_back(unsaved[i].line);
        else if (rows.empty())
            Console_Desktop::Print(
                fmt::format("{}\t{}\t{}", i + 1, From_Path(unsaved[i].file), unsaved[i].line));
    }
    for (const std::size_t row : rows) {
        if (row > unsaved.size()) {
            throw Run_Error(error_number::subscript_out_of_range,
                            fmt::format("There is no unsaved row {}: there are {} of them", row,
                                        unsaved.size()));
        }
        if (!all)
            chosen.push_back(unsaved[row - 1].line);
    }
    if (unsaved.empty())
        Console_Desktop::Say("There are no unsaved flights");
    if (chosen.empty())
        return exit_status::done;
    Open_Log log(session);
    const bool saved = log.panel.Recover_Rows(chosen);
    // Rows that the next load would not take.
    if (!log.panel.lblStatus.Text().empty())
        Console_Desktop::Say(log.panel.lblStatus.Text());
    return Status_Of(saved);
}

int Log_Report(Session& session, const std::vector<std::string>& fields) {
    const Report_Source log(session);
    auto chosen = All_Report_Fields(log.layout);
    Choose_Fields(chosen, log.layout, fields);
    if (log.table.Row_Count() == 0) {
        throw Run_Error(error_number::other, "There are no log entries to include in the report");
    }
    const Regional& regional = log.services.regional;
    return log.Show(Write_Logbook(log.services, log.table, chosen,
                                  Totals_Caption(log.table.Totals(regional), regional)));
}

int Log_Statistics(Session& session) {
    const Report_Source log(session);
    return log.Show(Write_Statistics(log.services, log.settings, log.table));
}

int Log_ACARS_Report(Session& session, const Row_Choice& row) {
    const Report_Source log(session);
    const std::size_t index = Checked_Row(log.table, row, log.services.regional);
    return log.Show(Write_ACARS_Report(log.services, log.table, index, log.layout));
}

int Hours(Session& session, bool report) {
    Services& outside = session.Outside();
    const clsAppSettings settings(outside);
    const Hours_By_Type sums =
        Sum_Hours_By_Type(Read_Log(outside, settings.FlightLog()), outside.regional);
    if (report) {
        Heard_Error_Log heard(outside.error_log);
        Services services = With_Error_Log(outside, heard);
        ucStats statistics(services, settings);
        statistics.Display_Flight_Stats();
        if (heard.Reasons().empty())
            statistics.Create_Report();
        return Status_Of(heard.Reasons().empty());
    }
    const auto text = [&](double hours) { return Format_Pilot(hours, 1, outside.regional); };
    for (const auto& [type, hours] : sums.types)
        Console_Desktop::Print(type + "\t" + text(hours));
    Console_Desktop::Print("Total Flight Time: " + text(sums.all_hours));
    return exit_status::done;
}

int Convert_Log(Session& session, const std::string& file, const std::string& name) {
    Console_Desktop::Print(
        From_Path(modFSLog::Convert(session.Outside(), file, Log_Name_From_Utf8(name))));
    return exit_status::done;
}

}  // namespace norvane
