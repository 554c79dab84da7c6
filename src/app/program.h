#pragma once
// The process-wide objects, created once in start-up order and wired to each other: settings,
// airline, the shared log entry, the clock, the simulator link, the flight log with its statistics
// and dialogs, the engine, the other panels, and the dialogs that the main window opens. Owned by
// the program's `main`; a program without a window and one with it start the same way and end the
// same way.

#include "acars/cls_acars.h"
#include "acars/cls_utc.h"
#include "acarspanel/uc_acars.h"
#include "app/frm_about.h"
#include "blackbox/flight_archive.h"
#include "blackbox/flight_recorder.h"
#include "common/services.h"
#include "common/signal.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "deliveries/outbox.h"
#include "logentry/cls_log_entry.h"
#include "logentry/frm_pirep.h"
#include "logentry/frm_response.h"
#include "logpanel/frm_convert_log.h"
#include "logpanel/frm_flight_log.h"
#include "logpanel/frm_recover.h"
#include "logpanel/uc_flight_log.h"
#include "logpanel/uc_stats.h"
#include "messagepanel/uc_msg.h"
#include "settingspanel/uc_settings.h"
#include "simlink/mod_fsuipc.h"
#include "worldtools/frm_fs_world.h"
#include "worldtools/frm_icao.h"

namespace norvane {

class Program {
  public:
    /// Loads settings and airline, takes a stored flight up onto the panel. No connection is made.
    Program(const Services& outside, Transport& transport, const Http_Options& http = {});
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Ends the flight's tracking as closing the main window does. The pilot is asked first what is
    /// to become of the log's changes and of a finished flight; a question that is left open calls
    /// the closing off, and all goes on. Then raises `Closing`, ends panel, engine, link and flight
    /// log, and raises `Closed`: at once, or at the end of the step that is running. A second call
    /// by a signal ends the questions and requests that the first one waits for; any other does
    /// nothing.
    void Close(ucACARS::Closing how);
    /// Nothing calls the closing off any more.
    Signal<> Closing;
    /// Everything has ended. The panel's procedure that raised it is still running: a listener
    /// destroys nothing yet.
    Signal<> Closed;

    Services services;
    clsAppSettings settings;
    clsVASettings airline;
    clsLogEntry log_entry;
    clsUTC utc;
    modFSUIPC link;
    ucFlightLog flight_log;
    ucStats statistics;
    frmFlightLog manage_logs;
    frmConvertLog convert_log;
    frmRecover recover;
    clsACARS engine;
    frmResponse response;
    Http_Options http_limits;
    Outbox outbox;
    ucACARS panel;
    Flight_Recorder recorder;
    Flight_Archive archive;
    ucMSG messages;
    ucSettings settings_panel;
    frmPIREP pirep_editor;
    frmFSWorld world_locations;
    frmICAO airport_lookup;
    frmAbout about;

  private:
    /// Until the program closes; every request together with the others.
    [[nodiscard]] Http_Options Limits(const Http_Options& http) const;
    void Connect();
    void Connect_Recorder();
    void Note_Logged(const std::string& log_name, const std::string& line);
    void End_The_Rest();
    void Keep_PIREP_Edits();

    bool m_close_called = false;
    /// The program was asked to end by a signal: nobody is there to read a box.
    bool m_signalled = false;
    /// From here on no request is waited for any longer.
    bool m_closing = false;
    std::chrono::milliseconds m_farewell{0};
};

}  // namespace norvane
