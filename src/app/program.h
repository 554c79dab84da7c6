#pragma once
// The process-wide objects, created once in start-up order and wired to each other: settings,
// airline, the shared log entry, the clock, the simulator link, the flight log, the engine and the
// ACARS panel. Owned by the program's `main`; a program without a window and one with it start the
// same way and end the same way.

#include "acars/cls_acars.h"
#include "acars/cls_utc.h"
#include "acarspanel/uc_acars.h"
#include "common/services.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "flightlog/uc_flight_log.h"
#include "logentry/cls_log_entry.h"
#include "simlink/mod_fsuipc.h"

namespace norvane {

class Program {
  public:
    /// Loads settings and airline, takes a stored flight up onto the panel. No connection is made.
    Program(const Services& outside, Transport& transport);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Ends the flight's tracking as closing the main window does: panel, engine, link, flight log.
    void Close(ucACARS::Closing how);

    Services services;
    clsAppSettings settings;
    clsVASettings airline;
    clsLogEntry log_entry;
    clsUTC utc;
    modFSUIPC link;
    ucFlightLog flight_log;
    clsACARS engine;
    ucACARS panel;

  private:
    void Connect();
};

}  // namespace norvane
