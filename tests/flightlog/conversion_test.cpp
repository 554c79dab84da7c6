// The simulator's own flight log turned into one of ours, byte for byte, and the dialog for it.

#include <gtest/gtest.h>

#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/run_error.h"
#include "flightlog/frm_convert_log.h"
#include "flightlog/log_reading.h"
#include "flightlog/mod_fs_log.h"
#include "support/test_world.h"

namespace norvane {
namespace {

namespace fs = std::filesystem;
using test::Data_File;

class Conversion_Test : public test::Test_World {
  protected:
    [[nodiscard]] std::string Converted(std::string_view content) {
        const auto source = Write("some.log", content);
        return Read_File(modFSLog::Convert(services, source, "Old"));
    }

    const fs::path simulator_log = Data_File("conversion/simulator.log");
    const std::string golden = Read_File(Data_File("conversion/converted.txt"));
};

TEST_F(Conversion_Test, Takes_the_flights_and_leaves_the_rest) {
    const auto file = modFSLog::Convert(services, simulator_log, "Old Flights");
    EXPECT_EQ(file, directory / "convertedlogs" / "Old Flights.txt");
    EXPECT_EQ(Read_File(file), golden);
    // It can be put among the logs as it is.
    const Log_Reading reading = Parse_Log(golden);
    EXPECT_EQ(reading.set_aside, "");
    EXPECT_EQ(reading.table.Row_Count(), 9U);
    EXPECT_EQ(reading.table.Get(3, 13), "1234.5");
    EXPECT_FALSE(fs::exists(directory / "templog.log"));
}

TEST_F(Conversion_Test, Replaces_what_was_converted_before) {
    EXPECT_NE(Converted(Read_File(simulator_log)), "");
    EXPECT_EQ(Converted("\n\n\n\n\n1/1/2008"), "1/1/2008" + std::string(41, '|') + "\r\n");
    services.regional.short_date = "dd.MM.yyyy";
    EXPECT_EQ(Converted("\n\n\n\n\n31.1.2008"), "31.01.2008" + std::string(41, '|') + "\r\n");
}

TEST_F(Conversion_Test, A_failure_keeps_what_was_converted_before) {
    const auto file = modFSLog::Convert(services, simulator_log, "Old");
    EXPECT_THROW(modFSLog::Convert(services, directory / "missing.log", "Old"), Run_Error);
    // Nothing but the heading, not even that, nothing at all, two bytes a character.
    for (const std::string content : {"1\n2\n3\n4\n5\n", "1\n2\n3\n1/1/2008\n", "", "\xFF\xFE\x31"})
        EXPECT_THROW(static_cast<void>(Converted(content)), Run_Error) << content;
    EXPECT_EQ(Read_File(file), golden);
    EXPECT_THROW(modFSLog::Convert(services, simulator_log, "../Old"), Run_Error);
    EXPECT_FALSE(fs::exists(directory / "Old.txt"));
}

TEST_F(Conversion_Test, The_dialog_converts_what_was_chosen_and_named) {
    const auto source = Write("a/b/c/d/sim.log", Read_File(simulator_log));
    frmConvertLog form(services);
    std::vector<std::string> boxes;
    desktop.on_box = [&](const Message_Box& box) { boxes.push_back(box.text); };
    Link& convert = form.hypACARS[1];
    form.shown.connect([&] {
        form.txtName.Enter("Old");
        EXPECT_FALSE(convert.Enabled()) << "no file yet";
        form.FlightLog_Select();
        EXPECT_FALSE(convert.Enabled()) << "given up";
        desktop.chosen_files = {source};
        form.hypACARS[0].Click();
        EXPECT_EQ(desktop.file_choices.back().filter, "Log Files (*.log)|*.log");
        EXPECT_TRUE(form.lblSelectedLog.Text().ends_with("/../d/sim.log"));
        for (const auto* name : {"a:b", "Old"}) {
            form.txtName.Enter(name);
            convert.Click();
        }
        EXPECT_EQ(form.lblStatus.Text(), "Log-> Old");
        EXPECT_EQ(Read("convertedlogs/Old.txt"), golden);
        EXPECT_FALSE(fs::exists(directory / "logs/Old.txt")) << "not without a Yes";
        desktop.answers = {Answer::yes};
        convert.Click();
        EXPECT_EQ(Read("logs/Old.txt"), golden);
        // A log of the name is never written over.
        Write("logs/Old.txt", "1/1/2008|mine\r\n");
        desktop.answers = {Answer::yes};
        convert.Click();
        EXPECT_EQ(Read("logs/Old.txt"), "1/1/2008|mine\r\n");
        fs::remove(source);
        convert.Click();
        EXPECT_EQ(form.lblStatus.Text(), "") << "it failed";
    });
    form.Show_Form();
    ASSERT_EQ(boxes.size(), 9U);
    EXPECT_EQ(boxes[0], "The name of a flight log must not contain any of : * ? \" < > |");
    EXPECT_EQ(boxes[1], "FS Flight Log converted");
    EXPECT_NE(boxes[2].find((directory / "convertedlogs/Old.txt").string()), std::string::npos);
    const auto errors = Take_Errors();
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_NE(errors[0].find("frmConvertLog.FlightLog_Convert()"), std::string::npos);
    EXPECT_FALSE(desktop.busy);
}

}  // namespace
}  // namespace norvane
