#include "settingspanel/frm_airline.h"

#include "common/find_file.h"
#include "common/log_error.h"
#include "common/services.h"
#include "config/airline_list.h"

namespace norvane {

frmAirline::frmAirline(Services& services) : m_services(services) {
    hypOK.clicked.Connect([this] { Take_Selected(); });
    lvwAirlines.activated.Connect([this] { Take_Selected(); });
    hypCancel.clicked.Connect([this] { Close_Form(); });
}

bool frmAirline::LookUp_Airline(std::string& iata, std::string& icao) {
    m_iata.clear();
    m_icao.clear();
    m_taken = false;
    Fill_List();
    Show_Modal();
    iata = m_iata;
    icao = m_icao;
    return m_taken;
}

void frmAirline::Fill_List() {
    lvwAirlines.Set_Rows({});
    Guarded(m_services, "frmAirline.Fill_List()", Show::box, [&] {
        const Busy_Cursor busy(m_services.desktop);
        std::vector<Row_List::Row> rows;
        for (Airline_Codes& airline : Read_Airline_Codes(
                 Find_Path(m_services, m_services.program_directory, "bin\\airline.cfg")))
            rows.push_back({std::move(airline.name), std::move(airline.iata), airline.icao});
        lvwAirlines.Set_Rows(std::move(rows));
    });
}

void frmAirline::Take_Selected() {
    if (lvwAirlines.Selected() < 0)
        return;
    const Row_List::Row& row = lvwAirlines.Rows()[static_cast<std::size_t>(lvwAirlines.Selected())];
    m_iata = row[1];
    m_icao = row[2];
    m_taken = true;
    Close_Form();
}

}  // namespace norvane
