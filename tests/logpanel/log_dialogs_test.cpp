// The dialogs about whole logs: no log is lost by adding one, by deleting another, by turning to
// another with edits that were not saved, or by converting the simulator's own.

#include "flightlog/mod_fs_log.h"
#include "logpanel/frm_convert_log.h"
#include "logpanel/frm_flight_log.h"
#include "logpanel/log_world.h"

namespace norvane::test {
namespace {

using Command = frmFlightLog::Command;

class Manage_Logs_Test : public Log_World {
  protected:
    Manage_Logs_Test() {
        Write(log_file, flight);
        Write("logs/Jets.txt", jets);
        Start();
        settings->ActiveLogChange.Connect([this] { log->FlightLog_Change(); });
        form.emplace(services, *settings);
    }
    /// Opens the dialog; the pilot names a log and clicks a link, which must be enabled or not.
    /// What he is told.
    Texts Open_And_Click(const std::string& name, Command command, bool enabled = true) {
        bool closed = false;
        auto closing = form->closed.Connect([&] { closed = true; });
        auto showing = form->shown.Connect([&] {
            form->cboLogs.Enter(name);
            EXPECT_EQ(form->hypACARS.at(command).Enabled(), enabled) << name;
            form->hypACARS.at(command).Click();
        });
        form->Show_Form();
        showing.Disconnect();
        closing.Disconnect();
        EXPECT_EQ(closed, enabled && command == Command::activate);
        return Take_Boxes();
    }

    const std::string flight = Full_Line("1/1/2008|B738");
    const std::string jets = Full_Line("5/1/2008|A320||||||||||||7.5") + Full_Line("5/2/2008|A320");
    std::optional<frmFlightLog> form;
};

TEST_F(Manage_Logs_Test, A_new_log_never_takes_the_place_of_another) {
    EXPECT_EQ(Open_And_Click("Props", Command::add), Texts{"Flight Log: Props added"});
    EXPECT_EQ(Read("logs/Props.txt"), "\r\n");
    EXPECT_EQ(form->cboLogs.Entries(), (Texts{"Jets", "My Flight Log", "Props"}));
    EXPECT_EQ(Open_And_Click("Jets", Command::add, false), Texts{});
    // On some systems this is the same file.
    EXPECT_EQ(Open_And_Click("JETS", Command::add),
              Texts{"There is a flight log named \"Jets\" already."});
    EXPECT_EQ(Open_And_Click("../Outside", Command::add).size(), 1U);
    EXPECT_EQ(Logs(), "Jets.txt My Flight Log.bak My Flight Log.txt Props.txt");
}

TEST_F(Manage_Logs_Test, A_log_is_deleted_when_the_pilot_is_sure_but_never_the_active_one) {
    const std::string question = "Are you sure you want to delete the Jets flight log?";
    Write("logs/Jets.bak", "backup");
    Write("Outside.txt", "precious");
    EXPECT_EQ(Open_And_Click("Jets", Command::remove), Texts{question});
    EXPECT_EQ(Read("logs/Jets.txt"), jets);
    for (const auto command : {Command::remove, Command::activate})
        EXPECT_EQ(Open_And_Click("My Flight Log", command, false), Texts{});
    // Asked for without the dialog's links. The second name has the active log's file.
    for (const auto* name : {"My Flight Log", "my flight log", "../Outside", ""}) {
        desktop.answers = {Answer::yes};
        form->cboLogs.Enter(name);
        EXPECT_FALSE(form->FlightLog_Delete()) << name;
        EXPECT_EQ(Take_Boxes().size(), 1U) << name;
    }
    desktop.answers = {Answer::yes};
    EXPECT_EQ(Open_And_Click("Jets", Command::remove),
              (Texts{question, "Flight Log: Jets deleted"}));
    EXPECT_EQ(form->cboLogs.Entries(), Texts{"My Flight Log"});
    EXPECT_EQ(Logs(), "Jets.bak My Flight Log.bak My Flight Log.txt");
    EXPECT_EQ(Read("Outside.txt"), "precious");
}

TEST_F(Manage_Logs_Test, Logs_that_cannot_be_told_apart_are_neither_offered_nor_opened) {
    for (const auto* file : {"\xE6\x97\xA5", "\xE6\x9D\xB1", "\xC4\xB6", "\xC4\xB8"})
        Write(std::string("logs/") + file + ".txt", "1/1/2008\r\n");
    const std::string files = Logs();
    log->Set_Current_Row(0);
    for (const auto* name : {"?", "K", "k"}) {
        form->cboLogs.Enter(name);
        EXPECT_FALSE(form->FlightLog_Delete() || form->FlightLog_Active() ||
                     form->FlightLog_Add() || log->Copy_To_Log(name));
        EXPECT_EQ(Take_Boxes().size(), 4U) << name;
        EXPECT_THROW(static_cast<void>(Read_Log(services, name)), Run_Error) << name;
    }
    EXPECT_EQ(Logs(), files);
    Start();
    EXPECT_TRUE(Contains(log->lblStatus.Text(), "cannot be told apart"));
}

TEST_F(Manage_Logs_Test, Another_log_is_shown_and_unsaved_edits_are_kept) {
    log->Commit_Edit(0, 2, "77");
    EXPECT_EQ(Open_And_Click("Jets", Command::activate),
              Texts{"Jets is now the active Flight Log"});
    EXPECT_EQ(clsAppSettings(services).FlightLog(), "Jets") << "at the next start too";
    EXPECT_EQ(log->tdbLogCaption.Text(), "Total Block Time: 7.5            Total Flight Time: 0.0");
    EXPECT_EQ(Read(unsaved), Full_Line("1/1/2008|B738|77"));
    EXPECT_TRUE(Contains(log->lblStatus.Text(), unsaved));
    EXPECT_TRUE(Contains(Errors(), unsaved));
    Log_Flight("5/6/2008");
    EXPECT_EQ(Read("logs/Jets.txt"), jets + Full_Line("5/6/2008|||||0900"));
    EXPECT_EQ(Read(log_file), flight);
}

class Conversion_Test : public Log_World {
  protected:
    [[nodiscard]] std::string Converted(std::string_view content, std::string_view name = "Old") {
        const auto file = modFSLog::Convert(services, Write("some.log", content), name);
        EXPECT_EQ(file, directory / "convertedlogs" / "Old.txt");
        return Read_File(file);
    }

    const std::string original = Read_File(Data_File("conversion/simulator.log"));
    const std::string golden = Read_File(Data_File("conversion/converted.txt"));
};

TEST_F(Conversion_Test, Takes_the_flights_and_leaves_the_rest) {
    EXPECT_EQ(Converted(original), golden);
    // What fails keeps what was converted before: nothing but the heading, not even that, nothing
    // at all, two bytes a character, and a name that leads elsewhere.
    for (const std::string content : {"1\n2\n3\n4\n5\n", "1\n2\n3\n1/1/2008\n", "", "\xFF\xFE\x31"})
        EXPECT_THROW(static_cast<void>(Converted(content)), Run_Error) << content;
    EXPECT_THROW(static_cast<void>(Converted(original, "../Old")), Run_Error);
    EXPECT_EQ(Read("convertedlogs/Old.txt"), golden);
    EXPECT_FALSE(fs::exists(directory / "Old.txt"));
    services.regional.short_date = "dd.MM.yyyy";
    EXPECT_EQ(Converted("\n\n\n\n\n31.1.2008"), "31.01.2008" + std::string(41, '|') + "\r\n");
}

TEST_F(Conversion_Test, The_dialog_converts_what_was_chosen_and_named) {
    const auto source = Write("a/b/c/d/sim.log", original);
    fs::remove(directory / "logs");
    frmConvertLog form(services);
    std::string boxes;
    desktop.on_box = [&](const Message_Box& box) { boxes += box.text.substr(0, 28) + "\n"; };
    Link& convert = form.hypACARS[1];
    const auto told = [&](std::deque<Answer> said) {
        boxes.clear();
        desktop.answers = std::move(said);
        convert.Click();
        return boxes;
    };
    const std::string converted = "FS Flight Log converted\nThe converted flights are in\n";
    form.shown.Connect([&] {
        form.txtName.Enter("a:b");
        form.FlightLog_Select();
        EXPECT_FALSE(convert.Enabled()) << "given up";
        desktop.chosen_files = {source};
        form.hypACARS[0].Click();
        EXPECT_TRUE(form.lblSelectedLog.Text().ends_with("/../d/sim.log"));
        EXPECT_EQ(told({}), "The name of a flight log mus\n");
        form.txtName.Enter("Old");
        EXPECT_EQ(told({Answer::no}), converted);
        EXPECT_EQ(form.lblStatus.Text(), "Log-> Old");
        EXPECT_FALSE(fs::exists(directory / "logs/Old.txt")) << "not without a Yes";
        EXPECT_EQ(told({Answer::yes}), converted + "Flight Log: Old added.  \"Man\n");
        EXPECT_EQ(Read("logs/Old.txt"), golden);
        // A log of the name is never written over.
        Write("logs/Old.txt", "1/1/2008|mine\r\n");
        EXPECT_EQ(told({Answer::yes}), converted);
        EXPECT_EQ(Read("logs/Old.txt"), "1/1/2008|mine\r\n");
        fs::remove(source);
        told({});
        EXPECT_EQ(form.lblStatus.Text(), "") << "it failed";
    });
    form.Show_Form();
    EXPECT_TRUE(Contains(Join(Take_Errors(), ""), "frmConvertLog.FlightLog_Convert()"));
}

}  // namespace
}  // namespace norvane::test
