// A circuit recorded from a real simulator, played to the engine moment by moment: one of each
// block event in spite of a bounce, and figures that agree with the recording.

#include "common/line_reader.h"
#include "common/text.h"
#include "engine_world.h"

namespace norvane::test {

namespace {

class Recorded_Flight : public Engine_World {
  protected:
    /// Puts the variables of a recorded moment ("SECONDS OFFSET:BYTES ...") into the area.
    void Play(const std::string& line) {
        const auto pieces = Split(Trim(line), ' ');
        for (std::size_t i = 1; i < pieces.size(); ++i) {
            const std::string bytes = pieces[i].substr(5);
            const auto target = area.Bytes(Hex(pieces[i].substr(0, 4)), bytes.size() / 2);
            for (std::size_t k = 0; k < target.size(); ++k)
                target[k] = static_cast<std::byte>(Hex(bytes.substr(2 * k, 2)));
        }
    }

  private:
    static std::uint32_t Hex(const std::string& digits) {
        return static_cast<std::uint32_t>(std::stoul(digits, nullptr, 16));
    }
};

TEST_F(Recorded_Flight, Goes_Once_Through_Every_Phase) {
    std::filesystem::copy_file(
        std::filesystem::path(NORVANE_SOURCE_DIR) / "data" / "bin" / "fs9.wld",
        directory / "bin" / "fs9.wld", std::filesystem::copy_options::overwrite_existing);
    settings->Set_ACARS_EOF(2);
    bool started = false;
    for (const std::string& line : Read_Lines(Data_File("phto-circuit.rec"))) {
        if (line.empty() || line[0] == '#' || line.starts_with("norvane-recording"))
            continue;
        Play(line);
        if (!started)
            started = Start();
        ASSERT_TRUE(started) << error_text;
        engine->Refresh();
    }
    // The engine stops 10 s after the brake is set, which "both" waits for.
    EXPECT_EQ(Once("FlightOUT"), "2205 1");
    EXPECT_EQ(Once("FlightOFF"), "2205 1");
    EXPECT_EQ(Once("FlightON"), "2211 1");
    EXPECT_EQ(Once("FlightIN"), "2212 1");
    EXPECT_EQ(Once("BlockTimeHHMM"), "0:07");
    EXPECT_EQ(Count("FlightAtGate"), 1U);
    EXPECT_EQ(Once("ICAODep").substr(0, 5), "PHTO ");
    EXPECT_EQ(Once("ICAOArr").substr(0, 5), "PHTO ");
    EXPECT_EQ(Once("ATCTail"), "N172NV");
    EXPECT_EQ(Once("Distance"), "0");
    EXPECT_EQ(Count("NSettings") + Count("MaxTaxiOrigin"), 0U);
    EXPECT_EQ(Count("EngSettings"), 1U);

    const auto figure = [this](const std::string& name) { return std::stoi(Once(name)); };
    EXPECT_GT(figure("FuelOUT"), figure("FuelIN"));
    EXPECT_EQ(figure("FuelUsedBlock"), figure("FuelOUT") - figure("FuelIN"));
    EXPECT_NEAR(figure("WeightOUT") - figure("WeightIN"), figure("FuelUsedBlock"), 7);
    EXPECT_LT(figure("VS"), -50);
    EXPECT_GT(figure("IASTakeOff"), 45);
    EXPECT_GT(figure("IASLanding"), 40);
    EXPECT_EQ(Messages(Message_Type::times).size(), 1U);
}

}  // namespace

}  // namespace norvane::test
