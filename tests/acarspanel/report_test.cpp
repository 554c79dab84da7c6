// The panel's report, byte for byte: of a flown flight with all there is, and of an untouched
// panel.

#include "acarspanel/panel_world.h"
#include "common/line_reader.h"

namespace norvane {
namespace {

class Panel_Report : public test::Panel_World {
  protected:
    void Expect_Report(const std::string& golden) {
        Panel().hypReport.Click();
        const auto report = directory / "report.html";
        EXPECT_EQ(desktop.opened_files, std::vector{report});
        desktop.opened_files.clear();
        EXPECT_EQ(Read_File(report), Read_File(test::Data_File("reports/" + golden)));
        EXPECT_FALSE(desktop.busy);
    }
};

TEST_F(Panel_Report, A_flown_flight_with_own_fields) {
    Write("bin/optfields.cfg", "Gate^\r\nType^Charter|Ferry\r\n");
    Write("VA_One/server.cfg", "www.example.org\r\n/pirep\r\n\r\n");
    std::string form;
    for (int i = 0; i < 41; ++i)
        form += "Label^name\r\n";
    Write("VA_One/pirep.cfg", form);
    std::string fields;
    for (int i = 0; i < 10; ++i)
        fields += "Crew " + std::to_string(i) + "^^name\r\n";
    Write("VA_One/vafields.cfg", fields);
    Begin("One");
    Panel().txtComments.Enter("two\nlines & <more>");
    Panel().txtFlightPlan.Enter("KAAA DCT KBBB");
    Panel().txtPax.Enter("12");
    Panel().txtCargo.Enter("400");
    Panel().optFields[0].txt.Enter(" 12 ");
    Panel().optFields[1].cbo.Choose(1);
    for (std::size_t i = 0; i < Panel().vaFields.size(); ++i)
        Panel().vaFields[i].txt.Enter("n" + std::to_string(i));
    Fly();
    Expect_Report("panel.html");
}

TEST_F(Panel_Report, An_untouched_panel_shows_no_placeholder_and_a_failure_opens_nothing) {
    Begin();
    Panel().txtComments.Set_Text(empty_field);
    Panel().txtAircraftID.Set_Text(empty_field);
    Expect_Report("panel-untouched.html");
    // Again: the page before gives way.
    Expect_Report("panel-untouched.html");
    std::filesystem::remove(directory / "report.html");
    std::filesystem::create_directory(directory / "report.html");
    Panel().hypReport.Click();
    EXPECT_TRUE(desktop.opened_files.empty());
    EXPECT_EQ(Take_Boxes().size(), 1U);
    const auto errors = Take_Errors();
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_NE(errors[0].find("ucACARS.ACARS_REPORT()"), std::string::npos) << errors[0];
}

}  // namespace
}  // namespace norvane
