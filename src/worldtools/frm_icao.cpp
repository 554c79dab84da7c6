#include "worldtools/frm_icao.h"

#include <utility>
#include <vector>

#include "common/find_file.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"

namespace norvane {

namespace {

constexpr int degree_decimals = 4;

Row_List::Row Row_Of(const Found_Airport& airport, const Regional& regional) {
    return {airport.icao, airport.name,
            Format_Pilot(airport.position.latitude, degree_decimals, regional),
            Format_Pilot(airport.position.longitude, degree_decimals, regional),
            Format_Pilot(airport.elevation_ft, 0, regional)};
}

}  // namespace

frmICAO::frmICAO(Services& services, std::function<World_Files()> files)
    : m_services(services), m_files(std::move(files)) {
    txtSearch.edited.Connect([this] { Search(); });
    lvwAirports.changed.Connect([this] { hypCopy.Set_Enabled(lvwAirports.Selected() >= 0); });
    lvwAirports.activated.Connect([this] { Copy_Code(); });
    hypCopy.clicked.Connect([this] { Copy_Code(); });
    hypClose.clicked.Connect([this] { Close_Form(); });
    hypCopy.Set_Enabled(false);
}

void frmICAO::Show_Form() {
    if (!m_open) {
        const Busy_Cursor busy(m_services.desktop);
        const World_Files files = m_files();
        const auto path_of = [this](const std::string& name) {
            return Find_Path(m_services, m_services.program_directory, "bin\\" + name);
        };
        m_search.Load(path_of(files.world), path_of(files.own));
        m_open = true;
        txtSearch.Set_Text("");
        Search();
    }
    changed.Emit();
}

void frmICAO::Close_Form() {
    if (std::exchange(m_open, false))
        changed.Emit();
}

void frmICAO::Search() {
    const Regional& regional = m_services.regional;
    const auto number = [&](std::size_t count) {
        return Format_Pilot(static_cast<double>(count), 0, regional);
    };
    const std::string_view wanted = Trimmed_View(txtSearch.Text());
    // Nothing asked for is nothing found: the list would begin with airports that nobody meant.
    const bool is_search = Airport_Search::Is_Search(wanted);
    const Airport_Matches matches =
        m_search.Find(is_search ? wanted : std::string_view(), is_search ? most_rows : 0);
    std::vector<Row_List::Row> rows;
    for (const Found_Airport& airport : matches.airports)
        rows.push_back(Row_Of(airport, regional));
    const std::size_t shown = rows.size();
    lvwAirports.Set_Rows(std::move(rows));
    lvwAirports.Select(0);
    std::string count = number(matches.count) + (matches.count == 1 ? " airport" : " airports");
    if (shown == most_rows && shown < matches.count)
        count = number(shown) + " of " + count + " shown";
    lblCount.Set_Text(matches.count == 0 ? "No airport found" : count);
}

void frmICAO::Copy_Code() {
    Guarded(m_services, "frmICAO.Copy_Code()", Show::box, [&] {
        const int row = lvwAirports.Selected();
        if (row < 0)
            return;
        const std::string& code = lvwAirports.Rows().at(static_cast<std::size_t>(row)).front();
        m_services.desktop.Copy_Text(code);
        lblCount.Set_Text(code + " copied");
    });
}

}  // namespace norvane
