// The PIREP editor: what it shows of a file, what it writes back, and what it never costs the
// pilot; and the airline's answer to what it sends.

#include <gmock/gmock.h>

#include <fmt/format.h>

#include <tuple>

#include "common/code_page.h"
#include "common/text.h"
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
        Fly_For("X", 20);
        editor.Show_Form();
    }
    void Fly_For(const std::string& name, int labels) {
        std::string fields;
        for (int i = 0; i < labels; ++i)
            fields += fmt::format("Label {0}^f{0}\r\n", i);
        Write("VA_" + name + "/server.cfg", server.Host() + "\r\n/in\r\n");
        Write("VA_" + name + "/pirep.cfg", fields);
        airline.Get_VA_Settings(name);
        Take_Errors();  // a form that does not fit the fixed values is reported
    }
    static std::string Line(int values) {
        std::string line = "0";
        for (int i = 1; i < values; ++i)
            line += fmt::format("|{}", i);
        return line + "\r\n";
    }
    void Select(const std::string& content) {
        desktop.chosen_files.push_back(Write("reports/my.txt", content));
        Click(frmPIREP::select);
    }
    void Click(frmPIREP::Command command) { editor.hypPIREP[command].Click(); }
    [[nodiscard]] bool Can(frmPIREP::Command command) const {
        return editor.hypPIREP[command].Enabled();
    }

    test::Raw_Server server{
        [](int socket) { test::Send(socket, "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nOK"); }};
    frmResponse response{services};
    frmPIREP editor{{services, settings, airline, response, options}};
};

TEST_F(Pirep_Editor, A_Saved_File_Has_The_Airlines_Values_And_The_Original_Stays) {
    EXPECT_FALSE(Can(frmPIREP::send) || Can(frmPIREP::remove) || Can(frmPIREP::save));
    const std::string original = Line(52) + "second line\r\n";
    Select(original);
    EXPECT_TRUE(Can(frmPIREP::send) && Can(frmPIREP::remove) && Can(frmPIREP::save));
    EXPECT_EQ(editor.lblFile.Text(), From_Path(directory / "reports/my.txt"));
    ASSERT_EQ(editor.Rows().size(), 20U);
    EXPECT_EQ(editor.Rows()[19]->lblField.Text(), "Label 19");
    editor.Rows()[3]->txtField.Enter("2008-04-24");
    Click(frmPIREP::save);
    EXPECT_EQ(Read("reports/my.txt"),
              "0|1|2|2008-04-24|4|5|6|7|8|9|10|11|12|13|14|15|16|17|18|19|\r\n");
    EXPECT_EQ(Read("reports/my.bak"), original);
    EXPECT_EQ(desktop.boxes.back().text, "PIREP Saved");

    // Later saves keep the first original; a whole file that came since is an original again.
    Click(frmPIREP::save);
    EXPECT_EQ(Read("reports/my.bak"), original);
    Select(Line(40));
    Click(frmPIREP::save);
    EXPECT_EQ(Read("reports/my.bak"), Line(40));
    Click(frmPIREP::close);
    editor.Show_Form();
    EXPECT_TRUE(editor.Rows().empty());
    EXPECT_EQ(desktop.boxes.size(), 3U) << "what is saved is not asked for";
}

TEST_F(Pirep_Editor, A_File_That_Does_Not_Fit_The_Airline_Is_Not_Rewritten) {
    Select(Line(12));
    EXPECT_EQ(editor.Rows().size(), 12U);
    Click(frmPIREP::save);
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("frmPIREP.Save_PIREP()")));
    EXPECT_EQ(Read("reports/my.txt"), Line(12));
    Select(Line(52));
    Fly_For("Y", 5);
    Click(frmPIREP::save);
    EXPECT_THAT(desktop.boxes.back().text, HasSubstr("another one"));
    EXPECT_EQ(Read("reports/my.txt"), Line(52));
    Select("");
    EXPECT_FALSE(Can(frmPIREP::save));
    EXPECT_EQ(editor.lblFile.Text(), "");
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("holds no PIREP")));
}

TEST_F(Pirep_Editor, The_View_Follows_The_Focus_Row_By_Row) {
    for (const auto& [labels, range] : {std::pair{11, 0}, {14, 3 * 360}}) {
        Fly_For("Z", labels);
        Select(Line(52));
        EXPECT_EQ(editor.Scroll(), 0);
        editor.Set_Scroll(99999);
        EXPECT_EQ(editor.Scroll(), range);
    }
    std::vector<std::size_t> focused;
    editor.Focus_Moved.Connect([&](std::size_t row) { focused.push_back(row); });
    for (const auto& [row, step] : {std::pair{0U, -1}, {13U, 1}, {1U, -1}, {12U, 1}, {10U, 1}})
        editor.Step(row, step);
    EXPECT_THAT(focused, ElementsAre(0, 13, 11));
    for (const auto& [row, scroll] : {std::pair{0U, 0}, {10U, 0}, {11U, 360}, {1U, 360}, {0U, 0}}) {
        editor.Row_Focused(row);
        EXPECT_EQ(editor.Scroll(), scroll) << row;
    }
}

TEST_F(Pirep_Editor, Edits_Are_Sent_Saved_Or_Kept_As_The_Pilot_Says) {
    const std::string stored = Line(20);
    const std::string edited = Replace_All(Replace_All(stored, "0|1|", "new|1|"), "\r", "|\r");
    const auto file = directory / "reports/my.txt";
    const auto kept = directory / "reports/my-unsaved.txt";
    const auto outcome = [&] {
        std::string text = !exists(file) ? "gone" : Read(file) == edited ? "edited" : "unchanged";
        text += exists(kept) && Read(kept) == edited ? " kept" : "";
        text += editor.Rows().empty() ? " empty" : "";
        text += editor.Is_Open() ? "" : " closed";
        text += desktop.file_choices.empty() ? "" : " choosing";
        if (response.Is_Open())
            text += " sent" + server.Request().substr(server.Request().find("f0=") + 2, 2);
        return text;
    };
    using enum frmPIREP::Command;
    using enum Answer;
    std::string pages;
    response.changed.Connect([&] {
        EXPECT_FALSE(response.Is_Open() && Can(send)) << "twice";
        pages += response.Is_Open() ? response.Page() : "";
    });
    for (const auto& [command, answer, result] :
         std::vector<std::tuple<frmPIREP::Command, Answer, std::string>>{
             {send, none, "unchanged"},
             {send, no, "unchanged sent=0"},
             {send, yes, "edited sent=n"},
             {close, none, "unchanged"},
             {close, no, "unchanged kept closed"},
             {close, yes, "edited closed"},
             {select, none, "unchanged"},
             {select, no, "unchanged kept choosing"},
             {remove, none, "unchanged"},
             {remove, no, "unchanged"},
             {remove, yes, "gone empty"}}) {
        editor.Show_Form();
        Select(stored);
        editor.Rows()[0]->txtField.Enter("new");
        desktop.answers = {answer};
        desktop.file_choices.clear();
        desktop.boxes.clear();
        Click(command);
        EXPECT_EQ(desktop.boxes.at(0).buttons, Buttons::yes_no);
        EXPECT_EQ(outcome(), result) << command;
        response.Close();
        // The next turn begins without edits.
        desktop.answers = {Answer::no};
        editor.Close_Form();
        std::filesystem::remove(kept);
    }
    const std::string wait_and_answer = "Contacting Server ...\r\nOK\r\n";
    EXPECT_EQ(pages, wait_and_answer + wait_and_answer);
    // Without edits nothing is asked.
    editor.Show_Form();
    Select(stored);
    desktop.boxes.clear();
    for (const auto command : {select, send, close})
        Click(command);
    EXPECT_TRUE(desktop.boxes.empty());
    EXPECT_EQ(editor.Rows().size(), 20U) << "a dialog that is left takes nothing away";
}

TEST_F(Pirep_Editor, The_Answer_Is_Shown_After_The_Wait_And_Its_Files_Go_With_It) {
    std::string seen;
    response.changed.Connect([&] { seen = response.Is_Open() ? response.Page() : "closed"; });
    response.Contact_Server();
    EXPECT_EQ(seen, "Contacting Server ...\r\n");
    EXPECT_EQ(Read("cs"), seen);
    const std::string answer("<p>\xC3\xA9\xE9\0</p>\r\n", 13);
    Write("sr", answer);
    response.Show_Response();
    EXPECT_EQ(seen, answer);
    std::filesystem::remove(directory / "cs");  // somebody else was faster
    response.hypClose.Click();
    EXPECT_EQ(seen, "closed");
    EXPECT_FALSE(exists(directory / "sr"));
    response.Contact_Server();
    response.hypClose.Click();
    EXPECT_FALSE(exists(directory / "cs"));
    // An answer that cannot be read leaves no wait on the screen.
    response.Contact_Server();
    response.Show_Response();
    EXPECT_EQ(seen, "closed");
    EXPECT_TRUE(exists(directory / "cs")) << "only the pilot's Close deletes";
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("frmResponse.Show_Response()")));
}

}  // namespace
}  // namespace norvane
