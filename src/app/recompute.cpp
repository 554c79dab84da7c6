#include "app/recompute.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <memory>
#include <optional>

#include "acars/cls_acars.h"
#include "acars/cls_utc.h"
#include "acarspanel/panel_fields.h"
#include "acarspanel/uc_acars.h"
#include "app/still_desktop.h"
#include "blackbox/recording_head.h"
#include "common/number.h"
#include "common/text.h"
#include "config/airline_list.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "config/memory_store.h"
#include "config/setting_codes.h"
#include "config/setting_table.h"
#include "deliveries/outbox.h"
#include "flightlog/log_columns.h"
#include "logentry/cls_log_entry.h"
#include "logentry/frm_response.h"
#include "simlink/in_process_transport.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/offset_area.h"

namespace norvane {

namespace {

/// From one step to the next, where a recording does not say which moments were steps.
constexpr double step_seconds = 0.5;

/// Of a simulator that runs something changes every minute: its clock. For longer it did not run.
constexpr double longest_still_s = 3600;

std::optional<std::uint32_t> Parse_Hex(std::string_view digits) {
    std::uint32_t value = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, failure] = std::from_chars(digits.data(), end, value, 16);
    return failure == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

/// What the simulator's clock shows, where nothing tells of the computer's.
Date_Time Simulator_Time(const Offset_Area& area) {
    const auto whole = [&](Variable variable) { return static_cast<int>(area.Get(variable)); };
    const Date new_year{std::max(whole(Variable::year), 1), 1, 1};
    return {
        Date_Of_Day_Number(Day_Number(new_year) + std::max(whole(Variable::day_of_year), 1) - 1),
        {whole(Variable::utc_hour), whole(Variable::utc_minute), 0}};
}

/// A second read of a variable within a step, which found another value.
std::optional<Recorded_Change> Read_Again(const std::string& remark) {
    constexpr std::string_view key = "again ";
    constexpr std::size_t offset_digits = 4;
    if (!remark.starts_with(key) || remark.size() < key.size() + offset_digits + 1)
        return std::nullopt;
    const std::string_view text = std::string_view(remark).substr(key.size());
    const auto offset = Parse_Hex(text.substr(0, offset_digits));
    if (!offset)
        return std::nullopt;
    Recorded_Change change{*offset, {}};
    for (std::size_t i = offset_digits + 1; i + 1 < text.size(); i += 2)
        change.bytes.push_back(static_cast<std::byte>(Parse_Hex(text.substr(i, 2)).value_or(0)));
    return change;
}

/// The program from the engine to the log entry, from one of its starts to the next.
struct Program_Run {
    Program_Run(Services& services, Transport& transport, const std::string& airline_name)
        : settings(services),
          airline(services),
          entry(services),
          utc(services.clock),
          link(transport, services.clock),
          engine({services, link, settings, airline, utc}),
          response(services),
          outbox(services, {}, [] { return 0.0; }),
          panel({services, settings, airline, entry, response, outbox,
                 Given_Up_When([] { return true; }, {})}) {
        airline.Get_VA_Settings(airline_name);
        panel.UCI();
        panel.Set_ACARS(engine);
    }

    clsAppSettings settings;
    clsVASettings airline;
    clsLogEntry entry;
    clsUTC utc;
    modFSUIPC link;
    clsACARS engine;
    frmResponse response;
    /// Never begun, and given nothing: no PIREP is made.
    Outbox outbox;
    ucACARS panel;
};

class Recomputation {
  public:
    Recomputation(const Services& outside, const std::vector<Recorded_Moment>& moments,
                  const Setting_Changes& changes);

    /// Texts for boxes that the pilot filled, by the field that they feed.
    Recomputed Fly(const std::map<Log_Field, std::string>& typed);

  private:
    void Take_Settings(const Setting_Changes& changes);
    void Find_Undone_Steps();
    void Begin_Run();
    void Apply(const Recorded_Moment& moment);
    void Set_Clock(const Recorded_Moment& moment);
    void Fly_Moment(const Recorded_Moment& moment, bool is_undone);
    void Fly_Without_Remarks();
    void Switch_On();
    void Step();

    const std::vector<Recorded_Moment>& m_moments;
    std::map<Log_Field, std::string> m_typed;
    Still_Clock m_clock;
    Still_Desktop m_desktop{m_clock};
    Memory_Store m_store;
    Listed_Errors m_errors;
    Services m_services;
    std::string m_airline;
    Offset_Area m_area;
    In_Process_Transport m_transport{m_area};
    std::multimap<std::uint32_t, Recorded_Change> m_again;
    std::map<std::uint32_t, int> m_reads;
    /// By moment: the program was ended before it had stored this step.
    std::vector<bool> m_undone;
    std::unique_ptr<Program_Run> m_run;
    std::string m_row;
};

Recomputation::Recomputation(const Services& outside, const std::vector<Recorded_Moment>& moments,
                             const Setting_Changes& changes)
    : m_moments(moments),
      m_services{m_desktop,
                 m_store,
                 m_clock,
                 m_errors,
                 outside.regional,
                 outside.program_directory,
                 outside.path_mappings} {
    const std::vector<std::string>& head = moments.front().remarks;
    const std::string pattern = Remark_Value(head, "date pattern");
    if (!pattern.empty())
        m_services.regional.short_date = pattern;
    m_airline = Remark_Value(head, "airline");
    if (m_airline.empty())
        m_airline = stored_default_airline;
    Take_Settings(changes);
    Find_Undone_Steps();
    m_area.on_read = [this](std::uint32_t offset, std::uint32_t) {
        if (++m_reads[offset] < 2)
            return;
        const auto next = m_again.find(offset);
        if (next == m_again.end())
            return;
        Apply({0, {next->second}});
        m_again.erase(next);
    };
}

void Recomputation::Take_Settings(const Setting_Changes& changes) {
    clsAppSettings settings(m_services);
    const auto set = [&](const std::string& name, const std::string& value) {
        Set_Setting_Text(settings, name, value);
    };
    constexpr std::string_view key = "setting: ";
    for (const std::string& remark : m_moments.front().remarks) {
        const auto equals = remark.find('=');
        if (remark.starts_with(key) && equals != std::string::npos)
            set(remark.substr(key.size(), equals - key.size()), remark.substr(equals + 1));
    }
    for (const auto& [name, value] : changes)
        set(name, value);
    // The row is wanted as soon as there is one, and nothing of the web.
    set("OPT_AutoLog", "True");
    set("OPT_PIREP", "False");
    set("OPT_ACARS_To_FS", "False");
    if (Weather_Source_Of(settings.WX_URL()) != Weather_Source::simulator)
        set("WX_URL", std::string(Name_Of(Weather_Source::none)));
    settings.Save_Settings();
}

/// Steps that an ended program made and did not store: the flight went on from before them.
void Recomputation::Find_Undone_Steps() {
    m_undone.assign(m_moments.size(), false);
    for (std::size_t i = 0; i < m_moments.size(); ++i) {
        const auto stored = Parse_Number(Remark_Value(m_moments[i].remarks, "taken up"));
        for (std::size_t before = i; stored && before > 0; --before) {
            if (m_moments[before - 1].seconds <= *stored)
                break;
            m_undone[before - 1] = true;
        }
    }
}

void Recomputation::Begin_Run() {
    m_run.reset();
    m_transport.Close();
    m_run = std::make_unique<Program_Run>(m_services, m_transport, m_airline);
    clsLogEntry& entry = m_run->entry;
    entry.NewLogEntrySave.Connect([this, &entry] {
        m_row = Log_Line(entry);
        entry.New_Log_Entry_Save_Result(true);
    });
}

void Recomputation::Apply(const Recorded_Moment& moment) {
    for (const Recorded_Change& change : moment.changes) {
        const auto bytes = m_area.Bytes(change.offset, change.bytes.size());
        std::ranges::copy(change.bytes, bytes.begin());
    }
}

void Recomputation::Set_Clock(const Recorded_Moment& moment) {
    m_clock.Pass_To(moment.seconds);
    if (const auto told = Parse_Clock(Remark_Value(moment.remarks, "clock")))
        m_clock.Set(told->utc, told->local);
}

void Recomputation::Fly_Moment(const Recorded_Moment& moment, bool is_undone) {
    const auto has = [&](std::string_view remark) {
        return std::ranges::find(moment.remarks, remark) != moment.remarks.end();
    };
    Apply(moment);
    const bool is_end = !Remark_Value(moment.remarks, "ended").empty() ||
                        !Remark_Value(moment.remarks, "logged").empty();
    if (is_undone || is_end || has("fast"))
        return;
    Set_Clock(moment);
    m_reads.clear();
    m_again.clear();
    for (const std::string& remark : moment.remarks) {
        if (const auto again = Read_Again(remark))
            m_again.emplace(again->offset, *again);
    }
    if (has("start")) {
        Begin_Run();
        Switch_On();
    } else if (!Remark_Value(moment.remarks, "taken up").empty()) {
        Begin_Run();
        m_run->panel.hypOn.Click();
    } else if (m_run) {
        Step();
    }
}

/// A recording of a simulator alone: tracking begins with it, and steps come as they do.
void Recomputation::Fly_Without_Remarks() {
    Apply(m_moments.front());
    const Date_Time began = Simulator_Time(m_area);
    m_clock.Set(began, began);
    Begin_Run();
    Switch_On();
    std::size_t next = 1;
    for (double seconds = step_seconds; next < m_moments.size(); seconds += step_seconds) {
        if (m_moments[next].seconds - seconds > longest_still_s)
            seconds = m_moments[next].seconds;
        while (next < m_moments.size() && m_moments[next].seconds <= seconds)
            Apply(m_moments[next++]);
        m_clock.Pass_To(seconds);
        Step();
    }
}

void Recomputation::Switch_On() {
    for (const Panel_Field& field : Panel_Fields()) {
        Text_Box* box = field.Find_Box(m_run->panel);
        const auto typed = field.field ? m_typed.find(*field.field) : m_typed.end();
        if (box != nullptr && typed != m_typed.end()) {
            box->Enter(typed->second);
            box->Leave();
        }
    }
    m_run->panel.hypOn.Click();
}

void Recomputation::Step() {
    if (m_run->panel.tmr.Enabled())
        m_run->panel.tmr.tick.Emit();
}

Recomputed Recomputation::Fly(const std::map<Log_Field, std::string>& typed) {
    m_typed = typed;
    const bool has_remarks = std::ranges::any_of(m_moments, [](const Recorded_Moment& moment) {
        return std::ranges::find(moment.remarks, "start") != moment.remarks.end();
    });
    if (!has_remarks)
        Fly_Without_Remarks();
    for (std::size_t i = 0; has_remarks && i < m_moments.size(); ++i)
        Fly_Moment(m_moments[i], m_undone[i]);
    m_run.reset();
    return {m_row, m_errors.Entries()};
}

/// The panel's field that a column of the log shows; null for what does not come out of a flight.
const Panel_Field* Panel_Field_Of(const Log_Column& column) {
    const auto fields = Panel_Fields();
    const auto found = std::ranges::find_if(fields, [&](const Panel_Field& field) {
        return column.source == Column_Source::field && field.field == column.field;
    });
    return found == fields.end() ? nullptr : &*found;
}

}  // namespace

std::vector<Row_Difference> Differences(const std::string& logged_row,
                                        const std::string& computed_row) {
    const auto logged = Split(logged_row, '|');
    const auto computed = Split(computed_row, '|');
    const auto columns = All_Log_Columns();
    std::vector<Row_Difference> differences;
    for (std::size_t i = 0; i < columns.size() && i < logged.size() && i < computed.size(); ++i) {
        if (logged[i] != computed[i] && Panel_Field_Of(columns[i]) != nullptr)
            differences.push_back({i, std::string(columns[i].caption), logged[i], computed[i]});
    }
    return differences;
}

Recomputed Recompute(const Services& outside, const std::vector<Recorded_Moment>& moments,
                     const std::string& logged_row, const Setting_Changes& changes) {
    if (logged_row.empty())
        return Recomputation(outside, moments, changes).Fly({});
    // What another text than the flight's own stands in was written by the pilot, or came from a
    // plan: the flight is computed with it.
    const Recomputed as_then = Recomputation(outside, moments, {}).Fly({});
    std::map<Log_Field, std::string> typed;
    ACARS_Form form;
    for (const Row_Difference& difference : Differences(logged_row, as_then.row)) {
        const Panel_Field& field = *Panel_Field_Of(All_Log_Columns()[difference.column]);
        if (field.Find_Box(form) != nullptr && !difference.logged.empty())
            typed[*field.field] = difference.logged;
    }
    return Recomputation(outside, moments, changes).Fly(typed);
}

}  // namespace norvane
