#include "config/cls_app_settings.h"

#include <algorithm>

#include "common/file_writer.h"
#include "common/find_file.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "config/airline_list.h"
#include "config/log_names.h"
#include "config/setting_table.h"

namespace norvane {

namespace {

/// The airline's own section where the table names none.
std::string Section_Of(const Setting_Row& row, const App_Setting_Values& values) {
    return row.section.empty() ? values.Virtual_Airline : std::string(row.section);
}

Run_Error No_Such_Field() {
    return {error_number::subscript_out_of_range, "The optional fields are numbered 0 to 4"};
}

}  // namespace

clsAppSettings::clsAppSettings(Services& services) : m_services(services) {
    // A store that cannot be read leaves values that a flight can begin with, and an airline.
    for (const Setting_Row& row : Setting_Table())
        Take_Stored_Text(row, Default_Text(row, m_values), m_values);
    Get_Settings();
}

void clsAppSettings::Set_FlightLog(std::string_view value) {
    const std::string name = Trim(value);
    // First the store: where that fails, no one has turned to the other log.
    m_services.settings.Set("Options", "Flight Log", name);
    m_values.FlightLog = name;
    ActiveLogChange.Emit();
}

void clsAppSettings::Set_ACARS_ATCModel(bool value) {
    // Assigned again before a save that succeeds, a change is still to be told.
    m_type_source_changed = m_type_source_changed || value != m_values.ACARS_ATCModel;
    m_values.ACARS_ATCModel = value;
}

std::string clsAppSettings::Virtual_Airline() const {
    return m_values.Virtual_Airline == stored_default_airline ? std::string(default_airline)
                                                              : m_values.Virtual_Airline;
}

void clsAppSettings::Set_Virtual_Airline(std::string_view value) {
    const std::string name = Trim(value == default_airline ? stored_default_airline : value);
    if (name != stored_default_airline) {
        const std::string fault = Airline_Name_Fault(name);
        if (!fault.empty())
            throw Run_Error(error_number::invalid_call, fault);
    }
    m_values.Virtual_Airline = name;
    const std::string fault = Check_Airline_Directory();
    Get_VA_Settings();
    Report_Airline(fault);
    Report_Faults("clsAppSettings.Get_VA_Settings()");
}

void clsAppSettings::Set_Virtual_Airline_Log(std::string_view value) {
    Note_Virtual_Airline_Log(value);
    if (m_values.Virtual_Airline_Log != m_values.FlightLog)
        Set_FlightLog(m_values.Virtual_Airline_Log);
}

const std::string& clsAppSettings::OptFields(std::size_t index) const {
    if (index >= m_optional_fields.size())
        throw No_Such_Field();
    return m_optional_fields[index];
}

void clsAppSettings::Set_OptFields(std::size_t index, std::string_view definition) {
    if (index >= m_optional_fields.size())
        throw No_Such_Field();
    std::string line(definition);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
    m_optional_fields[index] = Trim(line);
}

std::filesystem::path clsAppSettings::FlightLog_Path() const {
    return Log_Path(m_services, m_values.FlightLog);
}

bool clsAppSettings::Get_Settings() {
    m_step_failed = false;
    std::string airline_fault;
    m_load_failed = !Guarded(m_services, "clsAppSettings.Get_Settings()", Show::box, [&] {
        Get_Active_FlightLog();
        Load(Setting_Step::options);
        m_yield_in_loop = std::filesystem::exists(
            Find_Path(m_services, m_services.program_directory, "bin\\optimize"));
        Load(Setting_Step::sources);
        Get_Opt_Fields();
        Load(Setting_Step::airline_name);
        airline_fault = Check_Airline_Directory();
        Get_VA_Settings();
    });
    m_load_failed = m_load_failed || m_step_failed;
    // All is taken over before a box opens: what runs behind it finds the settings whole.
    Report_Airline(airline_fault);
    Report_Faults("clsAppSettings.Get_Settings()");
    return !m_load_failed;
}

bool clsAppSettings::Save_Settings() {
    m_step_failed = false;
    const bool done = Guarded(m_services, "clsAppSettings.Save_Settings()", Show::box, [&] {
        Back_Up_After_Failed_Load();
        Settings_Batch batch(m_services.settings);
        Save(Setting_Step::options);
        Save(Setting_Step::sources);
        Save_Opt_Fields();
        Save(Setting_Step::airline_name);
        Save(Setting_Step::airline);
        batch.Commit();
        if (m_type_source_changed)
            ACTypeChange.Emit();
        SettingsChanged.Emit();
        m_type_source_changed = false;
    });
    return done && !m_step_failed;
}

void clsAppSettings::Back_Up_After_Failed_Load() {
    if (m_load_failed)
        m_services.settings.Back_Up();
    m_load_failed = false;
}

void clsAppSettings::Load(Setting_Step step) {
    Take_Stored(step, m_values, m_faults);
}

void clsAppSettings::Take_Stored(Setting_Step step, App_Setting_Values& values,
                                 Faults& faults) const {
    for (const auto& row : Setting_Table()) {
        if (row.step != step)
            continue;
        const auto stored = m_services.settings.Find(Section_Of(row, values), row.key);
        if (stored) {
            try {
                Take_Stored_Text(row, *stored, values);
                continue;
            } catch (const Run_Error& fault) {
                faults.emplace_back(row.name, fault.Description());
            }
        }
        Take_Stored_Text(row, Default_Text(row, values), values);
    }
}

void clsAppSettings::Report_Faults(std::string_view procedure) {
    const Faults faults = std::exchange(m_faults, {});
    if (faults.empty())
        return;
    m_load_failed = true;
    std::string names;
    std::string reasons;
    for (const auto& [name, reason] : faults) {
        names.append(names.empty() ? "" : ", ").append(name);
        reasons.append(reasons.empty() ? "" : "; ").append(reason);
    }
    Log_Error(
        m_services, procedure,
        {error_number::type_mismatch, reasons,
         "What is stored for these settings cannot be read; they have their defaults: " + names +
             ".  All others, the airline's too, are as they were saved.  Please look at "
             "them in \"Settings\" before the next flight and choose \"Save\"; the store as "
             "it is now is copied beside it first, with \".bak\" behind its name."},
        Show::box);
}

App_Setting_Values clsAppSettings::Values_With_Airline(std::string_view name) const {
    App_Setting_Values values = m_values;
    values.Virtual_Airline = Trim(name == default_airline ? stored_default_airline : name);
    Faults faults;
    Take_Stored(Setting_Step::airline, values, faults);
    return values;
}

void clsAppSettings::Save(Setting_Step step) {
    for (const auto& row : Setting_Table()) {
        if (row.step == step)
            m_services.settings.Set(Section_Of(row, m_values), row.key, Stored_Text(row, m_values));
    }
}

void clsAppSettings::Get_Active_FlightLog() {
    const bool done =
        Guarded(m_services, "clsAppSettings.Get_Active_FlightLog()", Show::silent, [&] {
            // Known before anything can fail: without a name flights would be logged to ".txt".
            Load(Setting_Step::flight_log);
            for (const auto* directory : {"messagelogs", "logs"})
                std::filesystem::create_directories(m_services.program_directory / directory);
            const auto default_log = Log_Path(m_services, default_log_name);
            if (!std::filesystem::exists(default_log))
                Write_File(default_log, cr_lf);
            if (m_values.FlightLog != default_log_name &&
                !std::filesystem::exists(FlightLog_Path())) {
                m_values.FlightLog = default_log_name;
                m_services.settings.Set("Options", "Flight Log", default_log_name);
            }
        });
    m_step_failed = m_step_failed || !done;
}

std::string clsAppSettings::Check_Airline_Directory() {
    const std::string stored = m_values.Virtual_Airline;
    if (stored == stored_default_airline)
        return {};
    // An airline without a name would keep its values in a section without one.
    if (stored.empty()) {
        m_values.Virtual_Airline = stored_default_airline;
        return {};
    }
    // A section of the store that is no airline's must not go with an airline of its name.
    std::string fault = Airline_Name_Fault(stored);
    if (fault.empty()) {
        if (std::filesystem::is_directory(
                Find_Path(m_services, m_services.program_directory, Airline_Directory(stored)))) {
            return {};
        }
        m_services.settings.Delete_Section(stored);
    }
    m_values.Virtual_Airline = stored_default_airline;
    m_services.settings.Set("Virtual Airline", "Current", stored_default_airline);
    return fault;
}

void clsAppSettings::Report_Airline(const std::string& fault) {
    if (fault.empty())
        return;
    Log_Error(m_services, "clsAppSettings.Get_Settings()",
              {error_number::invalid_call, fault,
               "The airline that was set cannot be flown for: the default airline is set instead, "
               "and reports go to it.  Please give the airline's directory another name, then "
               "choose it in \"Settings\"."},
              Show::box);
}

void clsAppSettings::Get_VA_Settings() {
    const bool done = Guarded(m_services, "clsAppSettings.Get_VA_Settings()", Show::box,
                              [&] { Load(Setting_Step::airline); });
    m_step_failed = m_step_failed || !done;
}

std::filesystem::path clsAppSettings::Opt_Fields_File() const {
    return Find_Path(m_services, m_services.program_directory, "bin\\optfields.cfg");
}

void clsAppSettings::Get_Opt_Fields() {
    const bool done = Guarded(m_services, "clsAppSettings.Get_Opt_Fields()", Show::silent, [&] {
        m_optional_fields_read = false;
        const auto file = Opt_Fields_File();
        if (std::filesystem::exists(file)) {
            const std::string content = Read_File(file);
            std::size_t next = 0;
            for (Line_Reader reader(content); next < m_optional_fields.size() && reader.Next();) {
                if (!Trimmed_View(reader.Line()).empty())
                    m_optional_fields[next++] = reader.Line();
            }
        }
        m_optional_fields_read = true;
    });
    m_step_failed = m_step_failed || !done;
}

void clsAppSettings::Save_Opt_Fields() {
    const bool done = Guarded(m_services, "clsAppSettings.Save_Opt_Fields()", Show::silent, [&] {
        const auto file = Opt_Fields_File();
        const bool exists = std::filesystem::exists(file);
        const bool all_empty = std::all_of(m_optional_fields.begin(), m_optional_fields.end(),
                                           [](const auto& field) { return field.empty(); });
        if (!m_optional_fields_read && exists) {
            // Nobody has seen what stands there, so it is no choice of the pilot's to drop it.
            if (all_empty)
                return;
            auto copy = file;
            Copy_File(file, copy += ".bak");
        }
        if (!all_empty) {
            std::filesystem::create_directories(file.parent_path());
            std::string content;
            for (const auto& field : m_optional_fields)
                content.append(field).append(cr_lf);
            Write_File_Atomically(file, content);
        } else if (exists) {
            std::filesystem::remove(file);
        }
        m_optional_fields_read = true;
    });
    m_step_failed = m_step_failed || !done;
}

}  // namespace norvane
