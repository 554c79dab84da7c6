#include "worldtools/frm_fs_world.h"

#include <utility>

#include "common/boxes.h"
#include "common/file_writer.h"
#include "common/find_file.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"

namespace norvane {

namespace {

Row_List::Row Row_Of(const World_Location& location) {
    return {location.icao,     location.name,      location.date_added,
            location.latitude, location.longitude, location.elevation};
}

std::filesystem::path Backup_Of(const std::filesystem::path& file) {
    return std::filesystem::path(file).concat(".bak");
}

}  // namespace

frmFSWorld::frmFSWorld(const clsACARS::Parts& parts) : m_parts(parts) {
    txtICAO.Set_Text(empty_field);
    hypWorld[save].clicked.Connect([this] { Update_World_File(); });
    hypWorld[cancel].clicked.Connect([this] { Close_Form(); });
    hypWorld[add].clicked.Connect([this] { Add_Location(); });
    hypWorld[remove].clicked.Connect([this] { Delete_Location(); });
    lvwWorld.changed.Connect([this] { hypWorld[remove].Set_Enabled(lvwWorld.Selected() >= 0); });
    hypWorld[remove].Set_Enabled(false);
}

bool frmFSWorld::Show_Form() {
    if (m_objACARS)
        return true;
    bool reached = false;
    Guarded(m_parts.services, "frmFSWorld.Show_Form()", Show::box, [&] {
        m_objACARS = std::make_unique<clsACARS>(m_parts);
        struct Release {
            std::unique_ptr<clsACARS>& engine;
            ~Release() {
                engine->Stop_();
                engine.reset();
            }
        } const release{m_objACARS};
        std::string error_text;
        clsACARS::Start_Request link_only;
        link_only.initialise = false;
        reached = m_objACARS->Start(error_text, link_only);
        if (!reached)
            return;
        Load_Grid();
        Show_Modal();
    });
    return reached;
}

void frmFSWorld::Load_Grid() {
    m_locations.reset();
    m_backed_up = false;
    txtICAO.Set_Text(empty_field);
    Services& services = m_parts.services;
    Guarded(services, "frmFSWorld.Load_Grid()", Show::box, [&] {
        const Busy_Cursor busy(services.desktop);
        m_file = Find_Path(services, services.program_directory, "bin\\" + m_objACARS->WorldUD());
        try {
            Copy_File(m_file, Backup_Of(m_file));
            m_backed_up = true;
        } catch (const std::exception&) {
            // There may be no file yet; one that cannot be backed up can be edited all the same.
        }
        m_locations.emplace(m_file);
    });
    // A list that could not be read must not be saved over the file.
    hypWorld[save].Set_Enabled(m_locations.has_value());
    hypWorld[add].Set_Enabled(m_locations.has_value());
    Show_Locations();
}

void frmFSWorld::Show_Locations() {
    std::vector<Row_List::Row> rows;
    if (m_locations) {
        for (const World_Location& location : m_locations->Locations())
            rows.push_back(Row_Of(location));
    }
    lvwWorld.Set_Rows(std::move(rows));
}

void frmFSWorld::Add_Location() {
    Services& services = m_parts.services;
    Guarded(services, "frmFSWorld.Add_Location", Show::box, [&] {
        const std::string code = Location_Code(txtICAO.Text());
        txtICAO.Set_Text(code);
        const std::string_view fault = Check_Location_Code(code);
        if (!fault.empty()) {
            Tell(services.desktop, fault, Icon::none);
            return;
        }
        const Busy_Cursor busy(services.desktop);
        // A box about the name stands before the place is read: the aircraft may move meanwhile.
        const std::string name = Get_Airport_Name(code);
        const Aircraft_Place place = Read_Aircraft_Place(*m_objACARS);
        m_locations->Add(Make_Location(services, code, name, place));
        lvwWorld.Add_Row(Row_Of(m_locations->Locations().back()));
        txtICAO.Set_Text(empty_field);
    });
}

std::string frmFSWorld::Get_Airport_Name(std::string_view icao) {
    std::string name;
    // A location without a name is a location: the pilot is not kept from it.
    Guarded(m_parts.services, "frmFSWorld.Get_Airport_Name()", Show::box,
            [&] { name = World_Airport_Name(m_parts.services, m_objACARS->World(), icao); });
    return name;
}

void frmFSWorld::Delete_Location() {
    Guarded(m_parts.services, "frmFSWorld.Delete_Location()", Show::box, [&] {
        const int selected = lvwWorld.Selected();
        if (selected < 0)
            return;
        const auto row = static_cast<std::size_t>(selected);
        const Answer answer = Ask(m_parts.services.desktop,
                                  "Are you sure that you would like to delete this location?",
                                  Icon::question, "Delete FS World Location");
        if (answer != Answer::yes)
            return;
        m_locations->Remove(row);
        lvwWorld.Remove_Row(row);
    });
}

void frmFSWorld::Update_World_File() {
    Services& services = m_parts.services;
    const bool saved = Guarded(services, "frmFSWorld.Update_World_File()", Show::box, [&] {
        const Busy_Cursor busy(services.desktop);
        m_locations->Save();
    });
    if (saved) {
        Close_Form();
        return;
    }
    // What failed may be no more than the last flush, with the new file in place already.
    if (m_backed_up) {
        Guarded(services, "frmFSWorld.Update_World_File()", Show::silent,
                [&] { Write_File_Atomically(m_file, Read_File(Backup_Of(m_file))); });
    }
}

}  // namespace norvane
