#include "acarspanel/panel_world.h"

namespace norvane {
namespace {

std::string Lines(int count, std::string_view line) {
    std::string lines;
    for (int i = 0; i < count; ++i)
        lines += std::string(line) + "\r\n";
    return lines;
}

class Panel_Custom_Fields : public test::Panel_World {
  protected:
    /// An airline with a server whose form takes `fields` values of its own.
    void Write_Airline(const std::string& name, const std::string& fields) {
        Write("VA_" + name + "/server.cfg", "www.example.org\r\n/pirep\r\n\r\n");
        Write("VA_" + name + "/pirep.cfg", Lines(41, "Label^name"));
        Write("VA_" + name + "/vafields.cfg", fields);
    }
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
    Write("bin/optfields.cfg", "Gate^\r\n\r\nType^Charter| Ferry \r\n" + Lines(5, "More^"));
    Begin();
    EXPECT_EQ(Panel().optFields[0].lblCaption.Text(), "Gate");
    EXPECT_TRUE(Panel().optFields[0].txt.Visible());
    EXPECT_FALSE(Panel().optFields[0].cbo.Visible());
    EXPECT_EQ(Panel().optFields[1].cbo.Entries().size(), 2U);
    EXPECT_FALSE(Panel().optFields[1].txt.Enabled());
    EXPECT_EQ(Panel().optFields[4].lblCaption.Text(), "More");
    Panel().optFields[0].txt.Enter("  [     ] ");
    Panel().optFields[1].cbo.Choose(1);
    Panel().optFields[1].txt.Set_Text("not this");
    Panel().optFields[2].txt.Enter(" 12 ");
    Panel().vaFields[0].txt.Set_Text("disabled");
    desktop.answers = {Answer::yes};
    Panel().hypLog.Click();
    EXPECT_EQ(program->entry.OPTIONAL_FIELDS(0), "");
    EXPECT_EQ(program->entry.OPTIONAL_FIELDS(1), "Ferry");
    EXPECT_EQ(program->entry.OPTIONAL_FIELDS(2), "12");
    EXPECT_EQ(program->entry.VA_FIELDS(0), "");
}

TEST_F(Panel_Custom_Fields, A_broken_definition_ends_the_loading_and_is_reported) {
    Write("bin/optfields.cfg", "Gate^\r\nbroken\r\nLost^\r\n");
    Begin();
    EXPECT_TRUE(Panel().optFields[0].lblCaption.Visible());
    EXPECT_FALSE(Panel().optFields[1].lblCaption.Visible());
    const auto errors = Take_Errors();
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_NE(errors[0].find("ucACARS.Load_Optional_Fields()"), std::string::npos) << errors[0];
}

TEST_F(Panel_Custom_Fields, Another_airline_brings_its_own_fields_or_none) {
    Write_Airline("One", "Crew^^crew\r\nClass^Y|J^class\r\n");
    Write_Airline("Two", "Meal^Hot|Cold^meal\r\n");
    Begin("One");
    EXPECT_TRUE(Panel().vaFields[0].txt.Enabled());
    EXPECT_EQ(Panel().vaFields[1].cbo.Entries(), (std::vector<std::string>{"Y", "J"}));
    Panel().vaFields[0].txt.Enter("Ann");
    Panel().hypNext.Click();
    Panel().hypNext.Click();
    EXPECT_EQ(Panel().Page(), 3);

    program->airline.Get_VA_Settings("Two");
    Panel().VA_Change();
    EXPECT_EQ(Panel().vaFields[0].lblCaption.Text(), "Meal");
    EXPECT_FALSE(Panel().vaFields[0].txt.Enabled());
    EXPECT_EQ(Panel().vaFields[0].txt.Text(), "");
    EXPECT_TRUE(Panel().vaFields[0].cbo.Enabled());
    EXPECT_FALSE(Panel().vaFields[1].cbo.Enabled());
    EXPECT_FALSE(Panel().vaFields[1].lblCaption.Visible());

    program->airline.Get_VA_Settings("DEFAULT");
    Panel().VA_Change();
    EXPECT_EQ(Panel().vaFields[0].Shown(), nullptr);
    EXPECT_FALSE(Panel().vaFields[0].cbo.Enabled());
    EXPECT_EQ(Panel().Page(), 1) << "the page that was shown is gone";
}

TEST_F(Panel_Custom_Fields, Pages_without_fields_are_skipped) {
    Write_Airline("One", "Crew^^crew\r\n");
    Begin();
    EXPECT_EQ(Panel().Page(), 0);
    EXPECT_FALSE(Panel().hypBack.Enabled());
    EXPECT_EQ(Pages(Panel().hypNext), (std::vector{1}));
    Kill();
    Begin("One");
    EXPECT_EQ(Pages(Panel().hypNext), (std::vector{1, 3}));
    EXPECT_EQ(Pages(Panel().hypBack), (std::vector{1, 0}));
    Write("bin/optfields.cfg", "Gate^A|B\r\n");
    Kill();
    Begin("One");
    std::vector<const Control*> focus;
    Panel().Focus_Moved.connect([&](const Control& control) { focus.push_back(&control); });
    EXPECT_EQ(Pages(Panel().hypNext), (std::vector{1, 2, 3}));
    EXPECT_EQ(Pages(Panel().hypBack), (std::vector{2, 1, 0}));
    const std::vector<const Control*> expected = {
        &Panel().txtFlightNumber,  &Panel().optFields[0].cbo, &Panel().vaFields[0].txt,
        &Panel().optFields[0].cbo, &Panel().txtFlightNumber,  &Panel().txtDate,
    };
    EXPECT_EQ(focus, expected);
    program->airline.Get_VA_Settings("DEFAULT");
    Panel().VA_Change();
    EXPECT_EQ(Pages(Panel().hypNext), (std::vector{1, 2}));
}

}  // namespace
}  // namespace norvane
