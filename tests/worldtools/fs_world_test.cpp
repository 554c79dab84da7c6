// The pilot's own locations: what the dialog adds, deletes and saves, and what it leaves alone.

#include <gmock/gmock.h>

#include "acars/cls_acars.h"
#include "acars/cls_utc.h"
#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "simlink/in_process_transport.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/offset_area.h"
#include "support/test_world.h"
#include "worldtools/frm_fs_world.h"

namespace norvane::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::string_view main_world =
    "51.4706|-0.461941|83|EGLL|London Heathrow\r\n"
    "40.6398|-73.7789|13|KJFK|Kennedy Intl\r\n";

class FS_World : public Test_World {
  protected:
    FS_World() {
        Write("bin/fs9.wld", main_world);
        area.Set(Variable::on_ground, 1);
        area.Set(Variable::latitude_deg, 51.25);
        area.Set(Variable::longitude_deg, -0.5);
        area.Set(Variable::ground_elevation_ft, 120.4);
    }
    /// A visit to the dialog, in which `visit` is what the pilot does.
    bool Visit(const std::function<void()>& visit) {
        auto shown = form.shown.Connect(visit);
        const bool reached = form.Show_Form();
        shown.Disconnect();
        return reached;
    }
    void Click(frmFSWorld::Command command) { form.hypWorld[command].Click(); }
    void Add(std::string_view code) {
        form.txtICAO.Enter(code);
        Click(frmFSWorld::add);
    }
    /// A visit that adds and saves.
    void Save_New(std::string_view code) {
        EXPECT_TRUE(Visit([&] {
            Add(code);
            Click(frmFSWorld::save);
        }));
    }

    Offset_Area area;
    In_Process_Transport transport{area};
    modFSUIPC link{transport, clock};
    clsAppSettings settings{services};
    clsVASettings airline{services};
    clsUTC utc{clock};
    frmFSWorld form{{services, link, settings, airline, utc}};
};

TEST_F(FS_World, A_location_that_was_added_is_where_the_next_flight_departs) {
    int closed = 0;
    form.closed.Connect([&] { ++closed; });
    EXPECT_TRUE(Visit([&] {
        Add("  nv-1 ");
        Add("egll");
        EXPECT_EQ(form.txtICAO.Text(), "[     ]");
        EXPECT_FALSE(fs::exists(directory / "bin/fs9UD.wld"));
        Click(frmFSWorld::save);
    }));
    EXPECT_EQ(closed, 1);
    EXPECT_FALSE(link.Is_Open()) << "the dialog opened it";
    EXPECT_EQ(Read("bin/fs9UD.wld"),
              "51.25|-0.5|120|NV-1||3/14/2026\r\n"
              "51.25|-0.5|120|EGLL|London Heathrow|3/14/2026\r\n");
    EXPECT_TRUE(Visit([&] {
        form.lvwWorld.Choose(1);
        desktop.answers = {Answer::yes};
        Click(frmFSWorld::remove);
        Click(frmFSWorld::save);
    }));
    clsACARS flight({services, link, settings, airline, utc});
    std::string error_text;
    ASSERT_TRUE(flight.Start(error_text, {})) << error_text;
    EXPECT_EQ(flight.Departure_ICAO(), "NV-1");
    Take_Errors();
}

TEST_F(FS_World, Lines_that_are_no_locations_stay_where_they_stand) {
    const std::string others =
        "broken|line\r\n\r\n52|-1|200|TWO|Second|3/1/2026|more\r\n"
        "north|1|2|THREE|Third|\r\n53|-1|200||No code|\r\n";
    const std::string file = "// my strips\r\n51,5|-1|200|ONE|First\r\n" + others;
    Write("bin/fs9UD.wld", file);
    Visit([&] {
        ASSERT_EQ(form.lvwWorld.Rows().size(), 2U);
        EXPECT_THAT(form.lvwWorld.Rows()[0], ElementsAre("ONE", "First", "", "51,5", "-1", "200"));
        EXPECT_FALSE(form.hypWorld[frmFSWorld::remove].Enabled());
        form.lvwWorld.Choose(0);
        Click(frmFSWorld::remove);
        EXPECT_EQ(form.lvwWorld.Rows().size(), 2U) << "the answer was No";
        desktop.answers = {Answer::yes};
        Click(frmFSWorld::remove);
        Add("NEW");
        Click(frmFSWorld::save);
    });
    const std::string saved = "// my strips\r\n" + others + "51.25|-0.5|120|NEW||3/14/2026\r\n";
    EXPECT_EQ(Read("bin/fs9UD.wld"), saved);
    EXPECT_EQ(Read("bin/fs9UD.wld.bak"), file);
    Visit([&] {
        Add("LOST");
        Click(frmFSWorld::cancel);
    });
    EXPECT_EQ(Read("bin/fs9UD.wld"), saved);
}

TEST_F(FS_World, Adds_nothing_that_was_not_read_and_no_code_that_is_none) {
    int result = 0;
    ASSERT_TRUE(link.IPC_Open(0, result));
    EXPECT_TRUE(Visit([] {}));
    EXPECT_TRUE(link.Is_Open()) << "the flight's link";
    EXPECT_TRUE(Visit([&] {
        for (const auto* code : {"", " ", "A//B", "A B", "A|B"})
            Add(code);
        ASSERT_EQ(desktop.boxes.size(), 5U);
        EXPECT_EQ(desktop.boxes[0].text, "Please enter an ICAO Airport Code for the new location");
        EXPECT_EQ(desktop.boxes[0].title, "Norvane");
        link.IPC_Close();
        Add("nv01");
        EXPECT_EQ(form.txtICAO.Text(), "NV01");
        EXPECT_TRUE(form.lvwWorld.Rows().empty());
        EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("frmFSWorld.Add_Location")));
    }));
}

/// The user file is a directory: it can be neither read nor written, by root either.
TEST_F(FS_World, Does_not_save_over_a_file_that_it_could_not_read) {
    fs::create_directories(directory / "bin/fs9UD.wld");
    Save_New("NV01");
    EXPECT_FALSE(form.hypWorld[frmFSWorld::add].Enabled());
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("frmFSWorld.Load_Grid()")));
    EXPECT_TRUE(fs::is_directory(directory / "bin/fs9UD.wld"));
    fs::remove(directory / "bin/fs9UD.wld");
    Save_New("NV01");
    EXPECT_THAT(Read("bin/fs9UD.wld"), HasSubstr("|NV01|"));
}

TEST_F(FS_World, A_failed_save_restores_this_visits_backup_and_no_older_one) {
    Write("bin/fs9UD.wld.bak", "an older visit's\r\n");
    const auto file = directory / "bin/fs9UD.wld";
    // A directory is in the way of the save, and is gone when the pilot has read about it.
    desktop.on_box = [&](const Message_Box&) { fs::remove_all(file); };
    const auto fail_to_save = [&] {
        fs::remove(file);
        fs::create_directories(file / "in the way");
        Click(frmFSWorld::save);
        EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("frmFSWorld.Update_World_File()")));
    };
    Visit([&] {
        Add("NV01");
        fail_to_save();
        EXPECT_FALSE(fs::exists(file));
        Click(frmFSWorld::save);
    });
    const std::string first = Read("bin/fs9UD.wld");
    EXPECT_THAT(first, HasSubstr("|NV01|"));
    desktop.Run_For(std::chrono::minutes(2));
    Visit([&] {
        Add("NV02");
        fail_to_save();
        EXPECT_EQ(Read("bin/fs9UD.wld"), first);
    });
}

}  // namespace
}  // namespace norvane::test
