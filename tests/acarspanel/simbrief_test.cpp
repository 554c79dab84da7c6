// A plan of SimBrief on the panel: what is asked, what a Yes fills, and what becomes of the planned
// figures.

#include "acarspanel/network_world.h"
#include "blackbox/flight_store.h"
#include "common/line_reader.h"

namespace norvane::test {
namespace {

class Panel_Simbrief : public Network_World {
  protected:
    Panel_Simbrief() {
        Begin();
        Settings().Set_WX_URL("NONE");
        Settings().Set_SimBrief_User("zoe");
        Write("bin/plans.cfg", "[SIMBRIEF]\r\nURL=" + server.Host() + "\r\nDATA=/plan\r\n");
        Plan_From("KAAA", "2026-03-14T10:00:00Z");
    }
    void Plan_From(const std::string& origin, const std::string& made) {
        std::string plan = Read_File(Data_File("plans/simbrief.json"));
        for (const auto& [from, to] : {std::pair<std::string, std::string>{"omaa", origin},
                                       {"OMDB", "KBBB"},
                                       {"2026-02-11T09:49:00Z", made}})
            plan = Replace_All(plan, from, to);
        Set_Page("/plan?username=zoe&json=v2", plan);
    }
    /// Fetches, gives this answer and returns the question.
    std::string Ask(Answer answer) {
        Click(Panel().hypSimBrief, {answer});
        const auto boxes = Take_Boxes();
        return boxes.empty() ? "" : boxes.back();
    }
    [[nodiscard]] std::string Shown() {
        ucACARS& panel = Panel();
        return Texts(panel.txtOrigin, panel.lblOriginName, panel.txtDestination,
                     panel.txtFlightNumber, panel.txtAircraftType, panel.txtAircraftID,
                     panel.txtCargo, panel.txtFlightLevel, panel.txtFlightPlan, panel.lblATCFlight);
    }
    [[nodiscard]] std::string Planned_Column() {
        std::string column;
        for (const Label& label : Panel().lblPlanned)
            column += label.Text() + "|";
        return column;
    }
};

TEST_F(Panel_Simbrief, Only_a_Yes_to_what_was_shown_takes_the_plan_over) {
    ucACARS& panel = Panel();
    EXPECT_FALSE(panel.hypSimBrief.Enabled());
    Settings().Set_VATSIM_FP(1);
    panel.hypOn.Click();
    EXPECT_TRUE(panel.network_plan.tmrVATSIM.Enabled());
    panel.txtFlightPlan.Enter("typed");
    const std::string before = Shown();
    for (const Answer answer : {Answer::no, Answer::none}) {
        Expect_As_Looked_At("plans/simbrief-asked.txt", Ask(answer));
        EXPECT_EQ(Shown(), before);
        EXPECT_EQ(Planned_Column(), std::string(planned_count, '|'));
    }
    EXPECT_FALSE(panel.network_plan.Is_Applied());
    (void)Ask(Answer::yes);
    EXPECT_EQ(Shown(),
              "KAAA|Alpha Field|KBBB|112|A320|A6-EIA|2000|9000|KADIL P570 \xC9LIXA/X|VMS112");
    EXPECT_EQ(Planned_Column(),
              "1020Z|1035Z|1057Z|1059Z|4515 lbs|4315 lbs|3008 lbs|1696 lbs|1496 lbs|");
    EXPECT_TRUE(panel.chkIFR.Checked());
    EXPECT_EQ(program->engine.Form_ICAO_Arrive(), "KBBB");
    EXPECT_EQ(program->engine.State().flight_number, "112") << "messages carry it";
    EXPECT_FALSE(panel.network_plan.tmrVATSIM.Enabled()) << "no other plan takes its place";
}

TEST_F(Panel_Simbrief, An_old_plan_and_one_from_elsewhere_are_doubted_in_the_question) {
    Panel().hypOn.Click();
    Plan_From("KCCC", "2026-03-14T03:09:00Z");
    EXPECT_THAT(Ask(Answer::no), AllOf(HasSubstr("The plan was made 12 hours ago.\r\n"
                                                 "It begins at KCCC, but the aircraft stands at "
                                                 "KAAA.\r\n\r\nWould you"),
                                       HasSubstr("Origin: KCCC in place of KAAA")));
    Plan_From("kaaa", "2026-03-14T03:10:00Z");
    EXPECT_THAT(Ask(Answer::no), Not(HasSubstr("The plan was made"))) << "not yet 12 hours";
    Plan_From("KAAA", "2026-03-11T03:09:00Z");
    clock.utc = Date_Time{{2026, 3, 15}, {3, 9, 0}};
    EXPECT_THAT(Ask(Answer::no), HasSubstr("The plan was made 4 days ago.\r\n\r\n"));
}

TEST_F(Panel_Simbrief, What_is_no_plan_is_told_and_nothing_is_asked) {
    Panel().hypOn.Click();
    Set_Page("/plan?username=zoe&json=v2", R"({"fetch":{"status":"Error: Unknown UserID"}})");
    EXPECT_THAT(Ask(Answer::yes), HasSubstr("\"Error: Unknown UserID\""));
    Settings().Set_SimBrief_User("");
    EXPECT_THAT(Ask(Answer::yes), HasSubstr("hold no SimBrief user"));
    EXPECT_EQ(Planned_Column(), std::string(planned_count, '|'));
    EXPECT_THAT(Take_Errors(), SizeIs(2));
}

TEST_F(Panel_Simbrief, A_flight_that_is_over_is_asked_nothing_and_given_nothing) {
    Panel().hypOn.Click();
    While_Next_Request_Runs([&] {
        Panel().hypSimBrief.Click();
        Give_Up();
        Panel().hypOn.Click();
    });
    EXPECT_EQ(Ask(Answer::yes), "");
    EXPECT_THAT(Take_Asked(), SizeIs(1)) << "one request at a time";
    // At the gate before the answer came.
    While_Next_Request_Runs([&] {
        Roll();
        Lift_Off();
        Touch_Down();
        Park();
    });
    EXPECT_EQ(Ask(Answer::yes), "");
    Log();
    Stand();
    Panel().hypOn.Click();
    // Over while the question is open.
    desktop.on_box = [&](const Message_Box& box) {
        desktop.on_box = nullptr;
        if (box.title == "SimBrief") {
            desktop.answers = {Answer::yes, Answer::yes};
            Panel().hypReset.Click();
            Panel().hypOn.Click();
        }
    };
    (void)Ask(Answer::yes);
    EXPECT_EQ(Panel().txtFlightPlan.Text(), "");
    EXPECT_EQ(Planned_Column(), std::string(planned_count, '|'));
}

TEST_F(Panel_Simbrief, Planned_figures_are_resumed_and_gone_with_the_flight) {
    Settings().Set_ACARS_Fuel(1);
    EXPECT_TRUE(Settings().Save_Settings());
    Stand();
    Panel().hypOn.Click();
    (void)Ask(Answer::yes);
    Roll();
    Lift_Off();
    const std::string column = "1020Z|1035Z|1057Z|1059Z|2048 kg|1957 kg|1364 kg|769 kg|679 kg|";
    EXPECT_EQ(Planned_Column(), column);
    Begin();
    EXPECT_EQ(Planned_Column(), column);
    Settings().Set_WX_URL("NONE");
    std::filesystem::remove_all(directory / "flights");
    Panel().hypOn.Click();
    EXPECT_EQ(Panel().lblATCFlight.Text(), "VMS112");
    Touch_Down();
    Park();
    Log();
    EXPECT_EQ(Planned_Column(), column) << "it is read beside what was flown";
    program->archive.Finish();
    EXPECT_EQ(Flight_Store(directory / "flights", Store_Use::look).List().at(0).planned.size(), 9U)
        << "in the recording that was begun anew, too";
    Stand();
    Panel().hypOn.Click();
    EXPECT_EQ(Planned_Column(), std::string(planned_count, '|'));
    Roll();
    Lift_Off();
    EXPECT_EQ(store.Get(flight_section, "Planned"), "");
}

}  // namespace
}  // namespace norvane::test
