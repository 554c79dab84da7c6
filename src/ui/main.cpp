// norvane: the companion with its window.

#include <CLI/CLI.hpp>
#include <QMessageBox>
#include <QSessionManager>
#include <QSocketNotifier>
#include <QSplashScreen>
#include <QTimer>
#include <clocale>
#include <memory>
#include <optional>

#include "app/frm_main.h"
#include "app/program.h"
#include "app/session.h"
#include "app/session_options.h"
#include "app/sim_process.h"
#include "common/log_error.h"
#include "common/signal_watch.h"
#include "common/version.h"
#include "config/airline_list.h"
#include "config/setting_codes.h"
#include "simlink/link_address.h"
#include "simlink/socket_transport.h"
#include "ui/dialogs/message_boxes.h"
#include "ui/window/guarded_application.h"
#include "ui/window/main_window.h"
#include "ui/window/qt_desktop.h"
#include "ui/window/qt_text.h"
#include "ui/window/splash.h"

namespace {

using namespace norvane;

struct Window_Options {
    Session_Options session;
    bool demo = false;
    /// How much faster the demonstration flies; without it the timers keep the pilot's time.
    double demo_speed = 20;
};

/// The exit status when the command line asks for no window (help, version, a fault in it).
std::optional<int> Read_Command_Line(int argc, char** argv, Window_Options& options,
                                     bool with_the_toolkits_own) {
    CLI::App line("Norvane: flies along with a simulator and keeps the flight log", "norvane");
    line.set_version_flag("--version", std::string("norvane ") + norvane::version);
    Add_Session_Options(line, options.session);
    line.allow_extras(with_the_toolkits_own);
    auto* demo = line.add_flag("--demo", options.demo, "Show a whole flight at speed");
    line.add_option("--time-scale", options.demo_speed, "Fly the demonstration X times as fast")
        ->check(CLI::Range(0.01, 1000.0))
        ->needs(demo);
    try {
        line.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        constexpr int wrong_usage = 2;
        return line.exit(error) == 0 ? 0 : wrong_usage;
    }
    options.session.places.demonstration = options.demo;
    return std::nullopt;
}

/// The simulator the program flies with: one that runs, or the demonstration's own.
class Simulator {
  public:
    Simulator(const Window_Options& options, Settings_Store& store, Qt_Desktop& desktop,
              const Signal_Watch& signals)
        : m_stand_in(Start(options)),
          m_transport(Parse_Link_Address(m_stand_in ? m_stand_in->Address()
                                                    : Simulator_Address(options.session, store)),
                      connect_at_most, [&desktop, &signals] {
                          desktop.Repaint();
                          // A program that is asked to end waits for no simulator.
                          return !signals.Is_Pending();
                      }) {}

    Transport& Link() { return m_transport; }
    /// The settings were saved; the next "On" looks where they say.
    void Follow(const Window_Options& options, Settings_Store& store) {
        if (!m_stand_in)
            m_transport.Set_Address(Parse_Link_Address(Simulator_Address(options.session, store)));
    }

  private:
    static std::unique_ptr<Sim_Process> Start(const Window_Options& options) {
        if (!options.demo)
            return nullptr;
        return std::make_unique<Sim_Process>(
            Executable_Directory() / "norvane-sim",
            std::vector<std::string>{"fly", "--speed", std::to_string(options.demo_speed)});
    }

    static constexpr std::chrono::seconds connect_at_most{2};

    std::unique_ptr<Sim_Process> m_stand_in;
    Socket_Transport m_transport;
};

/// A signal, or the end of the desktop's session, closes the window without a question.
void Close_On_Signals(QApplication& application, Signal_Watch& signals, Qt_Desktop& desktop,
                      frmMain& window) {
    const auto close = [&] {
        desktop.End_Dialogs();
        window.Form_Unload(ucACARS::Closing::by_signal);
    };
    auto* notifier = new QSocketNotifier(signals.Descriptor(), QSocketNotifier::Read, &application);
    QObject::connect(notifier, &QSocketNotifier::activated, &application, [&signals, close] {
        if (signals.Raised())
            close();
    });
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &application, close,
                     Qt::DirectConnection);
}

/// What an earlier demonstration left in the air is not this one's.
void Begin_Demonstration(Program& program) {
    program.panel.Drop_Stored_Flight();
    program.settings.Set_OPT_AutoLog(true);
    program.panel.hypOn.Click();
}

/// Timers at another speed than the flight's clock would measure nothing.
void Refuse_Speed_By_Real_Clocks(const Program& program, const Window_Options& options) {
    if (options.demo && options.demo_speed != 1 &&
        Clock_Source{program.settings.ACARS_UseTime()} == Clock_Source::computer) {
        throw Run_Error(error_number::invalid_call,
                        "The demonstration cannot be flown at speed while flights are timed by the "
                        "real clock (ACARS_UseTime is 1)");
    }
}

int Show_Window(QApplication& application, Signal_Watch& signals, Qt_Desktop& desktop,
                Session& session, const Window_Options& options) {
    std::optional<Busy_Cursor> starting(std::in_place, desktop);
    const std::string airline =
        session.Outside().settings.Get("Virtual Airline", "Current", stored_default_airline);
    const std::unique_ptr<QSplashScreen> splash =
        Show_Splash(session.Outside(),
                    airline == stored_default_airline ? airline : Airline_Directory(airline));
    Simulator simulator(options, session.Outside().settings, desktop, signals);
    Program program(session.Outside(), simulator.Link());
    program.settings.SettingsChanged.Connect([&] {
        if (!program.panel.Is_Active())
            simulator.Follow(options, session.Outside().settings);
    });
    Refuse_Speed_By_Real_Clocks(program, options);
    splash->repaint();
    frmMain form(program);
    Main_Window window(form, program, desktop);
    Close_On_Signals(application, signals, desktop, form);
    splash->close();
    window.show();
    starting.reset();
    if (options.demo)
        QTimer::singleShot(0, &window, [&program] { Begin_Demonstration(program); });
    else
        QTimer::singleShot(0, &window, [&program] { program.panel.Settle_Stored_Flight(); });
    return QApplication::exec();
}

int Run(Guarded_Application& application, Signal_Watch& signals, const Window_Options& options) {
    Window_Clock clock;
    Qt_Desktop desktop(clock, options.demo ? options.demo_speed : 1);
    clock.Set_Desktop(&desktop);
    // A second program on the same store ends here, before anything is shown.
    Session session(options.session, Access::write, desktop, clock);
    application.Set_Outside(&session.Outside());
    int status = 1;
    try {
        status = Show_Window(application, signals, desktop, session, options);
    } catch (...) {
        Log_Error(session.Outside(), "modMain.Main()", Caught_Error(), Show::box);
    }
    application.Set_Outside(nullptr);
    return status;
}

/// What keeps the program from starting, where there is no error log yet.
void Tell_Of_Failed_Start(const Run_Error& error) {
    const std::string words =
        std::string(product_name) + " cannot start.\r\n\r\n" + Words_For_Pilot(error);
    const std::unique_ptr<QMessageBox> box(Make_Message_Box(
        {words, std::string(product_name), Icon::exclamation, Buttons::ok, error.Description()},
        nullptr));
    box->exec();
}

}  // namespace

int main(int argc, char** argv) {
    // First of all, so that no thread of a library takes the signals.
    Signal_Watch signals;
    Window_Options options;
    // Help and faults of the command line need no display.
    if (const auto status = Read_Command_Line(argc, argv, options, true))
        return *status;
    Guarded_Application application(argc, argv);
    // The toolkit speaks the pilot's language; numbers in files do not.
    std::setlocale(LC_NUMERIC, "C");
    // No display name: Qt would put it behind every title, the product's own name included.
    QApplication::setApplicationName("norvane");
    QApplication::setApplicationVersion(norvane::version);
    // The menu entry, by which the desktop knows whose window this is.
    QGuiApplication::setDesktopFileName("norvane");
    // The program ends when its flight is safe, not when its last window is gone.
    QApplication::setQuitOnLastWindowClosed(false);
    // The toolkit has taken its arguments out; what is left must be ours.
    if (const auto status = Read_Command_Line(argc, argv, options, false))
        return *status;
    try {
        return Run(application, signals, options);
    } catch (const Store_In_Use&) {
        return 0;
    } catch (...) {
        Tell_Of_Failed_Start(Caught_Error());
        return 1;
    }
}
