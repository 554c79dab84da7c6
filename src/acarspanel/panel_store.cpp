#include "acarspanel/panel_store.h"

#include <array>
#include <filesystem>
#include <string_view>

#include "acars/cls_acars.h"
#include "acarspanel/flight_stage.h"
#include "acarspanel/network_plan.h"
#include "acarspanel/panel_fields.h"
#include "acarspanel/simbrief_fields.h"
#include "acarspanel/step_queue.h"
#include "acarspanel/weather_desk.h"
#include "common/code_page.h"
#include "common/date_time.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "config/cls_app_settings.h"
#include "flightlog/log_columns.h"
#include "flightlog/log_line.h"
#include "logentry/cls_log_entry.h"

namespace norvane {

namespace {

/// How soon what changes outside of steps is stored, and how soon a store that failed is tried
/// again.
constexpr std::chrono::seconds store_delay(5);

constexpr std::string_view logging_key = "Logging";
/// The online network's plan was applied to the stored flight.
constexpr std::string_view network_plan_key = "Network Plan";
constexpr std::string_view applied = "1";
/// The network's call sign: the simulator's would take its place.
constexpr std::string_view call_sign_key = "ATC Flight";
constexpr std::string_view engine_destination_key = "Engine Destination";
constexpr std::string_view planned_key = "Planned";
/// By end: the stored weather was fetched, not typed, and gives way to a newer report.
constexpr std::array<std::string_view, 2> fetched_keys{"Fetched WX Origin",
                                                       "Fetched WX Destination"};
constexpr std::string_view fetched = "1";
/// The row by which the stored flight was logged before its gate.
constexpr std::string_view logged_row_key = "Logged Row";

/// What the panel shows of a flight and no row holds.
struct Shown_Figure {
    std::string_view key;
    Label ACARS_Form::*label;
};
constexpr auto shown_figures = std::to_array<Shown_Figure>({
    {"Max Taxi Speed Origin", &ACARS_Form::lblMaxTaxiOrigin},
    {"Max Taxi Speed Destination", &ACARS_Form::lblMaxTaxiDestination},
});

}  // namespace

Panel_Store::Panel_Store(const Panel_Parts& parts, const Stored& stored, const Step_Queue& steps)
    : m_parts(parts),
      m_form(stored.form),
      m_stage(stored.stage),
      m_weather(stored.weather),
      m_plan(stored.plan),
      m_steps(steps),
      m_timer(parts.services.desktop.Timers(), store_delay) {
    m_timer.tick.Connect(*this, &Panel_Store::Tick);
}

void Panel_Store::Note_Row_To_Be_Logged(const std::string& row) {
    Guarded(m_parts.services, "ucACARS.Persist()", Show::silent,
            [&] { m_parts.services.settings.Set(flight_section, logging_key, row); });
}

bool Panel_Store::Stands_In_Log(const std::string& row) {
    bool found = false;
    Guarded(m_parts.services, "ucACARS.Restore()", Show::silent, [&] {
        const std::filesystem::path log = m_parts.settings.FlightLog_Path();
        if (!std::filesystem::exists(log))
            return;
        const std::string content = Read_File(log);
        const auto date = Field_Of(row, log_column::date);
        for (Line_Reader reader(content); !found && reader.Next();)
            found = Same_Flight(reader.Line(), row) &&
                    Field_Of(reader.Line(), log_column::date) == date;
    });
    return found;
}

std::string Panel_Store::Row() {
    Create_Log_Entry();
    return Log_Line(m_parts.log_entry);
}

void Panel_Store::Create_Log_Entry() {
    const Services& services = m_parts.services;
    Guarded(m_parts.services, "ucACARS.Create_Log_Entry()", Show::box, [&] {
        clsLogEntry& entry = m_parts.log_entry;
        const Date_Time now = services.clock.Local_Now();
        entry.Set(Log_Field::PIREP_FILE_NAME, From_Path(services.program_directory / "reports" /
                                                        (Format_File_Stamp(now) + "_PIREP.txt")));
        entry.Set(Log_Field::PILOT_ID, m_parts.settings.PilotID());
        entry.Set(Log_Field::PILOT_NAME, m_parts.settings.PilotName());
        entry.Set(Log_Field::PILOT_EMAIL, m_parts.settings.PilotEmail());
        for (const Panel_Field& row : Panel_Fields()) {
            if (!row.field)
                continue;
            const Label* label = row.Find_Label(m_form);
            entry.Set(*row.field, label != nullptr ? label->Text() : row.Find_Box(m_form)->Text());
        }
        // A flight without a date could be neither logged nor restored.
        if (entry.Get(Log_Field::FLIGHT_DATE).empty() && m_steps.Engine() != nullptr)
            entry.Set(Log_Field::FLIGHT_DATE, m_steps.Engine()->Flight_Date());
        if (entry.Get(Log_Field::FLIGHT_DATE).empty())
            entry.Set(Log_Field::FLIGHT_DATE, Format_Date(now.date, services.regional.short_date));
        entry.Set(Log_Field::IFR_VFR, m_form.chkIFR.Checked() ? "IFR" : "VFR");
        for (std::size_t i = 0; i < m_form.optFields.size(); ++i)
            entry.Set_OPTIONAL_FIELDS(i, m_form.optFields[i].Value());
        for (std::size_t i = 0; i < m_form.vaFields.size(); ++i)
            entry.Set_VA_FIELDS(i, m_form.vaFields[i].Value());
    });
}

bool Panel_Store::Has_Flight_To_Keep() const {
    return !m_form.lblTimeOff.Text().empty() && m_stage.Is_To_Be_Kept();
}

bool Panel_Store::Persist() {
    bool stored = true;
    const bool done = Guarded(m_parts.services, "ucACARS.Persist()", Show::box, [&] {
        if (!Has_Flight_To_Keep()) {
            Delete_Stored_Flight(m_parts.services);
            return;
        }
        m_changed = true;
        Create_Log_Entry();
        Settings_Batch batch(m_parts.services.settings);
        Store_Panel();
        // Between steps the engine's part may be missing: it is lost with a step's transaction.
        if (m_stage.Is_Active() && !m_steps.Is_Stepping())
            m_steps.Engine()->Store();
        stored = m_parts.log_entry.Persist();
        batch.Commit();
        m_changed = !stored;
    });
    return done && stored;
}

void Panel_Store::Persist_What_Changed() {
    if ((m_changed || !m_steps.Engine()->Was_Stored()) && Has_Flight_To_Keep())
        Persist();
}

void Panel_Store::Store_Panel() {
    Settings_Store& store = m_parts.services.settings;
    if (m_plan.Is_Applied()) {
        store.Set(flight_section, network_plan_key, applied);
        store.Set(flight_section, call_sign_key, m_form.lblATCFlight.Text());
    }
    store.Set(flight_section, engine_destination_key, facts.engine_destination);
    if (!facts.planned.empty())
        store.Set(flight_section, planned_key, facts.planned);
    for (std::size_t end = 0; end < flight_end::count; ++end)
        store.Set(flight_section, fetched_keys.at(end),
                  m_weather.Shows_Fetched(end) ? fetched : "");
    for (const Shown_Figure& figure : shown_figures)
        store.Set(flight_section, figure.key, (m_form.*figure.label).Text());
    store.Set(flight_section, logged_row_key, facts.row_in_log);
    // A row that is noted there is an earlier flight's.
    if (!m_stage.Is_Finished() && m_form.lblTimeIn.Text().empty())
        store.Set(flight_section, logging_key, {});
}

void Panel_Store::Tick() {
    if (m_steps.Is_Stepping())
        return;
    m_timer.Set_Enabled(m_changed && Has_Flight_To_Keep() && !Persist());
}

void Panel_Store::Restore() {
    Guarded(m_parts.services, "ucACARS.Restore()", Show::box, [&] {
        const clsLogEntry& entry = m_parts.log_entry;
        const std::string row = m_parts.services.settings.Get(flight_section, logging_key);
        m_save_failed = !row.empty();
        if (m_save_failed && Stands_In_Log(row)) {
            Delete_Stored_Flight(m_parts.services);
            return;
        }
        // The store may have failed at the gate and taken the row later.
        if (m_save_failed && entry.Get(Log_Field::TIME_IN).empty())
            Take_Row(row);
        if (entry.Get(Log_Field::FLIGHT_DATE).empty())
            return;
        Restore_Panel();
        m_stage.Enter(m_form.lblTimeIn.Text().empty() ? Stage::stored : Stage::unlogged);
        if (m_stage.Is_Finished())
            m_form.Keep_Old_Values();
        m_changed = false;
        m_timer.Set_Enabled(false);
    });
}

void Panel_Store::Restore_Panel() {
    const clsLogEntry& entry = m_parts.log_entry;
    Settings_Store& store = m_parts.services.settings;
    for (const Panel_Field& row : Panel_Fields()) {
        if (!row.field)
            continue;
        if (Label* label = row.Find_Label(m_form))
            label->Set_Text(entry.Get(*row.field));
        else
            row.Find_Box(m_form)->Set_Text(entry.Get(*row.field));
    }
    for (const Shown_Figure& figure : shown_figures)
        (m_form.*figure.label).Set_Text(store.Get(flight_section, figure.key));
    facts.row_in_log = store.Get(flight_section, logged_row_key);
    m_plan.Set_Applied(store.Get(flight_section, network_plan_key) == applied);
    facts.engine_destination = store.Get(flight_section, engine_destination_key);
    const Planned_Flight planned = Parse_Planned(store.Get(flight_section, planned_key));
    facts.planned = Planned_Text(planned);
    Show_Planned(planned, m_parts.settings, m_form);
    m_form.lblATCFlight.Set_Text(store.Get(flight_section, call_sign_key));
    m_form.lblATCFlight.Set_Visible(!m_form.lblATCFlight.Text().empty());
    for (std::size_t end = 0; end < flight_end::count; ++end) {
        if (store.Get(flight_section, fetched_keys.at(end)) == fetched)
            m_weather.Take_As_Fetched(end);
    }
    m_form.Set_Rules(entry.Get(Log_Field::IFR_VFR) == "IFR");
    for (std::size_t i = 0; i < m_form.optFields.size(); ++i)
        m_form.optFields[i].Restore(entry.OPTIONAL_FIELDS(i));
    for (std::size_t i = 0; i < m_form.vaFields.size(); ++i)
        m_form.vaFields[i].Restore(entry.VA_FIELDS(i));
}

/// The entry of a row of the log.
void Panel_Store::Take_Row(const std::string& row) {
    clsLogEntry& entry = m_parts.log_entry;
    const auto columns = All_Log_Columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const Log_Column& column = columns[i];
        if (column.source == Column_Source::field)
            entry.Set(column.field, Field_Of(row, i));
        else if (column.source == Column_Source::optional)
            entry.Set_OPTIONAL_FIELDS(column.slot, Field_Of(row, i));
        else
            entry.Set_VA_FIELDS(column.slot, Field_Of(row, i));
    }
}

}  // namespace norvane
