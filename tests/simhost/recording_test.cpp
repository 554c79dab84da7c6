#include "simlink/recording.h"

#include <gmock/gmock.h>

#include "common/run_error.h"
#include "simhost/recording/replay.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using namespace std::string_literals;
using testing::AllOf;
using testing::HasSubstr;

class Recordings : public test::Test_World {
  protected:
    /// The description of the failure to read this content; empty when it is read.
    std::string Fault_Of(std::string_view content) {
        try {
            (void)Read_Recording(Write("a.rec", content));
        } catch (const Run_Error& error) {
            return error.Description();
        }
        return {};
    }
};

TEST_F(Recordings, Broken_Files_Are_Refused_With_File_And_Line) {
    const std::string head = "norvane-recording 1\n0.000 0238:0e\n";
    const std::pair<std::string, const char*> cases[] = {
        {"", "line 1: the first line is not"},
        {"norvane-recording 2\n0.000 0238:0e\n", "line 1: the first line is not"},
        {"\x7f\x45LF\0\0\1\n\xff\xfe"s, "line 1: the first line is not"},
        {std::string(8'000'000, 'x'), "A line does not end, after line 0"},
        {"norvane-recording 1\n# nothing flown\n\n", "line 3: the recording holds no moment"},
        {head + std::string(8'000'000, '7'), "A line does not end, after line 2"},
        {head + "1.000 " + std::string(80'000, 'a'), "line 3: \"aaaa"},
        {head + "# comment\nsoon 0238:0e\n", "line 4: \"soon\" is no number of seconds"},
        {head + "-1.000 0238:0e\n", "line 3: \"-1.000\" is no number of seconds"},
        {head + "2.000\n1.999 0238:0e\n", "line 4: the moment is earlier"},
        {head + "1.000 0238:0\n", "line 3: \"0238:0\" is no OFFSET:BYTES"},
        {head + "1.000 0238:\n", "line 3: \"0238:\" is no OFFSET:BYTES"},
        {head + "1.000 023G:0e\n", "line 3: \"023G:0e\" begins with no offset"},
        {head + "1.000 -238:0e\n", "line 3: \"-238:0e\" begins with no offset"},
        {head + "1.000 0238:0e 0239:-1\n", "line 3: \"0239:-1\" holds what is no"},
        {head + "1.000 FFFE:0e0e0e\n", "reaches beyond offset FFFF"},
        {head + "1.000 02\xff\n", "line 3: \"02?\" is no OFFSET:BYTES"},
    };
    for (const auto& [content, expected] : cases) {
        const std::string fault = Fault_Of(content);
        EXPECT_THAT(fault, AllOf(HasSubstr("a.rec"), HasSubstr(expected)));
        EXPECT_LT(fault.size(), 300U);
    }
    EXPECT_THROW((void)Read_Recording(directory / "missing.rec"), Run_Error);
    EXPECT_THROW((void)Read_Recording(directory), Run_Error);
}

TEST_F(Recordings, What_Is_Written_Reads_Back) {
    const auto file = directory / "new.rec";
    Recording_Writer writer(file);
    writer.Add({0, {{0x0238, {std::byte{14}}}, {0x0366, {std::byte{1}, std::byte{0}}}}});
    writer.Add({0.5, {}});
    writer.Add({61.23449, {{0xFFFF, {std::byte{0xAB}}}}});
    EXPECT_EQ(Read("new.rec"),
              "norvane-recording 1\n0.000 0238:0e 0366:0100\n0.500\n61.234 FFFF:ab\n");
    const auto moments = Read_Recording(file);
    ASSERT_EQ(moments.size(), 3U);
    EXPECT_EQ(moments[2].changes.at(0).bytes.at(0), std::byte{0xAB});
    EXPECT_EQ(Fault_Of("norvane-recording 1\r\n# c\r\n0.000 0238:0E\r\n"), "");
    EXPECT_THROW(Recording_Writer(directory / "no" / "such.rec"), Run_Error);
}

TEST_F(Recordings, A_Real_Flight_Is_Played_To_Any_Moment_And_Back) {
    Replay replay(Read_Recording(test::Data_File("phto-circuit.rec")));
    EXPECT_NEAR(replay.Length(), 446.882, 1e-9);
    const struct {
        double seconds;
        bool brake, on_ground, engine;
    } cases[] = {
        {-5, true, true, true},   {14, true, true, true},    {16, false, true, true},
        {60, false, false, true}, {401, false, false, true}, {420, false, true, true},
        {430, true, true, true},  {440, true, true, false},  {1e6, true, true, false},
        {60, false, false, true}, {0, true, true, true},
    };
    Offset_Area area;
    for (const auto& c : cases) {
        replay.Apply(c.seconds, area);
        EXPECT_EQ(area.Get(Variable::parking_brake) != 0, c.brake) << c.seconds;
        EXPECT_EQ(area.Get(Variable::on_ground) != 0, c.on_ground) << c.seconds;
        EXPECT_EQ(area.Get(Variable::engine_combustion) != 0, c.engine) << c.seconds;
        EXPECT_NEAR(area.Get(Variable::latitude_deg), 19.72, 0.05) << c.seconds;
        EXPECT_EQ(area.Get_Text(Variable::atc_identifier), "N172NV");
    }
}

}  // namespace
}  // namespace norvane
