#include "acarspanel/panel_world.h"
#include "common/line_reader.h"

namespace norvane::test {
namespace {

class Panel_Custom_Fields : public Panel_World {
  protected:
    std::vector<int> Pages(Link& link) {
        std::vector<int> pages;
        while (link.Enabled() && pages.size() < 5) {
            link.Click();
            pages.push_back(Panel().Page());
        }
        return pages;
    }
};

TEST_F(Panel_Custom_Fields, Definitions_decide_which_input_is_shown_and_read) {
    Write("bin/optfields.cfg",
          "Gate^\r\n\r\nType^Charter| Ferry \r\nMore^\r\nMore^\r\nLast^\r\nBeyond^\r\n");
    Begin();
    auto& fields = Panel().optFields;
    EXPECT_EQ(Texts(fields[0].lblCaption, fields[1].lblCaption, fields[4].lblCaption),
              "Gate|Type|Last");
    EXPECT_EQ(fields[0].Shown(), &fields[0].txt);
    EXPECT_EQ(fields[1].Shown(), &fields[1].cbo);
    EXPECT_FALSE(fields[1].txt.Enabled() || fields[0].cbo.Visible());
    fields[0].txt.Enter("  [     ] ");
    fields[1].cbo.Choose(1);
    fields[1].txt.Set_Text("not this");
    fields[2].txt.Enter(" 12 ");
    Panel().vaFields[0].txt.Set_Text("disabled");
    Log();
    EXPECT_EQ(program->log_entry.OPTIONAL_FIELDS(0), "");
    EXPECT_EQ(program->log_entry.OPTIONAL_FIELDS(1), "Ferry");
    EXPECT_EQ(program->log_entry.OPTIONAL_FIELDS(2), "12");
    EXPECT_EQ(program->log_entry.VA_FIELDS(0), "");
    // Broken, the definitions count as far as they go.
    Write("bin/optfields.cfg", "Gate^\r\nbroken\r\nLost^\r\n");
    Begin();
    EXPECT_TRUE(Panel().optFields[0].lblCaption.Visible());
    EXPECT_FALSE(Panel().optFields[1].lblCaption.Visible());
    EXPECT_THAT(Take_Errors(), testing::Contains(HasSubstr("ucACARS.Load_Optional_Fields()")));
}

TEST_F(Panel_Custom_Fields, Another_airline_brings_its_own_fields_or_none) {
    Write_Airline("One", "Crew^^crew\r\nClass^Y|J^class\r\n");
    Write_Airline("Two", "Meal^Hot|Cold^meal\r\n");
    Begin("One");
    auto& fields = Panel().vaFields;
    EXPECT_TRUE(fields[0].txt.Enabled());
    EXPECT_EQ(fields[1].cbo.Entries(), (std::vector<std::string>{"Y", "J"}));
    fields[0].txt.Enter("Ann");
    fields[1].cbo.Choose(1);
    EXPECT_EQ(Pages(Panel().hypNext), (std::vector{1, 3}));
    Panel().VA_Change();
    EXPECT_EQ(Texts(fields[0].txt, fields[1].cbo), "Ann|J") << "the same airline, read again";

    const auto fly_for = [&](const std::string& airline) {
        program->airline.Get_VA_Settings(airline);
        Panel().VA_Change();
    };
    fly_for("Two");
    EXPECT_EQ(Texts(fields[0].lblCaption, fields[0].txt, fields[1].lblCaption), "Meal||");
    EXPECT_EQ(fields[0].Shown(), &fields[0].cbo);
    EXPECT_FALSE(fields[0].txt.Enabled() || fields[1].cbo.Enabled());
    EXPECT_FALSE(fields[1].lblCaption.Visible());

    fly_for("DEFAULT");
    EXPECT_EQ(fields[0].Shown(), nullptr);
    EXPECT_FALSE(fields[0].cbo.Enabled());
    EXPECT_EQ(Panel().Page(), 1) << "the page that was shown is gone";
}

TEST_F(Panel_Custom_Fields, Pages_without_fields_are_skipped) {
    Write_Airline("One", "Crew^^crew\r\n");
    Begin();
    EXPECT_EQ(Panel().Page(), 0);
    EXPECT_FALSE(Panel().hypBack.Enabled());
    EXPECT_EQ(Pages(Panel().hypNext), (std::vector{1}));
    Begin("One");
    EXPECT_EQ(Pages(Panel().hypNext), (std::vector{1, 3}));
    EXPECT_EQ(Pages(Panel().hypBack), (std::vector{1, 0}));
    Write("bin/optfields.cfg", "Gate^A|B\r\n");
    Begin("One");
    ucACARS& panel = Panel();
    std::vector<const Control*> focus;
    panel.Focus_Moved.Connect([&](const Control& control) { focus.push_back(&control); });
    EXPECT_EQ(Pages(panel.hypNext), (std::vector{1, 2, 3}));
    EXPECT_EQ(Pages(panel.hypBack), (std::vector{2, 1, 0}));
    EXPECT_THAT(focus,
                ElementsAre(&panel.txtFlightNumber, &panel.optFields[0].cbo, &panel.vaFields[0].txt,
                            &panel.optFields[0].cbo, &panel.txtFlightNumber, &panel.txtDate));
    program->airline.Get_VA_Settings("DEFAULT");
    panel.VA_Change();
    EXPECT_EQ(Pages(panel.hypNext), (std::vector{1, 2}));
}

/// The panel's page for the browser, byte for byte.
class Panel_Report : public Panel_World {
  protected:
    void Expect_Report(const std::string& golden) {
        Panel().hypReport.Click();
        EXPECT_THAT(desktop.opened_files, ElementsAre(directory / "report.html"));
        desktop.opened_files.clear();
        EXPECT_EQ(Read("report.html"), Read_File(Data_File("reports/" + golden)));
        EXPECT_FALSE(desktop.busy);
    }
};

TEST_F(Panel_Report, A_flown_flight_fills_every_field_of_its_row_and_of_the_page) {
    Write("bin/optfields.cfg", "Gate^\r\nType^Charter|Ferry\r\n");
    std::string fields;
    for (int i = 0; i < 10; ++i)
        fields += "Crew " + std::to_string(i) + "^^name\r\n";
    Write_Airline("One", fields);
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
    Log();
    EXPECT_EQ(
        log.back(),
        "3/14/2026|Test Jet|N123|KAAA|Alpha Field|1405Z|1410Z|6699 lbs|KBBB|Bravo Field|1440Z|"
        "1450Z|4020 lbs|0.8|0:45|2679 lbs|0.5|0:30|1340 lbs|two lines & <more>|77|12|400|5000|"
        "KAAA DCT KBBB|60 nm|90000 lbs|100000 lbs|99000 lbs|98000 lbs|97000 lbs|"
        "E1N1 91 /E1N2 0 /E2N1 92 /E2N2 0|140 kts|-300 ft/min|120 kts|"
        "KAAA 141400Z 00000KT 0SM SKC 0/0 A0000|KBBB 141450Z 00000KT 0SM SKC 0/0 A0000|VFR|12|"
        "Ferry||||n0|n1|n2|n3|n4|n5|n6|n7|n8|n9");
    EXPECT_EQ(Texts(Panel().lblFuelOff, Panel().lblFuelOn, Panel().lblMaxTaxiOrigin,
                    Panel().lblMaxTaxiDestination, Panel().lblATCFlight),
              "6029 lbs|4689 lbs|16 kts|10 kts|Test Air - 77");
}

TEST_F(Panel_Report, An_untouched_panel_shows_no_placeholder_and_a_failure_opens_nothing) {
    Begin();
    Panel().txtComments.Set_Text(empty_field);
    Panel().txtAircraftID.Set_Text(empty_field);
    Expect_Report("panel-untouched.html");
    std::filesystem::remove(directory / "report.html");
    std::filesystem::create_directory(directory / "report.html");
    Panel().hypReport.Click();
    EXPECT_THAT(desktop.opened_files, IsEmpty());
    EXPECT_THAT(Take_Boxes(), SizeIs(1));
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("ucACARS.ACARS_REPORT()")));
}

}  // namespace
}  // namespace norvane::test
