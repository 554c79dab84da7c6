// The dialog that manages the flight logs: no log is lost by adding one, by deleting another, or by
// turning to another with edits that were not saved.

#include <gtest/gtest.h>

#include "config/log_names.h"
#include "flightlog/frm_flight_log.h"
#include "flightlog/log_reading.h"
#include "flightlog/log_world.h"

namespace norvane {
namespace {

using test::Full_Line;
using Command = frmFlightLog::Command;

class Manage_Logs_Test : public test::Log_World {
  protected:
    Manage_Logs_Test() {
        Write(log_file, Full_Line("1/1/2008|B738"));
        Write("logs/Jets.txt", jets);
        Start();
        settings->ActiveLogChange.connect([this] { log->FlightLog_Change(); });
        form.emplace(services, *settings);
    }
    /// Opens the dialog; the pilot names a log and clicks a link, which must be enabled or not.
    void Open_And_Click(const std::string& name, Command command, bool enabled) {
        bool closed = false;
        auto closing = form->closed.connect([&] { closed = true; });
        auto showing = form->shown.connect([&] {
            form->cboLogs.Enter(name);
            EXPECT_EQ(form->hypACARS.at(command).Enabled(), enabled) << name;
            form->hypACARS.at(command).Click();
        });
        form->Show_Form();
        showing.disconnect();
        closing.disconnect();
        EXPECT_EQ(closed, enabled && command == Command::activate);
        EXPECT_FALSE(desktop.busy);
    }

    const std::string jets = Full_Line("5/1/2008|A320") + Full_Line("5/2/2008|A320");
    std::optional<frmFlightLog> form;
};

TEST_F(Manage_Logs_Test, A_new_log_never_takes_the_place_of_another) {
    Open_And_Click("Props", Command::add, true);
    EXPECT_EQ(Take_Boxes(), std::vector<std::string>{"Flight Log: Props added"});
    EXPECT_EQ(Read("logs/Props.txt"), "\r\n");
    EXPECT_EQ(form->cboLogs.Entries(),
              (std::vector<std::string>{"Jets", "My Flight Log", "Props"}));
    Open_And_Click("Jets", Command::add, false);
    Open_And_Click("", Command::add, false);
    EXPECT_TRUE(Take_Boxes().empty());
    // On some systems this is the same file.
    Open_And_Click("JETS", Command::add, true);
    EXPECT_EQ(Take_Boxes(),
              std::vector<std::string>{"There is a flight log named \"Jets\" already."});
    EXPECT_EQ(Read("logs/Jets.txt"), jets);
    EXPECT_FALSE(Exists("logs/JETS.txt"));
    Open_And_Click("../Outside", Command::add, true);
    EXPECT_EQ(Take_Boxes().size(), 1U);
    EXPECT_FALSE(Exists("Outside.txt"));
}

TEST_F(Manage_Logs_Test, A_log_is_deleted_when_the_pilot_is_sure) {
    const std::string question = "Are you sure you want to delete the Jets flight log?";
    Write("logs/Jets.bak", "backup");
    Open_And_Click("Jets", Command::remove, true);
    EXPECT_EQ(Take_Boxes(), std::vector<std::string>{question});
    EXPECT_EQ(Read("logs/Jets.txt"), jets);
    desktop.answers = {Answer::yes};
    Open_And_Click("Jets", Command::remove, true);
    EXPECT_EQ(Take_Boxes(), (std::vector<std::string>{question, "Flight Log: Jets deleted"}));
    EXPECT_FALSE(Exists("logs/Jets.txt"));
    EXPECT_EQ(Read("logs/Jets.bak"), "backup");
    EXPECT_EQ(form->cboLogs.Entries(), std::vector<std::string>{"My Flight Log"});
}

TEST_F(Manage_Logs_Test, The_active_log_and_what_is_no_log_stay) {
    Write("Outside.txt", "precious");
    Open_And_Click("My Flight Log", Command::remove, false);
    Open_And_Click("My Flight Log", Command::activate, false);
    EXPECT_TRUE(Take_Boxes().empty());
    // Asked for without the dialog's links. The second name has the active log's file.
    for (const auto* name : {"My Flight Log", "my flight log", "../Outside", ""}) {
        desktop.answers = {Answer::yes};
        form->cboLogs.Enter(name);
        EXPECT_FALSE(form->FlightLog_Delete()) << name;
    }
    EXPECT_TRUE(Exists(log_file));
    EXPECT_EQ(Read("Outside.txt"), "precious");
    for (const auto* name : {"../Outside", ""}) {
        form->cboLogs.Enter(name);
        EXPECT_FALSE(form->FlightLog_Active()) << name;
    }
    EXPECT_EQ(settings->FlightLog(), "My Flight Log");
}

TEST_F(Manage_Logs_Test, Logs_that_cannot_be_told_apart_are_neither_offered_nor_opened) {
    const auto refused = [&](const std::string& name) {
        form->cboLogs.Enter(name);
        const bool done = form->FlightLog_Delete() || form->FlightLog_Active() ||
                          form->FlightLog_Add() || log->Copy_To_Log(name);
        return !done && Take_Boxes().size() == 4;
    };
    log->Set_Current_Row(0);
    const std::vector<std::string> files{"\xE6\x97\xA5\xE6\x9C\xAC", "\xE6\x9D\xB1\xE4\xBA\xAC",
                                         "\xC4\xB6", "\xC4\xB8"};
    // Only its own letters are lost: it is one log still.
    Write("logs/\xC5\x81odz.txt", "1/1/2008|alone\r\n");
    for (const std::string& file : files)
        Write("logs/" + file + ".txt", "1/1/2008|" + file + "\r\n");
    EXPECT_EQ(List_Logs(services), (std::vector<std::string>{"Jets", "Lodz", "My Flight Log"}));
    EXPECT_EQ(Read_Log(services, "Lodz").Row_Count(), 1U);
    EXPECT_EQ(Hidden_Logs(services).size(), files.size());
    for (const auto* name : {"??", "K", "k"}) {
        EXPECT_TRUE(refused(name)) << name;
        EXPECT_THROW(static_cast<void>(Read_Log(services, name)), Run_Error) << name;
    }
    for (const std::string& file : files) {
        EXPECT_THROW(static_cast<void>(Log_Name_From_Utf8(file)), Run_Error);
        EXPECT_EQ(Read("logs/" + file + ".txt"), "1/1/2008|" + file + "\r\n");
    }
    EXPECT_EQ(Log_Name_From_Utf8("Zo\xC3\xAB"), "Zo\xEB");
    Start();
    EXPECT_NE(log->lblStatus.Text().find("cannot be told apart"), std::string::npos);
}

TEST_F(Manage_Logs_Test, Another_log_is_shown_and_unsaved_edits_are_kept) {
    log->Commit_Edit(0, 2, "77");
    Open_And_Click("Jets", Command::activate, true);
    EXPECT_EQ(Take_Boxes(), std::vector<std::string>{"Jets is now the active Flight Log"});
    EXPECT_EQ(form->lblActiveLog.Text(), "Jets");
    EXPECT_EQ(clsAppSettings(services).FlightLog(), "Jets") << "at the next start too";
    ASSERT_EQ(log->Table().Row_Count(), 2U);
    EXPECT_EQ(log->Table().Get(1, 0), "5/2/2008");
    EXPECT_EQ(Read("logs/My Flight Log.unsaved"), Full_Line("1/1/2008|B738|77"));
    EXPECT_EQ(Read(log_file), Full_Line("1/1/2008|B738"));
    EXPECT_NE(log->lblStatus.Text().find(".unsaved"), std::string::npos);
    EXPECT_EQ(Take_Errors().size(), 1U) << "the error log names that file";
    Open_And_Click("Jets", Command::remove, false);
    EXPECT_EQ(Read("logs/Jets.txt"), jets);
}

}  // namespace
}  // namespace norvane
