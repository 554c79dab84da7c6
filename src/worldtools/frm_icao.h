#pragma once
// The airport lookup "Airport Name/ICAO Lookup": finds airports of the main world file and the
// pilot's own locations by any part of code or name while the pilot types. A plain model of a
// window that does not block; owned by the program, opened by the main window.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "common/controls.h"
#include "common/signal.h"
#include "worldtools/airport_search.h"

namespace norvane {

struct Services;

class frmICAO {
  public:
    static constexpr std::string_view title = "Airport Name/ICAO Lookup";
    static constexpr std::string_view label = "Code or name:";
    /// Airports that the list shows at most; `lblCount` says when there are more.
    static constexpr std::size_t most_rows = 500;

    /// Names in "bin".
    struct World_Files {
        std::string world;
        /// The pilot's own locations.
        std::string own;
    };
    /// `files` gives the names ("fs9.wld", "fs9UD.wld") each time the window opens.
    frmICAO(Services& services, std::function<World_Files()> files);
    frmICAO(const frmICAO&) = delete;
    frmICAO& operator=(const frmICAO&) = delete;

    /// Opens the window. Raises when the world file cannot be read.
    void Show_Form();
    void Close_Form();
    [[nodiscard]] bool Is_Open() const { return m_open; }
    /// Opened, closed, or asked for again while it is open.
    Signal<> changed;

    Text_Box txtSearch;
    /// Activating a row copies its code.
    Row_List lvwAirports{{"ICAO", "Airport", "Latitude", "Longitude", "Elevation"}};
    /// How many airports match, and that a code was copied.
    Label lblCount;
    Link hypCopy{"Copy Code"};
    Link hypClose{"Close"};

  private:
    void Search();
    void Copy_Code();

    Services& m_services;
    std::function<World_Files()> m_files;
    Airport_Search m_search;
    bool m_open = false;
};

}  // namespace norvane
