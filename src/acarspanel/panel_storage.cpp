// What the panel shows as a log entry, and the flight in progress to the settings store and back.

#include "acarspanel/uc_acars.h"

#include <array>
#include <filesystem>
#include <string>
#include <string_view>

#include "acars/cls_acars.h"
#include "acarspanel/panel_fields.h"
#include "common/code_page.h"
#include "common/date_time.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "flightlog/log_columns.h"
#include "flightlog/log_line.h"
#include "logentry/cls_log_entry.h"

namespace norvane {

namespace {

constexpr std::string_view logging_key = "Logging";
/// The online network's plan was applied to the stored flight.
constexpr std::string_view network_plan_key = "Network Plan";
constexpr std::string_view applied = "1";
/// The network's call sign: the simulator's would take its place.
constexpr std::string_view call_sign_key = "ATC Flight";
constexpr std::string_view engine_destination_key = "Engine Destination";
/// By end: the stored weather was fetched, not typed, and gives way to a newer report.
constexpr std::array<std::string_view, 2> fetched_keys{"Fetched WX Origin",
                                                       "Fetched WX Destination"};
constexpr std::string_view fetched = "1";
/// The row by which the stored flight was logged before its gate.
constexpr std::string_view logged_row_key = "Logged Row";

/// What the panel shows of a flight and no row holds.
struct Shown_Figure {
    std::string_view key;
    Label ucACARS::*label;
};
constexpr auto shown_figures = std::to_array<Shown_Figure>({
    {"Max Taxi Speed Origin", &ucACARS::lblMaxTaxiOrigin},
    {"Max Taxi Speed Destination", &ucACARS::lblMaxTaxiDestination},
});

}  // namespace

/// The log and the store cannot be written in one stroke. A program that ends between the two knows
/// by this row, when it starts again, that the stored flight is in the log already; and where the
/// log could not be written, what was to be added to it.
void ucACARS::Note_Row_To_Be_Logged(const std::string& row) {
    Guarded(m_services, "ucACARS.Persist()", Show::silent,
            [&] { m_services.settings.Set(flight_section, logging_key, row); });
}

/// The active log has the flight, as it was handed over or with what the pilot wrote into it since.
bool ucACARS::Stands_In_Log(const std::string& row) {
    bool found = false;
    Guarded(m_services, "ucACARS.Restore()", Show::silent, [&] {
        const std::filesystem::path log = m_settings.FlightLog_Path();
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

void ucACARS::Create_Log_Entry() {
    Guarded(m_services, "ucACARS.Create_Log_Entry()", Show::box, [&] {
        clsLogEntry& entry = m_objNewLogEntry;
        const Date_Time now = m_services.clock.Local_Now();
        entry.Set(Log_Field::PIREP_FILE_NAME, From_Path(m_services.program_directory / "reports" /
                                                        (Format_File_Stamp(now) + "_PIREP.txt")));
        entry.Set(Log_Field::PILOT_ID, m_settings.PilotID());
        entry.Set(Log_Field::PILOT_NAME, m_settings.PilotName());
        entry.Set(Log_Field::PILOT_EMAIL, m_settings.PilotEmail());
        for (const Panel_Field& row : Panel_Fields()) {
            if (!row.field)
                continue;
            const Label* label = row.Find_Label(*this);
            entry.Set(*row.field, label != nullptr ? label->Text() : row.Find_Box(*this)->Text());
        }
        // A flight without a date could be neither logged nor restored.
        if (entry.Get(Log_Field::FLIGHT_DATE).empty() && m_objACARS != nullptr)
            entry.Set(Log_Field::FLIGHT_DATE, m_objACARS->Flight_Date());
        if (entry.Get(Log_Field::FLIGHT_DATE).empty())
            entry.Set(Log_Field::FLIGHT_DATE,
                      Format_Date(now.date, m_services.regional.short_date));
        entry.Set(Log_Field::IFR_VFR, chkIFR.Checked() ? "IFR" : "VFR");
        for (std::size_t i = 0; i < optFields.size(); ++i)
            entry.Set_OPTIONAL_FIELDS(i, optFields[i].Value());
        for (std::size_t i = 0; i < vaFields.size(); ++i)
            entry.Set_VA_FIELDS(i, vaFields[i].Value());
    });
}

bool ucACARS::Airborne_By_Engine() const {
    return !m_objACARS->TIME_OFF().empty() && m_objACARS->TIME_ON().empty();
}

/// A flight is worth storing from take-off on, until it is in the log or given up.
bool ucACARS::Has_Flight_To_Keep() const {
    return !lblTimeOff.Text().empty() && (m_finish == Finish::none || m_finish == Finish::unlogged);
}

/// Stores the flight, or deletes what the store holds of one that is over. False when that failed,
/// which is reported.
bool ucACARS::Persist() {
    bool stored = true;
    const bool done = Guarded(m_services, "ucACARS.Persist()", Show::box, [&] {
        if (!Has_Flight_To_Keep()) {
            Delete_Stored_Flight(m_services);
            return;
        }
        m_changed = true;
        Create_Log_Entry();
        Settings_Batch batch(m_services.settings);
        Store_Panel();
        // Between steps the engine's part may be missing: it is lost with a step's transaction.
        if (m_active && !m_objACARS->Is_Stepping())
            m_objACARS->Store();
        stored = m_objNewLogEntry.Persist();
        batch.Commit();
        m_changed = !stored;
    });
    return done && stored;
}

void ucACARS::Store_Panel() {
    Settings_Store& store = m_services.settings;
    if (m_network_plan) {
        store.Set(flight_section, network_plan_key, applied);
        store.Set(flight_section, call_sign_key, lblATCFlight.Text());
    }
    store.Set(flight_section, engine_destination_key, m_engine_destination);
    for (std::size_t end = 0; end < m_ends.size(); ++end) {
        const End& at = m_ends.at(end);
        const bool is_fetched = !at.weather.Is_Empty() && at.weather.Text() == at.fetched;
        store.Set(flight_section, fetched_keys.at(end), is_fetched ? fetched : "");
    }
    for (const Shown_Figure& figure : shown_figures)
        store.Set(flight_section, figure.key, (this->*figure.label).Text());
    store.Set(flight_section, logged_row_key, m_row_in_log);
    // A row that is noted there is an earlier flight's.
    if (m_finish == Finish::none && lblTimeIn.Text().empty())
        store.Set(flight_section, logging_key, {});
}

void ucACARS::Store_Tick() {
    if (m_objACARS != nullptr && m_objACARS->Is_Stepping())
        return;
    m_store_timer.Set_Enabled(m_changed && Has_Flight_To_Keep() && !Persist());
}

/// Puts the stored flight back onto the panel: one in the air waits for "On", a finished one for
/// the log.
void ucACARS::Restore() {
    Guarded(m_services, "ucACARS.Restore()", Show::box, [&] {
        const std::string row = m_services.settings.Get(flight_section, logging_key);
        m_save_failed = !row.empty();
        if (m_save_failed && Stands_In_Log(row)) {
            Delete_Stored_Flight(m_services);
            return;
        }
        // The store may have failed at the gate and taken the row later.
        if (m_save_failed && m_objNewLogEntry.Get(Log_Field::TIME_IN).empty())
            Take_Row(row);
        if (m_objNewLogEntry.Get(Log_Field::FLIGHT_DATE).empty())
            return;
        Restore_Panel();
        m_resume = lblTimeIn.Text().empty();
        if (!m_resume) {
            m_finish = Finish::unlogged;
            Keep_Old_Values();
        }
        m_changed = false;
        m_store_timer.Set_Enabled(false);
    });
}

void ucACARS::Restore_Panel() {
    const clsLogEntry& entry = m_objNewLogEntry;
    Settings_Store& store = m_services.settings;
    for (const Panel_Field& row : Panel_Fields()) {
        if (!row.field)
            continue;
        if (Label* label = row.Find_Label(*this))
            label->Set_Text(entry.Get(*row.field));
        else
            row.Find_Box(*this)->Set_Text(entry.Get(*row.field));
    }
    for (const Shown_Figure& figure : shown_figures)
        (this->*figure.label).Set_Text(store.Get(flight_section, figure.key));
    m_row_in_log = store.Get(flight_section, logged_row_key);
    m_network_plan = store.Get(flight_section, network_plan_key) == applied;
    m_engine_destination = store.Get(flight_section, engine_destination_key);
    lblATCFlight.Set_Text(store.Get(flight_section, call_sign_key));
    lblATCFlight.Set_Visible(!lblATCFlight.Text().empty());
    for (std::size_t end = 0; end < m_ends.size(); ++end) {
        End& at = m_ends.at(end);
        if (store.Get(flight_section, fetched_keys.at(end)) == fetched)
            at.fetched = at.weather.Text();
    }
    chkIFR.Set_Checked(entry.Get(Log_Field::IFR_VFR) == "IFR");
    chkVFR.Set_Checked(!chkIFR.Checked());
    for (std::size_t i = 0; i < optFields.size(); ++i)
        optFields[i].Restore(entry.OPTIONAL_FIELDS(i));
    for (std::size_t i = 0; i < vaFields.size(); ++i)
        vaFields[i].Restore(entry.VA_FIELDS(i));
}

/// The entry of a row of the log.
void ucACARS::Take_Row(const std::string& row) {
    clsLogEntry& entry = m_objNewLogEntry;
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
