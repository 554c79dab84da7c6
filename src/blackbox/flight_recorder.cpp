#include "blackbox/flight_recorder.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "acars/cls_acars.h"
#include "blackbox/recording_head.h"
#include "blackbox/recordings.h"
#include "common/code_page.h"
#include "common/log_error.h"
#include "common/number.h"
#include "common/run_error.h"
#include "config/cls_app_settings.h"
#include "simlink/mod_fsuipc.h"

namespace norvane {

namespace {

constexpr std::chrono::milliseconds fast_interval(20);
constexpr std::chrono::seconds longest_unsynced(30);
/// Fast samples are taken from so far above the ground down, and so long after contact.
constexpr double fast_below_ft = 100;
constexpr double fast_after_contact_s = 10;
/// From one step to the next the aircraft sinks.
constexpr double minutes_of_a_step = 0.5 / 60;
/// The computer's clock was set, when it is off by more than this.
constexpr std::int64_t clock_slack_s = 1;
constexpr std::string_view plain_ending = ".rec";
constexpr std::string_view procedure = "Flight_Recorder.Take_Step()";

constexpr std::array<std::string_view, block_event_count> event_names{"OUT", "OFF", "ON", "IN"};

}  // namespace

Flight_Recorder::Flight_Recorder(const Parts& parts)
    : m_parts(parts), m_fast(parts.services.desktop.Timers(), fast_interval) {
    m_connections.Keep({
        parts.engine.Stepped.Connect([this](const Engine_Step& step) { Take_Step(step); }),
        parts.engine.events.Paused.Connect([this] {
            m_paused = true;
            Stop_Sampling();
            Mark("paused");
        }),
        parts.engine.events.Start.Connect([this] {
            if (std::exchange(m_paused, false))
                Mark("resumed");
        }),
        parts.engine.events.FSClosed.Connect([this](const std::string&) { Stop_Sampling(); }),
        parts.engine.events.Error.Connect([this](const std::string&) { Stop_Sampling(); }),
    });
    m_fast.tick.Connect([this] { Sample_Fast(); });
}

std::filesystem::path Flight_Recorder::Directory() const {
    return Flights_Directory(m_parts.services);
}

double Flight_Recorder::Seconds() const {
    const double passed = m_parts.services.desktop.Timers().Seconds_Since(m_start);
    constexpr double decimals = 1000;
    return std::max(m_last_seconds, std::round(passed * decimals) / decimals);
}

void Flight_Recorder::Take_Step(const Engine_Step& step) {
    const bool done = Guarded(m_parts.services, procedure, Show::silent, [&] {
        if (step.kind == Engine_Step::Kind::started)
            Begin();
        else if (step.kind == Engine_Step::Kind::taken_up)
            Go_On();
        if (m_file)
            Write_Step(step);
    });
    if (!done)
        Fail();
}

/// The flight goes on without its recording, and nobody is told of it again. Taken up again, it
/// does not go on in what was recorded before.
void Flight_Recorder::Fail() {
    if (m_file)
        m_ended = m_file->Name();
    Give_Up();
    m_has_failed = true;
    Guarded(m_parts.services, procedure, Show::silent, [&] {
        Settings_Store& store = m_parts.services.settings;
        if (store.Find(stored_recording::section, stored_recording::name))
            store.Set(stored_recording::section, stored_recording::name, {});
    });
}

void Flight_Recorder::Begin() {
    Give_Up();
    m_ended.clear();
    m_has_failed = false;
    if (m_parts.settings.OPT_Recordings() == 0)
        return;
    const Clock_Moments now = Read_Clocks(m_parts.services);
    std::filesystem::create_directories(Directory());
    const auto file = Free_Name(Directory(), Recording_Stamp(now.utc), plain_ending);
    m_file = std::make_unique<Growing_File>(file);
    m_file->Add(Recording_Head() + "\n");
    m_start = m_parts.services.desktop.Timers().Now();
    m_last_seconds = 0;
    m_clock.reset();
    m_remarks = Head_Remarks(m_parts.services, m_parts.settings, m_parts.airline, m_parts.engine);
    Forget_Contact();
}

/// Goes on in the recording of the flight that was taken up again; where that is gone, in a new one
/// that says so.
void Flight_Recorder::Go_On() {
    Settings_Store& store = m_parts.services.settings;
    const std::string name = store.Get(stored_recording::section, stored_recording::name);
    const auto file = Directory() / To_Path(name);
    std::vector<Recorded_Moment> moments;
    std::unique_ptr<Growing_File> found;
    if (!name.empty() && std::filesystem::exists(file)) {
        Guarded(m_parts.services, procedure, Show::silent, [&] {
            found = std::make_unique<Growing_File>(file);
            moments = Read_Recording(file);
        });
    }
    if (moments.empty()) {
        found.reset();
        Begin();
        m_remarks.emplace_back("incomplete: the recording of the flight's beginning is missing");
        return;
    }
    Give_Up();
    m_ended.clear();
    m_has_failed = false;
    m_file = std::move(found);
    m_last_seconds = moments.back().seconds;
    const double gone_s = Seconds_Since_Beginning(moments, Read_Clocks(m_parts.services));
    const Timer_Queue& timers = m_parts.services.desktop.Timers();
    const std::chrono::duration<double> before(std::max(gone_s, m_last_seconds) / timers.Speed());
    m_start = timers.Now() - std::chrono::duration_cast<std::chrono::microseconds>(before);
    m_clock.reset();
    m_remarks = {"taken up: " + store.Get(stored_recording::section, stored_recording::seconds)};
    Forget_Contact();
}

void Flight_Recorder::Forget_Contact() {
    m_sampler.Begin_Anew();
    m_first.reset();
    m_paused = false;
    m_armed = false;
    m_contact_seconds.reset();
    m_was_on_ground = true;
    m_synced = m_parts.services.clock.Monotonic();
}

void Flight_Recorder::Write_Step(const Engine_Step& step) {
    const bool is_start = step.kind != Engine_Step::Kind::step;
    Note_Clock(step.has_events);
    if (step.kind == Engine_Step::Kind::step) {
        Note_Events(step);
    } else if (step.kind == Engine_Step::Kind::started) {
        m_remarks.emplace_back("start");
        Note_Airports(step.now, step.before);
    }
    if (m_first)
        m_sampler.Complete(*m_first, step);
    Recorded_Moment moment = m_sampler.Sample_Step(m_parts.link, step);
    moment.seconds = Seconds();
    moment.remarks.insert(moment.remarks.begin(), m_remarks.begin(), m_remarks.end());
    const bool matters = !m_remarks.empty();
    m_remarks.clear();
    if (is_start) {
        m_first = std::move(moment);
        return;
    }
    if (m_first)
        Add(*std::exchange(m_first, std::nullopt));
    Add(moment);
    Keep_Place(step.now);
    const auto now = m_parts.services.clock.Monotonic();
    if (matters || now - m_synced >= longest_unsynced) {
        m_file->Sync();
        m_synced = now;
    }
    Watch_Height(step.now);
}

void Flight_Recorder::Add(const Recorded_Moment& moment) {
    m_file->Add(Recording_Lines(moment));
    m_last_seconds = moment.seconds;
}

void Flight_Recorder::Note_Events(const Engine_Step& step) {
    const Flight_State& before = step.before;
    const Flight_State& now = step.now;
    if (before.phase == Flight_Phase::on && now.phase == Flight_Phase::off)
        m_remarks.emplace_back("touch-and-go");
    for (std::size_t event = 0; event < block_event_count; ++event) {
        const Block_Evidence& evidence = now.evidence.at(event);
        if (evidence.rule != Block_Rule::none && evidence != before.evidence.at(event)) {
            m_remarks.push_back(
                fmt::format("event {}: {}", event_names.at(event), Evidence_Text(evidence)));
        }
    }
    Note_Airports(now, before);
}

void Flight_Recorder::Note_Airports(const Flight_State& now, const Flight_State& before) {
    if (now.departure.icao != before.departure.icao)
        m_remarks.push_back("airport OUT: " + now.departure.icao);
    if (now.arrival.icao != before.arrival.icao)
        m_remarks.push_back("airport IN: " + now.arrival.icao);
}

/// The computer's clocks, where something happens by them, and when they were set.
void Flight_Recorder::Note_Clock(bool something_happens) {
    const Clock_Moments now = Read_Clocks(m_parts.services);
    const auto running = std::chrono::duration_cast<std::chrono::seconds>(
        m_parts.services.clock.Monotonic() - m_start);
    const std::int64_t offset = Seconds_Of(now.utc) - running.count();
    const std::int64_t zone = Seconds_Of(now.local) - Seconds_Of(now.utc);
    const bool was_set =
        !m_clock || std::abs(offset - m_clock->offset_s) > clock_slack_s || zone != m_clock->zone_s;
    if (was_set)
        m_clock = Told_Clock{offset, zone};
    if (was_set || something_happens)
        m_remarks.push_back("clock: " + Clock_Text(now));
}

/// With the stored flight, in its transaction: from which moment it goes on if it is taken up.
void Flight_Recorder::Keep_Place(const Flight_State& state) {
    if (state.At(Block_Event::off).time_utc.empty())
        return;
    Settings_Store& store = m_parts.services.settings;
    store.Set(stored_recording::section, stored_recording::name,
              From_Path(m_file->Name().filename()));
    store.Set(stored_recording::section, stored_recording::seconds,
              Format_Fixed(m_last_seconds, 3));
}

void Flight_Recorder::Mark(std::string_view remark) {
    if (m_file)
        m_remarks.emplace_back(remark);
}

/// Whether the fast samples are due: on the way down to the ground, and a little beyond contact.
void Flight_Recorder::Watch_Height(const Flight_State& state) {
    const bool flies = state.phase == Flight_Phase::off || state.phase == Flight_Phase::on;
    const bool on_ground = m_sampler.Is_On_Ground();
    const double height_ft = m_sampler.Height_Ft();
    if (!flies) {
        Stop_Sampling();
        return;
    }
    if (!on_ground && height_ft > fast_below_ft)
        m_armed = true;
    Note_Contact(on_ground);
    const double soon_ft =
        height_ft + std::min(m_sampler.Vertical_Speed_Fpm() * minutes_of_a_step, 0.0);
    const bool beyond_contact =
        m_contact_seconds && m_last_seconds - *m_contact_seconds <= fast_after_contact_s;
    const bool descends = m_armed && !on_ground && soon_ft <= fast_below_ft;
    if (on_ground && !beyond_contact)
        m_armed = false;
    m_fast.Set_Enabled(descends || (m_armed && beyond_contact));
}

void Flight_Recorder::Note_Contact(bool on_ground) {
    if (on_ground && !std::exchange(m_was_on_ground, on_ground))
        m_contact_seconds = m_last_seconds;
    m_was_on_ground = on_ground;
}

void Flight_Recorder::Sample_Fast() {
    // A step comes first, and so does whoever else asks the simulator.
    if (!m_file || m_first || m_paused || m_parts.engine.Is_Stepping() || !m_parts.link.Is_Open())
        return;
    const bool done = Guarded(m_parts.services, "Flight_Recorder.Sample_Fast()", Show::silent, [&] {
        Recorded_Moment moment{Seconds(), {}, {"fast"}};
        if (!m_sampler.Sample_Fast(m_parts.link, moment)) {
            // Until the next step knows more.
            Stop_Sampling();
            return;
        }
        Add(moment);
        Note_Contact(m_sampler.Is_On_Ground());
    });
    if (!done)
        Fail();
}

void Flight_Recorder::Stop_Sampling() {
    m_fast.Set_Enabled(false);
}

/// What stands in the file stays there; the next start packs it.
void Flight_Recorder::Give_Up() {
    Stop_Sampling();
    m_file.reset();
    m_first.reset();
    m_remarks.clear();
}

std::filesystem::path Flight_Recorder::End(std::string_view why) {
    if (!m_file)
        return {};
    auto file = m_file->Name();
    const bool done = Guarded(m_parts.services, "Flight_Recorder.End()", Show::silent, [&] {
        if (m_first)
            Add(*std::exchange(m_first, std::nullopt));
        m_remarks.push_back(fmt::format("ended: {}", why));
        Add({Seconds(), {}, std::exchange(m_remarks, {})});
        m_file->Sync();
    });
    if (!done) {
        Fail();
        return {};
    }
    Give_Up();
    m_ended = file;
    return file;
}

void Flight_Recorder::Note_Planned(std::string_view planned) {
    Mark(fmt::format("planned: {}", planned));
}

bool Flight_Recorder::Note_Logged(std::string_view log_name, std::string_view line) {
    const Recorded_Moment note{Seconds(), {}, {fmt::format("logged: {}\t{}", log_name, line)}};
    if (m_file) {
        const bool done =
            Guarded(m_parts.services, "Flight_Recorder.Note_Logged()", Show::silent, [&] {
                if (m_first)
                    Add(*std::exchange(m_first, std::nullopt));
                Add(note);
                m_file->Sync();
            });
        if (!done)
            Fail();
        return true;
    }
    std::error_code unknown;
    if (m_ended.empty() || !std::filesystem::exists(m_ended, unknown))
        return m_has_failed;
    const auto add = [&] {
        Growing_File file(m_ended);
        file.Add(Recording_Lines(note));
        file.Sync();
    };
    if (!m_has_failed)
        return Guarded(m_parts.services, "Flight_Recorder.Note_Logged()", Show::silent, add);
    try {
        add();
    } catch (const std::exception&) {
        // The pilot was told of this recording.
    }
    return true;
}

}  // namespace norvane
