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

TEST_F(Pirep_Editor, Edits_Are_Sent_Saved_Or_Kept_As_The_Pilot_Says) {
    const std::string stored = Line(20);
    const std::string edited = Replace_All(stored.substr(0, stored.size() - 2), "0|1|", "new|1|");
    const auto kept = directory / "reports/my-unsaved.txt";
    struct Case {
        frmPIREP::Command command;
        Answer answer;
        bool is_done, is_saved, is_kept;
    };
    for (const Case& each : {Case{frmPIREP::send, Answer::none, false, false, false},
                             Case{frmPIREP::send, Answer::no, true, false, false},
                             Case{frmPIREP::send, Answer::yes, true, true, false},
                             Case{frmPIREP::close, Answer::none, false, false, false},
                             Case{frmPIREP::close, Answer::no, true, false, true},
                             Case{frmPIREP::close, Answer::yes, true, true, false},
                             Case{frmPIREP::select, Answer::none, false, false, false},
                             Case{frmPIREP::select, Answer::no, true, false, true},
                             Case{frmPIREP::remove, Answer::none, false, false, false},
                             Case{frmPIREP::remove, Answer::no, false, false, false},
                             Case{frmPIREP::remove, Answer::yes, true, false, false}}) {
        SCOPED_TRACE(fmt::format("{} {}", int(each.command), int(each.answer)));
        editor.Show_Form();
        Select(stored);
        editor.Rows()[0]->txtField.Enter("new");
        desktop.answers = {each.answer};
        desktop.file_choices.clear();
        desktop.boxes.clear();
        Click(each.command);
        ASSERT_FALSE(desktop.boxes.empty());
        EXPECT_EQ(desktop.boxes.front().buttons, Buttons::yes_no);
        const bool is_deleted = each.command == frmPIREP::remove && each.is_done;
        EXPECT_EQ(std::filesystem::exists(directory / "reports/my.txt"), !is_deleted);
        if (!is_deleted) {
            EXPECT_EQ(Read("reports/my.txt"), each.is_saved ? edited + "|\r\n" : stored);
        }
        EXPECT_EQ(std::filesystem::exists(kept), each.is_kept);
        if (each.is_kept) {
            EXPECT_EQ(Read("reports/my-unsaved.txt"), edited + "|\r\n");
        }
        const bool is_closed = each.command == frmPIREP::close && each.is_done;
        EXPECT_EQ(editor.Is_Open(), !is_closed);
        EXPECT_EQ(response.Is_Open(), each.command == frmPIREP::send && each.is_done);
        if (response.Is_Open()) {
            EXPECT_THAT(server.Request(), HasSubstr(each.is_saved ? "f0=new&" : "f0=0&f1=1&"));
        }
        EXPECT_EQ(desktop.file_choices.size(), each.command == frmPIREP::select && each.is_done);
        std::filesystem::remove(kept);
        response.Close();
        // The next turn begins without edits.
        desktop.answers = {Answer::no};
        if (editor.Is_Open())
            editor.Close_Form();
        std::filesystem::remove(kept);
    }
    // Without edits nothing is asked; a file without values is no PIREP.
    editor.Show_Form();
    Select("");
    EXPECT_FALSE(Has_File_Links());
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("holds no PIREP")));
    Select(stored);
    desktop.boxes.clear();
    Click(frmPIREP::select);
    Click(frmPIREP::send);
    Click(frmPIREP::close);
    EXPECT_TRUE(desktop.boxes.empty());
    EXPECT_EQ(editor.Rows().size(), 20U) << "a dialog that is left takes nothing away";
}

}  // namespace
}  // namespace norvane
