// The PIREP editor: what it shows of a file, what it writes back, and what it never costs the
// pilot.

#include <gmock/gmock.h>

#include <fmt/format.h>

#include "common/text.h"
#include "logentry/cls_log_entry.h"
#include "logentry/frm_pirep.h"
#include "logentry/frm_response.h"
#include "net/net_world.h"

namespace norvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Pirep_Editor : public test::Net_World {
  protected:
    Pirep_Editor() {
        Airline("X", 20);
        airline.Get_VA_Settings("X");
        Take_Errors();  // a form that does not fit the fixed values is reported
        editor.Show_Form();
    }
    void Airline(const std::string& name, int labels) {
        std::string fields;
        for (int i = 0; i < labels; ++i)
            fields += fmt::format("Label {0}^f{0}\r\n", i);
        Write("VA_" + name + "/server.cfg", server.Host() + "\r\n/in\r\n");
        Write("VA_" + name + "/pirep.cfg", fields);
    }
    static std::string Line(int values) {
        std::string line;
        for (int i = 0; i < values; ++i)
            line += fmt::format("{}{}", i == 0 ? "" : "|", i);
        return line + "\r\n";
    }
    void Select(const std::string& content) {
        desktop.chosen_files.push_back(Write("reports/my.txt", content));
        Click(frmPIREP::select);
    }
    void Click(frmPIREP::Command command) { editor.hypPIREP[command].Click(); }
    [[nodiscard]] bool Has_File_Links() const {
        return editor.hypPIREP[frmPIREP::send].Enabled() &&
               editor.hypPIREP[frmPIREP::remove].Enabled() &&
               editor.hypPIREP[frmPIREP::save].Enabled();
    }

    test::Raw_Server server{
        [](int socket) { test::Send(socket, "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nOK"); }};
    frmResponse response{services};
    frmPIREP editor{{services, settings, airline, response, options}};
};

TEST_F(Pirep_Editor, A_Saved_File_Has_The_Airlines_Values_And_The_Original_Stays) {
    EXPECT_FALSE(Has_File_Links());
    const std::string original = Line(52) + "second line\r\n";
    Select(original);
    ASSERT_EQ(editor.Rows().size(), 20U);
    EXPECT_EQ(editor.Rows()[19]->lblField.Text(), "Label 19");
    editor.Rows()[3]->txtField.Enter("2008-04-24");
    Click(frmPIREP::save);
    std::string saved;
    for (int i = 0; i < 20; ++i)
        saved += i == 3 ? "2008-04-24|" : fmt::format("{}|", i);
    EXPECT_EQ(Read("reports/my.txt"), saved + "\r\n");
    EXPECT_EQ(Read("reports/my.bak"), original);
    EXPECT_EQ(desktop.boxes.back().text, "PIREP Saved");

    // Later saves keep the first original; a whole file that came since is an original again.
    editor.Rows()[3]->txtField.Enter("2008-04-25");
    Click(frmPIREP::save);
    EXPECT_EQ(Read("reports/my.bak"), original);
    Select(Line(40));
    Click(frmPIREP::save);
    EXPECT_EQ(Read("reports/my.bak"), Line(40));
}

TEST_F(Pirep_Editor, A_File_That_Does_Not_Fit_The_Airline_Is_Not_Rewritten) {
    Select(Line(12));
    EXPECT_EQ(editor.Rows().size(), 12U);
    Click(frmPIREP::save);
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("frmPIREP.Save_PIREP()")));
    EXPECT_EQ(Read("reports/my.txt"), Line(12));

    Select(Line(52));
    Airline("Y", 5);
    airline.Get_VA_Settings("Y");
    Take_Errors();
    Click(frmPIREP::save);
    EXPECT_THAT(desktop.boxes.back().text, HasSubstr("another one"));
    EXPECT_EQ(Read("reports/my.txt"), Line(52));
}

TEST_F(Pirep_Editor, The_View_Follows_The_Focus_Row_By_Row) {
    const auto range_of = [this](int labels) {
        Airline("Z", labels);
        airline.Get_VA_Settings("Z");
        Take_Errors();
        Select(Line(52));
        return editor.Scroll_Range();
    };
    EXPECT_EQ(range_of(11), 0);
    EXPECT_EQ(range_of(12), 360);
    EXPECT_EQ(range_of(14), 3 * 360);
    std::vector<std::size_t> focused;
    editor.Focus_Moved.connect([&](std::size_t row) { focused.push_back(row); });
    editor.Step(0, -1);
    editor.Step(13, 1);
    editor.Step(10, 1);
    EXPECT_THAT(focused, ElementsAre(11));
    editor.Row_Focused(11);
    EXPECT_EQ(editor.Scroll(), 360);
    editor.Row_Focused(1);
    EXPECT_EQ(editor.Scroll(), 360);
    editor.Row_Focused(0);
    EXPECT_EQ(editor.Scroll(), 0);
    editor.Set_Scroll(99999);
    EXPECT_EQ(editor.Scroll(), 3 * 360);
}

TEST_F(Pirep_Editor, Sends_The_File_As_It_Is_Stored_And_Deletes_It) {
    Select(Line(20));
    editor.Rows()[0]->txtField.Enter("not saved");
    Click(frmPIREP::send);
    EXPECT_THAT(server.Request(), HasSubstr("f0=0&f1=1&"));
    EXPECT_EQ(response.Page(), "OK\r\n");
    EXPECT_TRUE(response.Is_Open());
    EXPECT_TRUE(Has_File_Links());
    Click(frmPIREP::remove);
    EXPECT_FALSE(std::filesystem::exists(directory / "reports/my.txt"));
    EXPECT_TRUE(editor.Rows().empty());
    EXPECT_FALSE(Has_File_Links());
    EXPECT_EQ(desktop.boxes.back().text, "PIREP Deleted");
    // A dialog that is left chooses nothing, and takes nothing away.
    Select(Line(20));
    Click(frmPIREP::select);
    EXPECT_EQ(editor.Rows().size(), 20U);
}

}  // namespace
}  // namespace norvane
