#include "app/program.h"

namespace norvane {

Program::Program(const Services& outside, Transport& transport)
    : services(outside),
      settings(services),
      airline(services),
      log_entry(services),
      utc(services.clock),
      link(transport, services.clock),
      flight_log(services, settings, airline, log_entry),
      engine({services, link, settings, airline, utc}),
      panel(services, settings, airline, log_entry) {
    airline.Get_VA_Settings(settings.Virtual_Airline());
    flight_log.UCI();
    panel.UCI();
    panel.Set_ACARS(engine);
    Connect();
}

void Program::Connect() {
    settings.ActiveLogChange.connect([this] { flight_log.FlightLog_Change(); });
    settings.ACTypeChange.connect([this] { flight_log.Load_Aircraft(); });
    airline.Change.connect([this] {
        panel.VA_Change();
        flight_log.VA_Change();
    });
}

void Program::Close(ucACARS::Closing how) {
    panel.Close(how);
    engine.Stop_();
    link.IPC_Close();
    flight_log.Closing();
}

}  // namespace norvane
