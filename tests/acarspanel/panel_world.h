#pragma once
// A program around the panel, as it stands between a start and an end, and a simulator beside it
// that outlives the program. Killing a program takes its objects away; the settings store stays.

#include <memory>
#include <string>
#include <vector>

#include "acars/cls_acars.h"
#include "acars/cls_utc.h"
#include "acarspanel/uc_acars.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "logentry/cls_log_entry.h"
#include "logentry/frm_response.h"
#include "simlink/in_process_transport.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/offset_area.h"
#include "support/test_world.h"

namespace norvane::test {

/// One run of the program.
struct Program {
    Program(Services& services, Offset_Area& area, const Http_Options& http);

    clsAppSettings settings;
    clsVASettings airline;
    clsLogEntry entry;
    clsUTC utc;
    In_Process_Transport transport;
    modFSUIPC link;
    clsACARS engine;
    frmResponse response;
    ucACARS panel;
};

class Panel_World : public Test_World {
  protected:
    Panel_World();

    /// Starts the program, with the airline of that name.
    void Begin(const std::string& airline = "DEFAULT");
    /// Takes the program away without closing it.
    void Kill() { program.reset(); }

    [[nodiscard]] ucACARS& Panel() { return program->panel; }
    [[nodiscard]] ACARS_Events& Events() { return program->engine.events; }
    [[nodiscard]] clsAppSettings& Settings() { return program->settings; }
    /// A field of the flight that was handed to the log last.
    [[nodiscard]] const std::string& Logged(Log_Field field) { return program->entry.Get(field); }
    [[nodiscard]] bool Is_Stored() { return store.Find(flight_section, "1").has_value(); }
    /// A stored field of the flight in progress.
    [[nodiscard]] std::string Stored(Log_Field field);
    /// Texts of the boxes shown since the last call.
    std::vector<std::string> Take_Boxes();

    /// One sampling step passes.
    void Step() { desktop.Run_For(std::chrono::milliseconds(500)); }
    // The flight, each ending with a step: on the stand with the brake set, under way, in the air,
    // on the runway of the other airport, on its stand.
    void Stand();
    void Roll();
    void Lift_Off();
    void Touch_Down();
    void Park();
    /// On all of the simulator's clocks.
    void Set_Minute(int minute);
    /// From "On" to the gate.
    void Fly();
    /// "Reset", and Yes when it asks.
    void Give_Up();

    Offset_Area area;
    /// How the panel's requests go out.
    Http_Options http;
    /// The simulator answers.
    bool linked = true;
    /// What the flight log answers.
    bool log_saves = true;
    /// Log lines of the flights handed to the log.
    std::vector<std::string> log;
    std::unique_ptr<Program> program;
};

}  // namespace norvane::test
