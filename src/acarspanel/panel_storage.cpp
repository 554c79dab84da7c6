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

}  // namespace

/// The log and the store cannot be written in one stroke. A program that ends between the two knows
/// by this row, when it starts again, that the stored flight is in the log already.
void ucACARS::Note_Row_To_Be_Logged() {
    Guarded(m_services, "ucACARS.Persist()", Show::silent, [&] {
        m_services.settings.Set(flight_section, logging_key, Log_Line(m_objNewLogEntry));
    });
}

bool ucACARS::Stored_Flight_Is_Logged() {
    bool found = false;
    Guarded(m_services, "ucACARS.Restore()", Show::silent, [&] {
        const std::string row = m_services.settings.Get(flight_section, logging_key);
        const std::filesystem::path log = m_settings.FlightLog_Path();
        if (row.empty() || !std::filesystem::exists(log))
            return;
        const std::string content = Read_File(log);
        for (Line_Reader reader(content); !found && reader.Next();)
            found = reader.Line() == row;
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

bool ucACARS::Airborne() const {
    return !lblTimeOff.Text().empty() && lblTimeIn.Text().empty();
}

bool ucACARS::Airborne_By_Engine() const {
    return !m_objACARS->TIME_OFF().empty() && m_objACARS->TIME_ON().empty();
}

/// Stores a flight between take-off and the gate. One that has reached the gate stays stored, as it
/// was before, until it is logged or given up; any other has nothing worth storing.
void ucACARS::Persist() {
    Guarded(m_services, "ucACARS.Persist()", Show::box, [&] {
        const bool at_gate = !lblTimeIn.Text().empty();
        const bool settled = m_finish == Finish::logged || m_finish == Finish::given_up;
        if (Airborne()) {
            m_changed = true;
            Create_Log_Entry();
            Settings_Batch batch(m_services.settings);
            if (m_network_plan) {
                m_services.settings.Set(flight_section, network_plan_key, applied);
                m_services.settings.Set(flight_section, call_sign_key, lblATCFlight.Text());
            }
            m_services.settings.Set(flight_section, engine_destination_key, m_engine_destination);
            for (std::size_t end = 0; end < m_ends.size(); ++end) {
                const End& at = m_ends.at(end);
                const bool is_fetched = !at.weather.Is_Empty() && at.weather.Text() == at.fetched;
                m_services.settings.Set(flight_section, fetched_keys.at(end),
                                        is_fetched ? fetched : "");
            }
            const bool stored = m_objNewLogEntry.Persist();
            batch.Commit();
            m_changed = !stored;
        } else if (!at_gate || settled) {
            Delete_Stored_Flight(m_services);
        }
    });
}

void ucACARS::Restore() {
    Guarded(m_services, "ucACARS.Restore()", Show::box, [&] {
        const clsLogEntry& entry = m_objNewLogEntry;
        m_resume = !entry.Get(Log_Field::FLIGHT_DATE).empty();
        if (m_resume && Stored_Flight_Is_Logged()) {
            Delete_Stored_Flight(m_services);
            m_resume = false;
        }
        if (!m_resume)
            return;
        for (const Panel_Field& row : Panel_Fields()) {
            if (!row.field)
                continue;
            if (Label* label = row.Find_Label(*this))
                label->Set_Text(entry.Get(*row.field));
            else
                row.Find_Box(*this)->Set_Text(entry.Get(*row.field));
        }
        m_network_plan = m_services.settings.Get(flight_section, network_plan_key) == applied;
        m_engine_destination = m_services.settings.Get(flight_section, engine_destination_key);
        lblATCFlight.Set_Text(m_services.settings.Get(flight_section, call_sign_key));
        lblATCFlight.Set_Visible(!lblATCFlight.Text().empty());
        for (std::size_t end = 0; end < m_ends.size(); ++end) {
            End& at = m_ends.at(end);
            if (m_services.settings.Get(flight_section, fetched_keys.at(end)) == fetched)
                at.fetched = at.weather.Text();
        }
        chkIFR.Set_Checked(entry.Get(Log_Field::IFR_VFR) == "IFR");
        chkVFR.Set_Checked(!chkIFR.Checked());
        for (std::size_t i = 0; i < optFields.size(); ++i)
            optFields[i].Restore(entry.OPTIONAL_FIELDS(i));
        for (std::size_t i = 0; i < vaFields.size(); ++i)
            vaFields[i].Restore(entry.VA_FIELDS(i));
    });
}

}  // namespace norvane
