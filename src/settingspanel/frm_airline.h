#pragma once
// The airline lookup: the list of "bin\airline.cfg", from which the pilot takes an airline's two
// codes. Owned by the settings panel.

#include <string>
#include <string_view>

#include "common/controls.h"
#include "common/modal_form.h"

namespace norvane {

struct Services;

class frmAirline : public Modal_Form {
  public:
    static constexpr std::string_view title = "Airline IATA / ICAO Look UP";

    explicit frmAirline(Services& services);

    /// Shows the list and waits. True when the pilot took an airline; `iata` and `icao` are its
    /// codes then, and empty otherwise.
    [[nodiscard]] bool LookUp_Airline(std::string& iata, std::string& icao);

    /// Activating a row is the same as "OK".
    Row_List lvwAirlines{{"Airline", "IATA", "ICAO"}};
    /// Closes the form only when a row is selected.
    Link hypOK{"OK"};
    Link hypCancel{"Cancel"};

  private:
    void Fill_List();
    void Take_Selected();

    Services& m_services;
    std::string m_iata;
    std::string m_icao;
    bool m_taken = false;
};

}  // namespace norvane
