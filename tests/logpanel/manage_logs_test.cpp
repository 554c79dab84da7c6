// The dialog that manages the flight logs: no log is lost by adding one, by deleting another, or by
// turning to another with edits that were not saved.

#include <gtest/gtest.h>

#include "flightlog/log_reading.h"
#include "logpanel/frm_flight_log.h"
#include "logpanel/log_world.h"

namespace norvane {
namespace {

using test::Full_Line;
using Command = frmFlightLog::Command;
using test::Texts;

class Manage_Logs_Test : public test::Log_World {
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

}  // namespace
}  // namespace norvane
