#include "blackbox/flight_notes.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "common/number.h"
#include "common/text.h"

namespace norvane {

namespace {

constexpr std::string_view start_note = "start";
constexpr std::string_view pause_note = "paused";
constexpr std::string_view resume_note = "resumed";
constexpr std::string_view fly_on_note = "touch-and-go";

/// Notes that are a text of the summary.
struct Text_Row {
    std::string_view key;
    std::string Flight_Summary::*text;
};
constexpr auto text_rows = std::to_array<Text_Row>({
    {"program", &Flight_Summary::program_version},
    {"utc", &Flight_Summary::began_utc},
    {"airline", &Flight_Summary::airline},
    {"flight", &Flight_Summary::flight_number},
    {"aircraft", &Flight_Summary::aircraft},
    {"tail", &Flight_Summary::tail},
    {"simulator", &Flight_Summary::simulator},
    {"airport OUT", &Flight_Summary::origin},
    {"airport IN", &Flight_Summary::destination},
});

struct Event_Row {
    std::string_view key;
    Block_Event event;
};
constexpr auto event_rows = std::to_array<Event_Row>({
    {"event OUT", Block_Event::out},
    {"event OFF", Block_Event::off},
    {"event ON", Block_Event::on},
    {"event IN", Block_Event::in},
});

/// A pause is noted either by the last moment before it or, with its end, by the first one after
/// it; no further apart, the moment before is the last that was flown.
constexpr double step_seconds = 3;

class Notes_Reader {
  public:
    explicit Notes_Reader(Flight_Summary& summary) : m_summary(summary) {}

    void Read(double seconds, const std::string& remark) {
        if (remark == start_note) {
            m_notes.by_engine = true;
        } else if (remark == pause_note) {
            const bool is_after = m_before && seconds - *m_before > step_seconds;
            m_paused_since = is_after ? *m_before : seconds;
        } else if (remark == resume_note) {
            Resume(seconds);
        } else if (remark == fly_on_note) {
            Take_Back([](const Noted_Event& event) { return event.event == Block_Event::on; });
            m_notes.phases.push_back({seconds, Flight_Phase::off});
        } else if (const auto mark = remark.find(": "); mark != std::string::npos) {
            Read_Value(seconds, std::string_view(remark).substr(0, mark), remark.substr(mark + 2));
        }
    }

    void End_Moment(double seconds) { m_before = seconds; }

    Flight_Notes Take() {
        if (m_paused_since)
            Resume(*m_before);
        return std::move(m_notes);
    }

  private:
    template <class Which>
    void Take_Back(Which which) {
        std::erase_if(m_notes.events, which);
    }

    void Resume(double seconds) {
        // Without its beginning, from the last moment on.
        const double since = m_paused_since.value_or(m_before.value_or(seconds));
        m_notes.rests.push_back({Incident_Kind::pause, std::min(since, seconds), seconds});
        m_paused_since.reset();
    }

    void Read_Value(double seconds, std::string_view key, const std::string& value) {
        const auto text = std::find_if(text_rows.begin(), text_rows.end(),
                                       [&](const Text_Row& row) { return row.key == key; });
        const auto event = std::find_if(event_rows.begin(), event_rows.end(),
                                        [&](const Event_Row& row) { return row.key == key; });
        if (text != text_rows.end())
            m_summary.*(text->text) = value;
        else if (event != event_rows.end())
            Read_Event(seconds, event->event, value);
        else if (key == "setting")
            Read_Setting(value);
        else if (key == "logged")
            Read_Logged(value);
        else if (key == "planned")
            m_notes.planned = Parse_Planned(value);
        else if (key == "taken up")
            Read_Taken_Up(seconds, value);
    }

    void Read_Event(double seconds, Block_Event event, const std::string& value) {
        Take_Back([&](const Noted_Event& earlier) { return earlier.event == event; });
        m_notes.by_engine = true;
        m_notes.events.push_back(
            {event, seconds, Parse_Evidence(value).value_or(Block_Evidence())});
        m_notes.phases.push_back({seconds, Phase_From(event)});
    }

    void Read_Setting(const std::string& value) {
        const std::string name(Before(value, "="));
        if (name.size() == value.size())
            return;
        auto& settings = m_summary.settings;
        std::erase_if(settings, [&](const auto& setting) { return setting.first == name; });
        settings.emplace_back(name, value.substr(name.size() + 1));
    }

    void Read_Logged(const std::string& value) {
        m_summary.log_name = std::string(Before(value, "\t"));
        m_summary.logged_row = value.substr(std::min(m_summary.log_name.size() + 1, value.size()));
    }

    /// What the store did not hold any more, the engine did not know and recorded again.
    void Read_Taken_Up(double seconds, const std::string& value) {
        const auto from = Parse_Number(value);
        if (!from)
            return;
        m_notes.by_engine = true;
        Take_Back([&](const Noted_Event& event) { return event.seconds > *from; });
        std::erase_if(m_notes.phases,
                      [&](const Phase_Change& change) { return change.seconds > *from; });
        m_notes.rests.push_back({Incident_Kind::taken_up, m_before.value_or(seconds), seconds});
        m_paused_since.reset();
    }

    Flight_Summary& m_summary;
    Flight_Notes m_notes;
    /// The moment before.
    std::optional<double> m_before;
    std::optional<double> m_paused_since;
};

}  // namespace

Flight_Phase Phase_From(Block_Event event) {
    return static_cast<Flight_Phase>(static_cast<int>(event) + 1);
}

Flight_Notes Read_Notes(const std::vector<Recorded_Moment>& moments, Flight_Summary& summary) {
    Notes_Reader reader(summary);
    for (const Recorded_Moment& moment : moments) {
        for (const std::string& remark : moment.remarks)
            reader.Read(moment.seconds, remark);
        reader.End_Moment(moment.seconds);
    }
    const std::string named = std::string(product_name) + " ";
    if (summary.program_version.starts_with(named))
        summary.program_version.erase(0, named.size());
    return reader.Take();
}

}  // namespace norvane
