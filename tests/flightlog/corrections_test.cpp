// What is found again of a row's corrections, by the row's text alone.

#include "flightlog/corrections.h"

#include "common/text.h"
#include "support/test_world.h"

namespace norvane::test {
namespace {

/// A flight of a scheduled day: date, type, time OUT, fuel OUT, ON, IN, comments.
std::string Flight(std::string_view date, std::string_view out, std::string_view comments,
                   std::string_view fuel = "900") {
    std::string line(date);
    line.append("|B738||KJFK||").append(out).append("|").append(fuel);
    return line.append("||KBOS||1000|1005||||||||").append(comments);
}

class Corrections_Test : public Test_World {
  protected:
    /// "was>is" of each, in their order.
    std::string History(std::string_view line) {
        std::string texts;
        for (const Correction& each : corrections.History(line))
            texts += each.was + '>' + each.is + ' ';
        return texts;
    }

    const std::string file = "flights/corrections.jsonl";
    Corrections corrections{services};
};

TEST_F(Corrections_Test, A_row_is_found_again_after_edits_of_any_cell_by_anybody) {
    const std::string logged = Flight("1/1/2008", "0900", "a");
    const std::string rightly = Flight("1/2/2008", "0905", "a", "950");
    EXPECT_EQ(History(logged), "");
    EXPECT_FALSE(std::filesystem::exists(directory / "flights")) << "looking leaves nothing";
    EXPECT_TRUE(corrections.Note("My Flight Log", logged, rightly, "wrong clock"));
    EXPECT_TRUE(corrections.Note("Other", rightly, Flight("1/2/2008", "0905", "b", "950"), ""));
    const std::string keys = "1/1/2008>1/2/2008 0900>0905 900>950 ";
    EXPECT_EQ(History(rightly), keys);
    EXPECT_EQ(History(Flight("1/2/2008", "0905", "b", "950") + std::string(34, '|')),
              keys + "a>b ");
    // By a hand that notes nothing, while the flight can be told.
    EXPECT_EQ(History(Flight("1/2/2008", "0905", "c", "950")), keys + "a>b ");
    const auto history = Corrections(services).History(rightly);
    ASSERT_EQ(history.size(), 3U);
    EXPECT_EQ(history[1].when + history[1].log + history[1].why,
              "2026-03-14 15:09:26My Flight Logwrong clock");
    EXPECT_EQ(history[1].column, 5U);
}

TEST_F(Corrections_Test, Neither_flights_of_a_day_nor_days_of_a_flight_nor_copies_are_mixed) {
    const auto note = [&](const std::string& before, const std::string& after) {
        EXPECT_TRUE(corrections.Note("My Flight Log", before, after, ""));
    };
    note(Flight("1/1/2008", "0900", "a"), Flight("1/1/2008", "0900", "b"));
    EXPECT_EQ(History(Flight("1/1/2008", "1900", "b")), "");
    EXPECT_EQ(History(Flight("1/2/2008", "0900", "b")), "");
    EXPECT_EQ(History(Flight("1/1/2008", "0900", "a")), "") << "a copy that nobody corrected";
    // A copy with a correction of its own.
    note(Flight("1/1/2008", "0900", "a"), Flight("1/1/2008", "0900", "c"));
    EXPECT_EQ(History(Flight("1/1/2008", "0900", "b")), "a>b ");
    EXPECT_EQ(History(Flight("1/1/2008", "0900", "c")), "a>c ");
    // Rows without times are their text only.
    note("1/1/2008|C172", "1/1/2008|C182");
    EXPECT_EQ(History("1/1/2008|PA28"), "");
    // A row that went on by itself takes its history along, and one without any none.
    EXPECT_TRUE(corrections.Carry_Over("My Flight Log", "1/1/2008|C182", "1/1/2008|C182||KJFK"));
    EXPECT_TRUE(corrections.Carry_Over("My Flight Log", "1/1/2008|PA28", "1/1/2008|PA28||KJFK"));
    EXPECT_EQ(History("1/1/2008|C182||KJFK"), "C172>C182 ");
    EXPECT_FALSE(Contains(Read(file), "PA28"));
}

TEST_F(Corrections_Test, Lines_that_cannot_be_read_cost_themselves_alone_and_are_told_once) {
    EXPECT_TRUE(corrections.Note("My Flight Log", "1/1/2008|a\xE9", "1/1/2008|b\xE9", ""));
    const std::string good = Read(file);
    Write(file, "{\"before\":1}\n\n" + good +
                    "[[\n{\"before\":\"1\",\"after\":\"2\",\"column\":53}\n" +
                    good.substr(0, good.size() / 2));
    EXPECT_EQ(History("1/1/2008|b\xE9"), "a\xE9>b\xE9 ");
    EXPECT_TRUE(corrections.Note("My Flight Log", "1/1/2008|b\xE9", "1/1/2008|c", ""));
    EXPECT_EQ(History("1/1/2008|c"), "a\xE9>b\xE9 b\xE9>c ");
    Write(file, Read(file) + "\n");
    EXPECT_EQ(History("1/1/2008|c"), "a\xE9>b\xE9 b\xE9>c ") << "written to by another program";
    const auto errors = Take_Errors();
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_TRUE(Contains(errors[0], "1, 4-6")) << errors[0];
    EXPECT_TRUE(Read(file).starts_with("{\"before\":1}\n\n" + good)) << "only ever added to";
}

}  // namespace
}  // namespace norvane::test
