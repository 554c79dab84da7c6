// The navigation frame: what the mouse hits, and which one panel is seen.

#include "app/uc_app_frame.h"

#include <gmock/gmock.h>

#include "common/run_error.h"

namespace norvane::test {
namespace {

class App_Frame : public testing::Test {
  protected:
    App_Frame() {
        frame.Contain(first);
        frame.Contain(second);
        frame.AddItem({"One", "First", "The first"}, 1, "UCFIRST");
        frame.AddItem({"Two", "Second", "The second"}, 4, "ucSecond");
        frame.AddItem({"Three", "Third", "The third"}, 2, "ucMissing");
        frame.ItemSelected.Connect([this](const std::string& key) {
            selected.push_back(key + (second.Visible() ? " shown" : " hidden"));
        });
    }

    Frame_Panel first{"ucFirst"};
    Frame_Panel second{"ucSecond"};
    ucAppFrame frame;
    std::vector<std::string> selected;
};

TEST_F(App_Frame, Rows_begin_and_end_where_they_are_painted) {
    const struct {
        int x;
        int y;
        int hovered;
    } points[] = {
        {0, 99, 0},     {0, 100, 1},  {ucAppFrame::bar_width - 1, 1099, 1}, {0, 1100, 2},
        {0, 3099, 3},   {0, 3100, 0}, {ucAppFrame::bar_width, 500, 0},      {-1, 500, 0},
        {500, -950, 0},
    };
    for (const auto& point : points) {
        EXPECT_EQ(frame.Bar_Mouse_Move(point.x, point.y), point.hovered != 0);
        EXPECT_EQ(frame.Hovered(), point.hovered) << point.x << ", " << point.y;
    }
    EXPECT_EQ(ucAppFrame::Row_Area(2).top, 1100);
    EXPECT_EQ(selected.size(), 0U) << "moving selects nothing";
}

TEST_F(App_Frame, Shows_one_panel_and_tells_while_the_new_one_is_still_hidden) {
    EXPECT_TRUE(first.Visible());
    EXPECT_FALSE(second.Visible());
    EXPECT_EQ(frame.lblHeading.Text(), "The first");

    frame.Bar_Mouse_Up(500, 1500);
    EXPECT_FALSE(first.Visible());
    EXPECT_TRUE(second.Visible());
    EXPECT_EQ(frame.GetActivePanel(), &second);
    frame.Bar_Mouse_Up(500, 1500);
    frame.Bar_Mouse_Up(500, 3500);
    EXPECT_EQ(frame.Hovered(), 0);
    EXPECT_THAT(selected, testing::ElementsAre("Two hidden"));

    frame.Step(+5);
    EXPECT_EQ(frame.GetActivePanel(), nullptr) << "an item without a panel shows nothing";
    EXPECT_EQ(frame.lblHeading.Text(), "The third");
    EXPECT_FALSE(second.Visible());
    frame.Step(-1);
    frame.Step(-1);
    frame.Step(-1);
    EXPECT_EQ(frame.ActiveKey(), "One");
    EXPECT_TRUE(first.Visible());
}

TEST_F(App_Frame, A_listener_that_turns_elsewhere_and_wrong_keys_leave_one_panel_shown) {
    frame.ItemSelected.Connect([this](const std::string& key) {
        if (key == "Two")
            frame.SetActivePanel("One");
    });
    frame.SetActivePanel("Two");
    EXPECT_THROW(frame.SetActivePanel("Four"), Run_Error);
    EXPECT_THROW(frame.AddItem({"Two", "", ""}, 1, "ucFirst"), Run_Error);
    EXPECT_EQ(frame.Items().size(), 3U);
    EXPECT_TRUE(first.Visible());
    EXPECT_FALSE(second.Visible());
}

}  // namespace
}  // namespace norvane::test
