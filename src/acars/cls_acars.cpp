#include "acars/cls_acars.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "acars/composer.h"
#include "acars/identification.h"
#include "acars/message_display.h"
#include "acars/persistence.h"
#include "acars/phase_tracker.h"
#include "acars/sampler.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_va_settings.h"
#include "simlink/mod_fsuipc.h"

namespace norvane {

namespace {

constexpr int any_simulator = 0;
constexpr std::string_view start_procedure = "clsACARS.Start()";
constexpr std::string_view refresh_procedure = "clsACARS.Refresh()";

}  // namespace

clsACARS::clsACARS(const Parts& parts)
    : m_context{parts.services,
                parts.link,
                parts.settings,
                parts.airline,
                parts.utc,
                events,
                Sim_Reader(parts.link),
                {},
                {},
                {},
                {}} {}

clsACARS::~clsACARS() {
    *m_displays_stopped = true;
}

/// Does a step's work on the state. When it fails, or a read in it, the state is put back and
/// nothing is held.
bool clsACARS::Gather(std::string_view procedure, const std::function<void()>& work) {
    m_before = m_context.state;
    m_context.output = {};
    m_context.reader.Begin_Step();
    m_stepping = true;
    const bool done = Guarded(m_context.services, procedure, Show::silent, [&] {
        try {
            work();
        } catch (...) {
            m_fault = Caught_Error().Description();
            throw;
        }
    });
    const bool whole = done && !m_context.reader.Failed();
    if (!whole) {
        m_context.state = m_before;
        m_context.output = {};
    }
    return whole;
}

/// Raises what a whole step holds. All that listeners store meanwhile is one transaction with the
/// stored flight. A listener that fails does not keep the others from being told.
void clsACARS::Raise_Held_Events(std::string_view procedure, Engine_Step::Kind kind) {
    Services& services = m_context.services;
    const auto held = std::exchange(m_context.output.events, {});
    std::optional<Settings_Batch> batch;
    Guarded(services, procedure, Show::silent, [&] { batch.emplace(services.settings); });
    Guarded(services, procedure, Show::silent, [&] {
        Stepped.Emit({kind, m_before, m_context.state, m_context.reader.Reads(), !held.empty()});
    });
    for (const auto& raise : held)
        Guarded(services, procedure, Show::silent, raise);
    Persist(m_context, Show::silent);
    if (kind == Engine_Step::Kind::step) {
        Guarded(services, procedure, Show::silent,
                [&] { m_context.events.FSTime.Emit(m_context.output.simulator_time); });
    }
    m_stored = batch && Guarded(services, procedure, Show::silent, [&] { batch->Commit(); });
}

/// Ends a step; what waited for its end runs now.
void clsACARS::Finish_Step() {
    m_stepping = false;
    const auto commands = std::exchange(m_waiting_commands, {});
    for (const auto& command : commands)
        Run_When_Free(command);
}

void clsACARS::Raise_Failure(const Sim_Reader::Failure& failure) {
    auto& signal = failure.exchange ? m_context.events.FSClosed : m_context.events.Error;
    signal.Emit(failure.text);
}

void clsACARS::Run_When_Free(std::function<void()> command) {
    if (m_stepping) {
        m_waiting_commands.push_back(std::move(command));
    } else {
        command();
    }
}

bool clsACARS::Start(std::string& error_text, const Start_Request& request) {
    int result = ipc_result::okay;
    if (m_stepping) {
        error_text = modFSUIPC::IPC_ErrorText(ipc_result::open);
        return false;
    }
    const bool opened = m_context.link.IPC_Open(any_simulator, result);
    if (!opened && result != ipc_result::open) {
        error_text = modFSUIPC::IPC_ErrorText(result);
        return false;
    }
    const bool whole = Gather(start_procedure, [&] {
        Flight_State& state = m_context.state;
        state.flight_number = request.flight_number;
        state.aircraft_type = request.aircraft_type;
        state.simulator_name = Trim(m_context.link.IPC_SimName());
        if (request.initialise)
            Open_And_Initialise(request.resume);
    });
    if (whole) {
        m_opened_link = m_opened_link || opened;
        if (request.initialise)
            error_text = modFSUIPC::IPC_ErrorText(ipc_result::okay);
        Raise_Held_Events(start_procedure, request.resume ? Engine_Step::Kind::taken_up
                                                          : Engine_Step::Kind::started);
    } else {
        if (opened)
            m_context.link.IPC_Close();
        error_text = m_context.reader.Failed() ? m_context.reader.Failed()->text : m_fault;
    }
    Hand_To_Carriers();
    Finish_Step();
    return whole;
}

std::string clsACARS::For_Pilot(const std::string& error_text) const {
    const std::string check = m_context.link.What_To_Check(error_text);
    return check.empty() ? std::string() : error_text + "\r\n\r\n" + check;
}

void clsACARS::Open_And_Initialise(bool resume) {
    Flight_State& state = m_context.state;
    m_context.output.Post(m_context.events.FSVersion, state.simulator_name);
    state.fsuipc_version = m_context.link.IPC_VersionText();
    state.display_mode = m_context.reader.Read_Whole(Variable::display_mode);
    if (resume)
        Restore(m_context);
    Init_ACARS(m_context, resume);
    m_context.output.Post(m_context.events.Start);
}

void clsACARS::Refresh() {
    if (m_stepping)
        return;
    const bool whole = Gather(refresh_procedure, [&] {
        Advance_Flight(m_context);
        Sample_Message_Clock(m_context);
        m_context.output.simulator_time = Read_Simulator_Time(m_context);
    });
    const auto failure = m_context.reader.Failed();
    const bool at_gate = m_context.output.at_gate;
    if (whole) {
        Raise_Held_Events(refresh_procedure, Engine_Step::Kind::step);
        Hand_To_Carriers();
    }
    Services& services = m_context.services;
    m_stepping = false;
    if (failure)
        Guarded(services, refresh_procedure, Show::silent, [&] { Raise_Failure(*failure); });
    if (at_gate) {
        Guarded(services, refresh_procedure, Show::silent,
                [&] { m_context.events.FlightAtGate.Emit(); });
    }
    Finish_Step();
}

void clsACARS::Stop_() {
    Run_When_Free([this] {
        Stop_Displays();
        if (std::exchange(m_opened_link, false))
            m_context.link.IPC_Close();
        if (m_context.state.is_connected)
            Send_Disconnect_Message();
    });
}

void clsACARS::ReStart(bool& success) {
    if (m_stepping) {
        success = m_context.link.Is_Open();
        return;
    }
    int result = ipc_result::okay;
    m_context.link.IPC_Close();
    success = m_context.link.IPC_Open(any_simulator, result);
    if (success) {
        m_opened_link = true;
    } else {
        success = result == ipc_result::open;
    }
}

void clsACARS::Paused() {
    Run_When_Free([this] {
        Persist(m_context, Show::box);
        m_context.events.Paused.Emit();
    });
}

void clsACARS::Store() {
    Run_When_Free([this] { Persist(m_context, Show::silent); });
}

void clsACARS::Resume_() {
    Run_When_Free([this] {
        bool success = false;
        ReStart(success);
        m_context.events.Start.Emit();
    });
}

void clsACARS::Reset() {
    Run_When_Free([this] {
        Stop_Displays();
        m_context.events.Reset.Emit();
        m_context.state = {};
    });
}

void clsACARS::Send_Disconnect_Message() {
    Run_When_Free([this] {
        if (!m_context.airline.Script_ACARS().empty())
            Send_Now(Message_Type::disconnected, {});
    });
}

void clsACARS::Report_Position() {
    Run_When_Free([this] { m_context.state.position_report_requested = true; });
}

void clsACARS::Set_Airline_Flight_Number(std::string_view number) {
    Run_When_Free([this, text = std::string(number)] { m_context.state.flight_number = text; });
}

void clsACARS::Get_Location(Position& position, double& ground_elevation_ft) {
    position = {};
    ground_elevation_ft = 0;
    if (m_stepping) {
        position = m_context.state.sample.position;
        ground_elevation_ft = m_context.state.sample.ground_elevation_ft;
        return;
    }
    const Position_Sample before = m_context.state.sample;
    m_context.reader.Begin_Step();
    Sample_Position(m_context, Sample_Extent::position_only);
    if (const auto failure = m_context.reader.Failed()) {
        m_context.state.sample = before;
        Raise_Failure(*failure);
        return;
    }
    position = m_context.state.sample.position;
    ground_elevation_ft = m_context.state.sample.ground_elevation_ft;
}

void clsACARS::Send_Message(Message_Type type, std::string_view text) {
    Run_When_Free([this, type, body = std::string(text)] {
        Send_Now(type, body);
        if (const auto failure = m_context.reader.Failed())
            Raise_Failure(*failure);
    });
}

/// Composes and raises a message outside a step. Without a link, or when the clock cannot be read,
/// it carries the time and date that were sampled last.
void clsACARS::Send_Now(Message_Type type, std::string_view text) {
    m_context.output = {};
    m_context.reader.Begin_Step();
    Compose_Message(m_context, type, text);
    const auto held = std::exchange(m_context.output.events, {});
    // A number that went out is not given again, whatever ends the program behind it.
    Persist(m_context, Show::silent);
    Hand_To_Carriers();
    for (const auto& raise : held)
        raise();
}

void clsACARS::Hand_To_Carriers() {
    for (const std::string& text : std::exchange(m_context.output.display_texts, {}))
        Queue_Message(text);
}

void clsACARS::Queue_Message(const std::string& text) {
    Guarded(m_context.services, "clsACARS.Queue_Message()", Show::silent, [&] {
        m_carriers.remove_if([](const auto& carrier) { return carrier->Is_Done(); });
        m_carriers.push_back(std::make_unique<frmFSMsg>(m_context.services.desktop.Timers()));
        m_carriers.back()->Queue_Message(*this, text);
    });
}

bool clsACARS::Is_Showing_Messages() const {
    return std::any_of(m_carriers.begin(), m_carriers.end(),
                       [](const auto& carrier) { return !carrier->Is_Done(); });
}

void clsACARS::Stop_Displays() {
    *m_displays_stopped = true;
    m_displays_stopped = std::make_shared<bool>(false);
    m_carriers.clear();
}

bool clsACARS::Show_Message(std::string_view text) {
    // A reader of its own: a display that fails between steps is no failure of a step.
    Sim_Reader reader(m_context.link);
    Desktop& desktop = m_context.services.desktop;
    const auto timing = Display_Timing_Of(m_context.state.display_mode);
    const std::shared_ptr<bool> stopped = m_displays_stopped;
    for (const Display_Line& line : Lines_To_Show(text)) {
        if (!line.text.empty() && !reader.Write_Display(line.text, timing.control)) {
            Raise_Failure(*reader.Failed());
            return !*stopped;
        }
        if (line.pause_after)
            desktop.Wait_Until([&] { return *stopped; }, timing.pause);
        if (*stopped)
            return false;
    }
    return true;
}

void clsACARS::Write_Message_To_FS(std::string_view text) {
    Run_When_Free([this, message = std::string(text)] { Show_Message(message); });
}

}  // namespace norvane
