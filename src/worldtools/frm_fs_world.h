#pragma once
// The dialog "FS World Locations": the pilot's own world file as a list, to which the pilot adds
// the place where the aircraft stands. Owned by the program, opened by the main window. Failures
// are reported under "frmFSWorld." and the operation's name.

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "acars/cls_acars.h"
#include "common/controls.h"
#include "common/modal_form.h"
#include "worldtools/world_locations.h"

namespace norvane {

class frmFSWorld : public Modal_Form {
  public:
    static constexpr std::string_view title = "FS World Locations";
    static constexpr std::string_view label = "ICAO:";

    /// Places in `hypWorld`.
    enum Command { save, cancel, add, remove };

    explicit frmFSWorld(const clsACARS::Parts& parts);

    /// Opens the dialog and returns when it is closed; false when the simulator is not there. A
    /// link that it opened itself is closed again.
    [[nodiscard]] bool Show_Form();

    Text_Box txtICAO;
    Row_List lvwWorld{{"ICAO", "Airport", "Date Added", "Latitude", "Longitude", "Elevation"}};
    std::array<Link, 4> hypWorld{Link("Save"), Link("Cancel"), Link("Add Current AC Location"),
                                 Link("Delete Selected Location")};

  private:
    void Load_Grid();
    void Show_Locations();
    void Add_Location();
    void Delete_Location();
    void Update_World_File();
    [[nodiscard]] std::string Get_Airport_Name(std::string_view icao);

    clsACARS::Parts m_parts;
    /// Lives as long as the dialog is open.
    std::unique_ptr<clsACARS> m_objACARS;
    std::optional<World_Locations> m_locations;
    std::filesystem::path m_file;
    /// The backup is this visit's own.
    bool m_backed_up = false;
};

}  // namespace norvane
