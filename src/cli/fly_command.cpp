#include "cli/fly_command.h"

#include <fmt/format.h>

#include <chrono>
#include <utility>

#include "app/program.h"
#include "app/sim_process.h"
#include "cli/exit_status.h"
#include "cli/network_commands.h"
#include "cli/plan_command.h"
#include "cli/resume_check.h"
#include "common/code_page.h"
#include "common/log_error.h"
#include "common/text.h"
#include "config/setting_codes.h"
#include "flightlog/log_columns.h"
#include "simlink/link_address.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/socket_transport.h"

namespace norvane {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds connect_at_most(2000);
/// Between two tries to take up a dropped link.
constexpr milliseconds resume_pause(5000);
/// How long a logged flight waits for the airline's server, beyond the report on its way.
constexpr std::chrono::seconds longest_posting(60);
/// How long the flight's last messages have to come onto the simulator's screen: a text of two
/// lines, in the timers' time.
constexpr milliseconds longest_display(10'000);
/// A wait that only its condition or a signal ends.
constexpr milliseconds for_ever = std::chrono::hours(24 * 365);

std::vector<std::string> Stand_In_Arguments(const Fly_Options& options, double speed) {
    std::vector<std::string> arguments;
    if (options.replay.empty()) {
        arguments = {"fly"};
        if (!options.scenario.empty()) {
            arguments.insert(arguments.end(), {"--scenario", options.scenario.string()});
        }
    } else {
        arguments = {"replay", options.replay.string()};
    }
    arguments.insert(arguments.end(), {"--speed", fmt::format("{}", speed)});
    return arguments;
}

/// One flight through the panel of a started program.
class Flight {
  public:
    Flight(Console& console, Session& session, Program& program, const Socket_Transport& transport,
           const Fly_Options& options)
        : m_console(console),
          m_session(session),
          m_program(program),
          m_transport(transport),
          m_options(options) {
        m_program.engine.events.ACARSMessage.Connect(
            [](Message_Type, const std::string& text) { Console_Desktop::Print(text + "\n"); });
        m_program.engine.events.FSTime.Connect([this](const std::string&) { m_stepped = true; });
        m_gate_watch.tick.Connect([this] { Log_At_Gate(); });
        m_gate_watch.Set_Enabled(true);
    }

    int Fly();

  private:
    bool Signalled() { return m_console.signals.Raised(); }
    bool Drop_Stored_Flight();
    bool Switch_On();
    bool Begin_Tracking();
    [[nodiscard]] bool May_Begin_Again();
    bool Pause_Between_Tries(double& waited_s);
    void Enter_What_Was_Named();
    bool Fetch_Plan();
    void Read_Plan(bool resumed);
    void Take_Fetched_Plan();
    int Follow_To_The_Gate();
    void Say_Where_The_Row_Is() const;
    bool Take_Up_Dropped_Link();
    void Log_At_Gate();
    int Log();
    int Close_On_Signal();
    void Print_Result();
    void Await_Posts();
    void Tell_How_The_PIREP_Went();

    Console& m_console;
    Session& m_session;
    Program& m_program;
    const Socket_Transport& m_transport;
    const Fly_Options& m_options;
    /// Looks for the gate from within a request to the airline too, however long that hangs.
    Timer m_gate_watch{m_console.desktop.Timers(), std::chrono::seconds(1)};
    bool m_stepped = false;
    std::optional<Simbrief_Plan> m_plan;
};

int Flight::Fly() {
    ucACARS& panel = m_program.panel;
    if (m_options.start_new && !Drop_Stored_Flight())
        return exit_status::failed;
    if (panel.Is_At_Gate()) {
        Console_Desktop::Say("A finished flight was not logged: " + panel.Flight_Words() +
                             ".  It is logged now, without a simulator.");
        return Log();
    }
    if (!m_options.simbrief_user.empty() && !Fetch_Plan()) {
        m_program.Close(ucACARS::Closing::by_signal);
        return exit_status::failed;
    }
    Enter_What_Was_Named();
    if (!Switch_On()) {
        if (Signalled())
            return Close_On_Signal();
        m_program.Close(ucACARS::Closing::by_signal);
        return exit_status::no_simulator;
    }
    return Follow_To_The_Gate();
}

void Flight::Enter_What_Was_Named() {
    ucACARS& panel = m_program.panel;
    if (!m_options.flight_number.empty()) {
        panel.txtFlightNumber.Enter(From_Utf8(m_options.flight_number));
        panel.txtFlightNumber.Leave();
    }
    if (!m_options.aircraft.empty())
        panel.txtAircraftType.Enter(From_Utf8(m_options.aircraft));
}

/// False when a flight that was to be flown by a plan of SimBrief has none. One that is resumed
/// needs none.
bool Flight::Fetch_Plan() {
    if (m_program.panel.Is_Resumable())
        return true;
    return Guarded(m_program.services, "modMain.Fetch_Plan()", Show::silent, [&] {
        try {
            m_plan = Fetch_Plan_Of(m_console, m_program.services, m_options.simbrief_user);
        } catch (...) {
            Console_Desktop::Say(Caught_Error().Description());
            throw;
        }
    });
}

/// False when the stored flight could not be kept, and so was not dropped.
bool Flight::Drop_Stored_Flight() {
    ucACARS& panel = m_program.panel;
    const std::string flight = panel.Flight_Words();
    const auto kept = panel.Drop_Stored_Flight();
    if (panel.Is_Tracked_Or_Stored())
        return false;
    if (!kept.empty())
        Console_Desktop::Say("The stored flight was given up: " + flight +
                             ".  Its row is kept in " + From_Path(kept));
    return true;
}

bool Flight::Switch_On() {
    ucACARS& panel = m_program.panel;
    const bool resumed = panel.Is_Resumable();
    if (resumed) {
        Console_Desktop::Say("A stored flight is resumed: " + panel.Flight_Words() +
                             ".  \"fly --new\" gives it up instead.");
        if (!Await_Stored_Flight_In_The_Simulator(m_program.services, m_program.link,
                                                  [this] { return Signalled(); }))
            return false;
    }
    if (!Begin_Tracking())
        return false;
    if (!m_options.plan.empty() || !m_options.simbrief_user.empty())
        Read_Plan(resumed);
    return true;
}

/// A simulator that answered and then failed in the middle of the start comes back, as one does
/// that fails in flight. Where none answers there is nothing to wait for.
bool Flight::Begin_Tracking() {
    ucACARS& panel = m_program.panel;
    bool is_told = false;
    for (double waited_s = 0;;) {
        panel.hypOn.Click();
        if (panel.Is_Active() || panel.Is_At_Gate())
            return true;
        if (!is_told && !May_Begin_Again())
            return false;
        if (!std::exchange(is_told, true)) {
            Console_Desktop::Say(
                "The simulator failed while tracking began; trying again every 5 seconds.");
        }
        if (!Pause_Between_Tries(waited_s))
            return false;
    }
}

/// Not with a simulator, or a version of its interface, that is refused each time.
bool Flight::May_Begin_Again() {
    if (Signalled() || !m_transport.Has_Answered())
        return false;
    int result = ipc_result::okay;
    if (m_program.link.IPC_Open(0, result))
        m_program.link.IPC_Close();
    return result != ipc_result::wrong_fsuipc && result != ipc_result::wrong_simulator &&
           result != ipc_result::wide_client;
}

/// False when the pilot's patience, or a signal, ends the tries.
bool Flight::Pause_Between_Tries(double& waited_s) {
    if (m_options.give_up_s && waited_s >= *m_options.give_up_s)
        return false;
    m_console.desktop.Wait_Until([] { return false; }, resume_pause);
    waited_s += std::chrono::duration<double>(resume_pause).count();
    return !Signalled();
}

/// A resumed flight keeps what was known about it.
void Flight::Read_Plan(bool resumed) {
    if (resumed)
        Console_Desktop::Say("The flight plan is not read: the flight was under way already.");
    else if (m_plan)
        Take_Fetched_Plan();
    else
        m_program.panel.Read_Flight_Plan(m_options.plan);
}

/// What was named on the command line counts, whatever the plan says.
void Flight::Take_Fetched_Plan() {
    for (const std::string& doubt : m_program.panel.simbrief.Doubts(*m_plan))
        Console_Desktop::Say(doubt);
    m_program.panel.Read_SimBrief_Plan(*m_plan);
    Enter_What_Was_Named();
}

int Flight::Follow_To_The_Gate() {
    ucACARS& panel = m_program.panel;
    for (;;) {
        m_console.desktop.Wait_Until([&] { return panel.Is_At_Gate() || panel.Is_Paused(); },
                                     for_ever);
        // A flight that is in the log has come to its end, whatever was still being sent.
        if (Signalled() && !(panel.Is_At_Gate() && panel.Is_Logged()))
            return Close_On_Signal();
        if (panel.Is_At_Gate())
            return Log();
        if (panel.Is_Paused() && !Take_Up_Dropped_Link()) {
            if (Signalled())
                return Close_On_Signal();
            Console_Desktop::Say("The simulator did not come back; the flight stays stored.");
            m_program.Close(ucACARS::Closing::by_signal);
            return exit_status::no_simulator;
        }
    }
}

bool Flight::Take_Up_Dropped_Link() {
    ucACARS& panel = m_program.panel;
    Console_Desktop::Say("The flight is paused; trying to resume it every 5 seconds.");
    double waited_s = 0;
    while (Pause_Between_Tries(waited_s)) {
        m_stepped = false;
        panel.hypPause.Click();
        m_console.desktop.Wait_Until([&] { return panel.Is_Paused() || m_stepped; }, for_ever);
        if (Signalled())
            return false;
        if (!panel.Is_Paused()) {
            Console_Desktop::Say("The flight goes on.");
            return true;
        }
    }
    return false;
}

void Flight::Log_At_Gate() {
    if (!m_program.panel.Is_At_Gate())
        return;
    m_gate_watch.Set_Enabled(false);
    // What fails now is told: the pilot asked for it with the command.
    const Timer_Queue::Ticks_Set_Aside aside(m_console.desktop.Timers());
    if (!m_program.panel.Is_Logged())
        m_program.panel.hypLog.Click();
}

void Flight::Say_Where_The_Row_Is() const {
    const ucACARS& panel = m_program.panel;
    std::string where = "nothing could be written, so please keep that row";
    if (panel.Is_Stored_Whole())
        where = "it stays stored: the next \"fly\" logs it, without a simulator";
    else if (!panel.Kept_In().empty())
        where = "it is kept in " + From_Path(panel.Kept_In());
    Console_Desktop::Say("The flight was not saved to the log; the row is above, and " + where +
                         ".  The error log tells what to put right.");
}

int Flight::Log() {
    ucACARS& panel = m_program.panel;
    if (!panel.Is_Logged())
        panel.hypLog.Click();
    if (!panel.Is_Logged()) {
        // On the screen it is safe, whatever becomes of the files.
        Console_Desktop::Print(Log_Line(m_program.log_entry));
        m_program.Close(ucACARS::Closing::keeping_flight);
        Say_Where_The_Row_Is();
        return exit_status::failed;
    }
    Print_Result();
    Await_Posts();
    m_console.desktop.Wait_Until([&] { return !m_program.engine.Is_Showing_Messages(); },
                                 longest_display);
    Tell_How_The_PIREP_Went();
    m_program.Close(Signalled() ? ucACARS::Closing::by_signal : ucACARS::Closing::by_pilot);
    if (const std::size_t waiting = m_program.outbox.Waiting(); waiting > 0) {
        Console_Desktop::Say(
            fmt::format("Deliveries that wait for the airline: {}.  The next start sends them, and "
                        "\"norvane-cli outbox retry\" does so at once.",
                        waiting));
    }
    return exit_status::done;
}

int Flight::Close_On_Signal() {
    const ucACARS& panel = m_program.panel;
    m_program.Close(ucACARS::Closing::by_signal);
    if (panel.Is_Logged())
        Console_Desktop::Say("Ended by a signal; the flight is in the log.");
    else if (!panel.Kept_In().empty())
        Console_Desktop::Say("Ended by a signal; the row of the finished flight is kept in " +
                             From_Path(panel.Kept_In()));
    else
        Console_Desktop::Say(
            "Ended by a signal; a flight in the air stays stored and is resumed next time.");
    return exit_status::failed;
}

void Flight::Print_Result() {
    Console_Desktop::Print(Log_Line(m_program.log_entry));
    Console_Desktop::Print("Flight log: " + From_Path(m_program.settings.FlightLog_Path()));
    const std::string& pirep = m_program.log_entry.Get(Log_Field::PIREP_FILE_NAME);
    if (m_program.settings.OPT_PIREP())
        Console_Desktop::Print("PIREP: " + pirep);
    Console_Desktop::Print("Program directory: " + From_Path(m_session.Places().program_directory));
}

/// The PIREP and what the flight reported last may still be on their way to the airline.
void Flight::Await_Posts() {
    Outbox& outbox = m_program.outbox;
    if (!outbox.Is_Active())
        return;
    Console_Desktop::Say("Waiting until the airline has all reports of the flight.");
    // By the clock on the wall: servers know nothing of scaled time.
    const auto end = m_console.clock.Monotonic() + longest_posting;
    m_console.desktop.Wait_Until(
        [&] { return !outbox.Is_Active() || m_console.clock.Monotonic() >= end; }, for_ever);
}

/// Of the PIREPs of this flight the last one counts.
void Flight::Tell_How_The_PIREP_Went() {
    const std::string& file = m_program.log_entry.Get(Log_Field::PIREP_FILE_NAME);
    std::int64_t id = 0;
    for (const Airline_Delivery& delivery : m_program.outbox.List()) {
        if (delivery.kind == Delivery_Kind::pirep && delivery.file == file)
            id = delivery.id;
    }
    const auto delivery = m_program.outbox.Find(id);
    if (!delivery)
        return;
    Console_Desktop::Say(fmt::format("The flight is in the log, and its PIREP (delivery {}) is {}.",
                                     id, Name_Of(delivery->state)));
    if (delivery->status != 0) {
        Console_Desktop::Print("The airline's answer to the PIREP:");
        Print_Server_Answer(Trim(delivery->answer));
    }
}

}  // namespace

bool Has_Own_Simulator(const Fly_Options& options) {
    return options.demo || !options.scenario.empty() || !options.replay.empty();
}

int Run_Fly(Console& console, Session& session, const Fly_Options& options) {
    const double speed = options.time_scale;
    std::optional<Sim_Process> simulator;
    if (Has_Own_Simulator(options)) {
        simulator.emplace(Executable_Directory() / "norvane-sim",
                          Stand_In_Arguments(options, speed));
    }
    Socket_Transport transport(
        Parse_Link_Address(simulator ? simulator->Address() : options.simulator), connect_at_most,
        [&console] { return !console.signals.Is_Pending(); });
    Program program(session.Outside(), transport, console.Until_Signal());
    if (Clock_Source{program.settings.ACARS_UseTime()} == Clock_Source::computer && speed != 1) {
        Console_Desktop::Say(
            "--time-scale cannot be used while flights are timed by the real clock "
            "(ACARS_UseTime is 1)");
        return exit_status::wrong_usage;
    }
    return Flight(console, session, program, transport, options).Fly();
}

}  // namespace norvane
