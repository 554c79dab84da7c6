// What becomes of a flight that is not in the log when it is to leave the panel.

#include <functional>
#include <stdexcept>

#include "acarspanel/panel_world.h"

namespace norvane::test {
namespace {

constexpr std::string_view unlogged =
    "This flight has not been logged.  Would you like to log it now?";

class Flight_End : public Panel_World {
  protected:
    Flight_End() : kept(directory / "logs" / "My Flight Log.unsaved") { Begin_Anew(); }

    void Begin_Anew() {
        Kill();
        store.full = false;
        store.Delete_Section(flight_section);
        std::filesystem::remove(kept);
        std::filesystem::remove(directory / "logs" / "My Flight Log.txt");
        log.clear();
        closed = 0;
        Start();
        Take_Boxes();
        Take_Errors();
    }
    void Start() {
        Begin();
        program->Closed.Connect([this] { ++closed; });
    }
    void Close() { program->Close(ucACARS::Closing::by_pilot); }
    bool Is_Kept() const { return std::filesystem::exists(kept); }

    std::filesystem::path kept;
    int closed = 0;
};

TEST_F(Flight_End,
       A_question_about_a_finished_flight_does_what_is_answered_and_nothing_unanswered) {
    struct Case {
        std::string_view asks;
        std::function<void()> command;
        Answer answer;
        bool logged;
        bool kept;
        bool command_done;
    };
    const auto close = [this] { Close(); };
    const auto on = [this] { Panel().hypOn.Click(); };
    const auto reset = [this] { Panel().hypReset.Click(); };
    const auto signal = [this] { program->Close(ucACARS::Closing::by_signal); };
    const auto drop = [this] {
        Start();
        EXPECT_EQ(Panel().Drop_Stored_Flight(), kept);
    };
    const std::string give_up =
        "Give up this flight?  Its figures so far are kept in " + kept.string();
    const std::vector<Case> cases = {
        {unlogged, close, Answer::none, false, false, false},
        {unlogged, close, Answer::no, false, true, true},
        {unlogged, close, Answer::yes, true, false, true},
        {unlogged, on, Answer::none, false, false, false},
        {unlogged, on, Answer::no, false, true, true},
        {unlogged, on, Answer::yes, true, false, true},
        {give_up, reset, Answer::none, false, false, false},
        {give_up, reset, Answer::no, false, false, false},
        {give_up, reset, Answer::yes, false, true, true},
        {"", signal, Answer::yes, false, true, true},
        {"", drop, Answer::yes, false, true, true},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(i);
        const Case& one = cases[i];
        Begin_Anew();
        Fly();
        desktop.answers = {one.answer};
        one.command();
        EXPECT_EQ(log.size(), one.logged ? 1U : 0U);
        EXPECT_EQ(Is_Kept(), one.kept);
        EXPECT_EQ(Is_Stored(), !one.command_done);
        EXPECT_EQ(Panel().lblStored.Text().empty(), one.command_done);
        EXPECT_EQ(Panel().lblStored.Visible(), !one.command_done);
        EXPECT_EQ(Panel().Is_Tracked_Or_Stored(), !one.command_done || Panel().Is_Active());
        EXPECT_EQ(closed > 0 || Panel().Is_Active() || Panel().lblTimeOff.Text().empty(),
                  one.command_done);
        // Asked, then told where the row is.
        const bool asked = !one.asks.empty();
        const auto boxes = Take_Boxes();
        ASSERT_THAT(boxes, SizeIs(asked ? (one.kept ? 2U : 1U) : 0U));
        if (asked) {
            EXPECT_EQ(boxes[0], one.asks);
            EXPECT_THAT(boxes.back(), HasSubstr(one.kept ? kept.string() : one.asks));
        }
        if (one.kept) {
            EXPECT_THAT(Read(kept), AllOf(HasSubstr("|KAAA|Alpha Field|1405Z|1410Z|"),
                                          HasSubstr("|1440Z|1450Z|")));
        }
        Take_Errors();
        // Not answered, it is asked again, and nothing has ended.
        if (!one.command_done) {
            EXPECT_TRUE(program->link.Is_Open());
            desktop.answers = {Answer::yes};
            one.command();
            EXPECT_EQ(log.size() + (Is_Kept() ? 1U : 0U), 1U);
        }
    }
    Take_Errors();
}

TEST_F(Flight_End, Reset_asks_from_OUT_on_and_goes_on_with_a_flight_that_is_not_given_up) {
    Panel().hypOn.Click();
    Panel().hypReset.Click();
    EXPECT_THAT(Take_Boxes(), IsEmpty()) << "nothing has begun";
    for (const bool paused : {false, true}) {
        Begin_Anew();
        Take_Off();
        if (paused)
            Panel().hypPause.Click();
        Click(Panel().hypReset, {Answer::none});
        EXPECT_EQ(Panel().Is_Paused(), paused);
        EXPECT_EQ(Panel().tmr.Enabled(), !paused);
        EXPECT_EQ(Panel().tmrPos.Enabled(), !paused);
        EXPECT_TRUE(Is_Stored());
        EXPECT_FALSE(Is_Kept());
        bool stopped_before_the_store = false;
        Connection look = Events().Reset.Connect([&] { stopped_before_the_store = Is_Stored(); });
        Click(Panel().hypReset, {Answer::yes});
        look.Disconnect();
        EXPECT_TRUE(stopped_before_the_store);
        EXPECT_THAT(Read(kept), HasSubstr("|KAAA|Alpha Field|1405Z|1410Z|"));
        EXPECT_THAT(Take_Boxes().back(), HasSubstr(kept.string()));
        EXPECT_FALSE(Is_Stored() || Panel().Is_Tracked_Or_Stored());
        EXPECT_EQ(Panel().hypPause.Caption(), "Pause");
        EXPECT_EQ(Panel().txtOrigin.Text(), "");
        EXPECT_FALSE(Panel().tmr.Enabled() || Panel().tmrPos.Enabled());
    }
    // The next one is kept beside the first.
    Take_Off();
    Click(Panel().hypReset, {Answer::none});
    EXPECT_THAT(Take_Boxes(), ElementsAre(HasSubstr(kept.string() + "2")));
    // One that the log has, as far as it went, needs no question.
    Log();
    Take_Boxes();
    Panel().hypReset.Click();
    EXPECT_THAT(Take_Boxes(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(kept.string() + "2"));
    EXPECT_EQ(log.size(), 1U);
    Take_Errors();
}

TEST_F(Flight_End, A_row_that_can_be_kept_nowhere_calls_off_what_would_lose_it) {
    for (const bool in_the_air : {false, true}) {
        SCOPED_TRACE(in_the_air);
        Begin_Anew();
        if (in_the_air)
            Take_Off();
        else
            Fly();
        // A store that is full, and no directory that takes the row.
        store.full = true;
        program->services.program_directory = directory / "gone";
        Click(Panel().hypReset, {Answer::yes, Answer::none});
        EXPECT_EQ(Panel().lblTimeOff.Text(), "1410Z");
        desktop.answers = {in_the_air ? Answer::none : Answer::no, Answer::none};
        Close();
        EXPECT_EQ(closed, 0);
        EXPECT_EQ(Panel().lblTimeOff.Text(), "1410Z");
        EXPECT_EQ(Panel().tmr.Enabled(), in_the_air);
        EXPECT_THAT(Take_Boxes().back(), HasSubstr("could be kept nowhere"));
        Step();
        // Room again: what memory held is stored, and nothing is asked twice.
        store.full = false;
        program->services.program_directory = directory;
        Pass(seconds(6));
        EXPECT_EQ(Stored(Log_Field::TIME_OFF), "1410Z");
        EXPECT_EQ(Stored(Log_Field::TIME_IN), in_the_air ? "" : "1450Z");
        Take_Errors();
    }
}

TEST_F(Flight_End, A_signal_leaves_a_row_that_fits_nowhere_else_in_the_error_log) {
    Take_Off();
    store.full = true;
    program->services.program_directory = directory / "gone";
    Panel().Close(ucACARS::Closing::by_signal);
    EXPECT_EQ(closed, 1);
    EXPECT_THAT(Take_Errors(), testing::Contains(HasSubstr("|KAAA|Alpha Field|1405Z|1410Z|")));
}

TEST_F(Flight_End, A_program_killed_at_the_gate_has_the_flight_logged_once_at_its_next_start) {
    enum Kill_Point {
        unlogged_yet,
        waiting_for_weather,
        log_broken,
        store_full_too,
        behind_its_row
    };
    for (int i = 0; i < 10; ++i) {
        const auto moment = static_cast<Kill_Point>(i / 2);
        const bool logs_itself = i % 2 == 1;
        SCOPED_TRACE(i);
        Begin_Anew();
        Panel().txtFlightLevel.Enter("FL350");
        Land();
        if (moment == waiting_for_weather)
            Settings().Set_WX_URL("NOAA");
        Park();
        EXPECT_EQ(Panel().Is_At_Gate(), moment != waiting_for_weather);
        const bool had_failed = moment == log_broken || moment == store_full_too;
        Break_Log(had_failed);
        if (moment == behind_its_row)
            program->log_entry.NewLogEntrySave.Connect([] { throw std::runtime_error("killed"); });
        if (had_failed || moment == behind_its_row)
            Panel().hypLog.Click();
        Break_Log(false);
        // Then the noted row alone tells of the gate.
        if (moment == store_full_too)
            Store(Log_Field::TIME_IN, "");
        Take_Boxes();
        linked = false;
        Begin();
        EXPECT_EQ(Panel().Is_At_Gate(), moment != behind_its_row);
        Settings().Set_OPT_AutoLog(logs_itself);
        const bool asks = !logs_itself && moment != behind_its_row;
        for (const Answer answer : {Answer::none, Answer::no, Answer::yes}) {
            EXPECT_EQ(Is_Stored(), asks || (answer == Answer::none && moment != behind_its_row));
            desktop.answers = {answer};
            Panel().Settle_Stored_Flight();
            const std::string question = had_failed ? "A finished flight could not be saved to the "
                                                      "flight log: KAAA to KBBB, OFF 1410Z, IN"
                                                    : "A finished flight has not been logged: KAAA";
            const auto boxes = Take_Boxes();
            ASSERT_EQ(boxes.size(), asks ? 1U : 0U);
            EXPECT_TRUE(!asks || boxes[0].starts_with(question));
        }
        const std::string rows = Read("logs/My Flight Log.txt");
        EXPECT_THAT(rows, HasSubstr("|1405Z|1410Z|"));
        EXPECT_EQ(rows.find("\r\n"), rows.size() - 2) << "one row";
        EXPECT_FALSE(Is_Stored());
        EXPECT_EQ(Panel().lblStored.Text(), "");
        linked = true;
        Take_Errors();
    }
}

TEST_F(Flight_End, A_typed_flight_that_is_logged_without_tracking_is_no_beginning_of_the_next) {
    Panel().txtDate.Enter("3/13/2026");
    Log();
    Fly();
    EXPECT_FALSE(Panel().Is_Logged());
    Panel().hypLog.Click();
    EXPECT_THAT(Read("logs/My Flight Log.txt"),
                AllOf(testing::StartsWith("3/13/2026|||"), HasSubstr("\r\n3/13/2026|Test Jet|")));
}

}  // namespace
}  // namespace norvane::test
