// Messages shown in the simulator: how they are cut, when their lines are written, and that they
// end with the engine.

#include "acars/message_display.h"

#include <fmt/format.h>

#include "common/text.h"
#include "engine_world.h"

namespace norvane::test {
namespace {

using enum Variable;

std::string Texts_Of(std::string_view message) {
    std::vector<std::string> texts;
    for (const Display_Line& line : Lines_To_Show(message))
        texts.push_back(line.text + (line.pause_after ? "~" : ""));
    return Join(texts, ",");
}

TEST(Lines_To_Show, Break_At_Blanks_And_Segments) {
    const std::string word(48, 'w');
    const std::string long_word(120, 'l');
    // A first line begins with a blank that counts; a line has less than 100 characters.
    const std::string most(91, 'm');
    for (const auto& [message, lines] : std::vector<std::pair<std::string, std::string>>{
             {" one\r\ntwo \n", "ACARS/ one two"},
             {"one|two||", "ACARS/ one~,two~,~,"},
             {most, "ACARS/ " + most},
             {most + "m", "ACARS/~," + most + "m"},
             {fmt::format("{0} {0}", word), fmt::format("ACARS/ {0}~,{0}", word)},
             {"a " + long_word + " b", "ACARS/ a~," + long_word + "~,b"},
             {"a|" + long_word, "ACARS/ a~,~," + long_word}}) {
        EXPECT_EQ(Texts_Of(message), lines);
    }
}

class Message_Display : public Engine_World {
  protected:
    Message_Display() {
        settings.Set_OPT_ACARS_To_FS(true);
        area.on_write = [this](std::uint32_t offset, std::uint32_t) {
            if (offset == Offset_Of(display_control))
                shown.push_back(fmt::format("{} {} {:.0f}", Seconds(), area.Get_Text(display_text),
                                            area.Get(display_control)));
        };
    }
    std::int64_t Seconds() { return clock.Monotonic() / std::chrono::seconds(1); }

    std::vector<std::string> shown;
};

TEST_F(Message_Display, Shows_Block_Reports_And_Position_Reports_Piece_By_Piece) {
    ASSERT_TRUE(Start());
    engine->Send_Message(Message_Type::comment, "not shown");
    Fly(moment::parked, moment::off);
    EXPECT_TRUE(shown.empty());  // a later turn of the event loop
    desktop.Run_For(std::chrono::seconds(1));
    EXPECT_EQ(shown, (std::vector<std::string>{
                         "0 ACARS/ Flight ID: NV101 Message: OUT 1205Z /ZFW 100000 /FUEL 20250 "
                         "/TAW 120250 /POS 40.63975 8",
                         "8 -73.77893 8"}));

    area.Set(display_mode, 1);
    ASSERT_TRUE(Start());
    Fly(moment::off, moment::level);
    desktop.Run_For(std::chrono::seconds(60));
    shown.clear();
    const std::int64_t begun = Seconds();
    engine->Report_Position();
    engine->Refresh();
    desktop.Run_For(std::chrono::seconds(60));
    ASSERT_EQ(shown.size(), 3U);
    EXPECT_TRUE(shown[1].starts_with(std::to_string(begun + 17) + " POS 40.63975"));
    EXPECT_TRUE(shown[1].ends_with(" /FUEL 19575 / -17"));
    EXPECT_TRUE(shown[2].starts_with(std::to_string(begun + 34) + " ENG E1N1"));
}

TEST_F(Message_Display, Ends_With_The_Engines_Flight) {
    // In the middle of a display, from within its pause: reset, stopped, gone.
    for (const auto& end : std::vector<std::function<void()>>{
             [&] { engine->Reset(); }, [&] { engine->Stop_(); }, [&] { engine.reset(); }}) {
        Begin_Anew();
        Fly_To(moment::off);
        shown.clear();
        Timer ending(desktop.Timers(), std::chrono::seconds(3));
        ending.tick.Connect([&] {
            ending.Set_Enabled(false);
            end();
        });
        ending.Set_Enabled(true);
        desktop.Run_For(std::chrono::seconds(30));
        EXPECT_EQ(shown.size(), 1U);
    }
}

TEST_F(Message_Display, A_Lost_Link_Is_Reported_Once_And_Ends_The_Message) {
    Fly_To(moment::off);
    Refuse_Link();
    desktop.Run_For(std::chrono::seconds(30));
    EXPECT_EQ(Once("FSClosed"), modFSUIPC::IPC_ErrorText(ipc_result::bad_data));
    // A step right after it is not poisoned by the display's failure.
    transport.on_deliver = nullptr;
    raised.clear();
    Fly(moment::off, moment::off + 1);
    EXPECT_EQ(Once("FlightOFF"), "1217 1");
}

}  // namespace
}  // namespace norvane::test
