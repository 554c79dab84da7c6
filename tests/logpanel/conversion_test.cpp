// The simulator's own flight log turned into one of ours, byte for byte, and the dialog for it.

#include <gtest/gtest.h>

#include "common/line_reader.h"
#include "common/run_error.h"
#include "common/text.h"
#include "flightlog/mod_fs_log.h"
#include "logpanel/frm_convert_log.h"
#include "support/test_world.h"

namespace norvane {
namespace {

namespace fs = std::filesystem;
using test::Data_File;

class Conversion_Test : public test::Test_World {
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
    frmConvertLog form(services);
    std::string boxes;
    desktop.on_box = [&](const Message_Box& box) { boxes += box.text.substr(0, 28) + "\n"; };
    Link& convert = form.hypACARS[1];
    const auto told = [&](std::deque<Answer> answers) {
        boxes.clear();
        desktop.answers = std::move(answers);
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
}  // namespace norvane
