// The part of the flight log panel that the grid's pop-up menu runs, each command for the current
// row.

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "common/boxes.h"
#include "common/code_page.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_app_settings.h"
#include "config/log_names.h"
#include "flightlog/log_keeping.h"
#include "logpanel/uc_flight_log.h"
#include "simdata/cls_ini_file.h"
#include "simdata/plan_choice.h"

namespace norvane {

namespace {

/// What of a flight plan goes where, in the order in which the pilot is told of filled cells.
struct Plan_Value {
    std::size_t column;
    std::string_view label;
    const std::string& (clsIniFile::*value)() const;
};
constexpr std::array plan_values = {
    Plan_Value{log_column::origin, "Origin ICAO Code", &clsIniFile::Flight_Origin_ICAO},
    Plan_Value{log_column::origin + 1, "Origin Airport", &clsIniFile::Flight_Origin_Name},
    Plan_Value{log_column::destination, "Destination ICAO Code",
               &clsIniFile::Flight_Destination_ICAO},
    Plan_Value{log_column::destination + 1, "Destination Airport",
               &clsIniFile::Flight_Destination_Name},
    Plan_Value{log_column::flight_plan, "Flight Plan", &clsIniFile::FLIGHT_PLAN},
    Plan_Value{log_column::flight_level, "Flight Level", &clsIniFile::FLIGHT_LEVEL},
};

bool Says_Nothing(const clsIniFile& plan) {
    return std::all_of(plan_values.begin(), plan_values.end(),
                       [&](const Plan_Value& each) { return (plan.*each.value)().empty(); });
}

/// Asks whether a flight plan may replace what the row's cells hold; nothing is asked, and nothing
/// replaced, where they are empty.
Answer May_Overwrite(Desktop& desktop, const Log_Table& table, std::size_t row) {
    std::vector<std::string> filled;
    for (const Plan_Value& each : plan_values) {
        if (!table.Get(row, each.column).empty())
            filled.emplace_back(each.label);
    }
    if (filled.empty())
        return Answer::no;
    const std::string question = "Norvane detected that the following fields have been entered; " +
                                 Join(filled, ", ") + ".  Do you wish to overwrite these fields?";
    return Ask(desktop, question);
}

}  // namespace

void ucFlightLog::Connect_Pop_Up() {
    mnuPopPlan.chosen.Connect([this] {
        const auto file = Get_Flight_Plan();
        if (!file.empty())
            Read_Flight_Plan(file);
    });
    mnuPopCopy.chosen.Connect([this] { Copy_Flight(); });
    // A flight that was logged while the menu was open may have taken the row's place.
    const auto is_row_of_menu = [this] {
        const auto row = Current_Row();
        return row && m_table.Line(*row) == m_pop_up_line;
    };
    mnuPopTakeBack.chosen.Connect([this, is_row_of_menu] {
        if (is_row_of_menu())
            Take_Back_Correction();
    });
    mnuPopDelete.chosen.Connect([this, is_row_of_menu] {
        if (is_row_of_menu())
            Delete_LogEntry();
    });
}

std::optional<std::size_t> ucFlightLog::Current_Row() const {
    if (m_current_row && *m_current_row >= m_table.Row_Count())
        return std::nullopt;
    return m_current_row;
}

bool ucFlightLog::Prepare_Pop_Up() {
    mnuPopCopy.Set_Enabled(Enable_Copy());
    mnuPopTakeBack.Set_Enabled(Correction_To_Take_Back().has_value());
    const auto row = Current_Row();
    if (row)
        m_pop_up_line = m_table.Line(*row);
    return row.has_value();
}

bool ucFlightLog::Enable_Copy() {
    bool enabled = false;
    Guarded(m_services, "ucFlightLog.Enable_Copy()", Show::silent, [&] {
        const std::vector<std::string> logs = List_Logs(m_services);
        enabled = std::any_of(logs.begin(), logs.end(), [&](const std::string& name) {
            return name != m_settings.FlightLog();
        });
    });
    return enabled;
}

std::filesystem::path ucFlightLog::Get_Flight_Plan() {
    std::filesystem::path chosen;
    Guarded(m_services, "ucFlightLog.Get_Flight_Plan()", Show::silent,
            [&] { chosen = Choose_Flight_Plan(m_services); });
    return chosen;
}

void ucFlightLog::Read_Flight_Plan(const std::filesystem::path& file) {
    Guarded(m_services, "ucFlightLog.Read_Flight_Plan()", Show::silent, [&] {
        commit_edit_wanted.Emit();
        const auto row = Current_Row();
        if (!row)
            return;
        clsIniFile plan(m_services);
        plan.Set_INI_FilePath(file);
        const bool reported = !plan.Get_Flight_Plan();
        if (Says_Nothing(plan)) {
            if (reported)
                return;
            Tell(
                m_services.desktop,
                From_Path(file) +
                    " holds no flight plan that can be read, so nothing was taken from it.  Please "
                    "choose a plan that was saved by the simulator or a planner (*.pln).",
                Icon::exclamation);
            return;
        }
        const std::string before = m_table.Line(*row);
        const Answer overwrite = May_Overwrite(m_services.desktop, m_table, *row);
        if (overwrite == Answer::none)
            return;
        // A flight that was logged while the question stood may have taken the row's place.
        if (Current_Row() != row || m_table.Line(*row) != before) {
            throw Run_Error(error_number::invalid_call,
                            "The row has changed, so the flight plan was not taken into it");
        }
        for (const Plan_Value& each : plan_values) {
            if (overwrite == Answer::yes || m_table.Get(*row, each.column).empty())
                Correct_Cell(*row, each.column, (plan.*each.value)());
        }
        Correct_Cell(*row, log_column::ifr_vfr, plan.Flight_Type());
    });
}

void ucFlightLog::Copy_Flight() {
    Guarded(m_services, "ucFlightLog.mnuPopCopy_Click()", Show::box, [&] {
        commit_edit_wanted.Emit();
        const auto row = Current_Row();
        if (!row)
            return;
        // What the pilot meant: a flight may be logged during the choice.
        const std::string flight = m_table.Line(*row);
        const auto name = log_chooser.Select_FlightLog(m_services, m_settings.FlightLog());
        if (name)
            Copy_Line(flight, *name);
    });
}

bool ucFlightLog::Copy_To_Log(const std::string& name) {
    const auto row = Current_Row();
    return row && Copy_Line(m_table.Line(*row), name);
}

bool ucFlightLog::Copy_Line(const std::string& flight, const std::string& name) {
    bool copied = false;
    Guarded(m_services, "ucFlightLog.mnuPopCopy_Click()", Show::box, [&] {
        const std::vector<std::string> logs = List_Logs(m_services);
        // By whatever name the file is found: a line behind the table would not stay.
        const bool is_active = name == m_settings.FlightLog() ||
                               Log_Path(m_services, name) == m_settings.FlightLog_Path();
        const bool is_listed = std::find(logs.begin(), logs.end(), name) != logs.end();
        std::string fault;
        if (is_active)
            fault = "\"" + name + "\" is the active flight log: the flight is in it.";
        else if (!is_listed)
            fault = New_Log_Fault(m_services, name);
        if (!fault.empty()) {
            Tell(m_services.desktop, fault, Icon::exclamation);
            return;
        }
        {
            const Busy_Cursor busy(m_services.desktop);
            Append_To_Log(Log_Path(m_services, name), flight + field_separator);
            copied = true;
        }
        Tell(m_services.desktop, "Log Entry copied to " + name + " log");
    });
    return copied;
}

std::string ucFlightLog::Cell_Remark(std::size_t row, std::size_t column) {
    return m_row_edits.Remark(m_table.Line(row), column);
}

std::optional<Correction> ucFlightLog::Correction_To_Take_Back() {
    const auto row = Current_Row();
    return row ? m_row_edits.Last(m_table.Line(*row)) : std::nullopt;
}

void ucFlightLog::Take_Back_Correction() {
    Guarded(m_services, "ucFlightLog.Take_Back_Correction()", Show::box, [&] {
        commit_edit_wanted.Emit();
        const auto correction = Correction_To_Take_Back();
        if (!correction)
            return;
        Correct_Cell(*Current_Row(), correction->column, correction->was, Corrections::taken_back);
        Total_FlightTime();
    });
}

void ucFlightLog::Delete_LogEntry() {
    Guarded(m_services, "ucFlightLog.Delete_LogEntry()", Show::box, [&] {
        const auto row = Current_Row();
        if (!row)
            return;
        drop_edit_wanted.Emit();
        m_row_edits.Drop(m_table.Line(*row));
        m_table.Delete_Row(*row);
        m_changed = true;
        m_unsaved_edits = true;
        table_changed.Emit();
        Total_FlightTime();
    });
}

}  // namespace norvane
