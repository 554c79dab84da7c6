// FlightGear near the ground: what the new properties become, and how often and how much is asked.

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <map>

#include "common/system_clock.h"
#include "simhost/flightgear/flightgear_command.h"
#include "simhost/scenario_files.h"
#include "simlink/link_peers.h"

namespace norvane::test {
namespace {

using namespace std::chrono_literals;
using enum Variable;

using Properties = std::map<std::string, std::string>;

const Properties on_final{
    {"/sim/aircraft", "c172p"},
    {"/sim/speed-up", "2"},
    {"/sim/freeze/master", "false"},
    {"/sim/replay/replay-state", "0"},
    {"/position/latitude-deg", "63.99"},
    {"/position/longitude-deg", "-22.6"},
    {"/position/altitude-ft", "190.25"},
    {"/position/ground-elev-ft", "141.75"},
    {"/velocities/groundspeed-kt", "62"},
    {"/velocities/airspeed-kt", "65"},
    {"/velocities/vertical-speed-fps", "-5"},
    {"/orientation/pitch-deg", "3.5"},
    {"/orientation/roll-deg", "-7.25"},
    {"/fdm/jsbsim/accelerations/n-pilot-z-norm", "-1.28"},
    {"/controls/flight/flaps", "0.5"},
    {"/controls/gear/gear-down", "false"},
    {"/gear/gear[0]/wow", "false"},
    {"/gear/gear[1]/wow", "false"},
    {"/engines/active-engine/rpm", "1500"},
};

std::string Told(const Properties& properties, const std::string& path) {
    const auto found = properties.find(path);
    return found == properties.end() ? "" : found->second;
}

class Landing {
  public:
    /// Asks once; how many properties it wanted.
    std::size_t Sample() {
        const std::vector<std::string> paths = world.Paths();
        std::vector<std::string> answers;
        for (const std::string& path : paths)
            answers.push_back(Told(properties, path));
        if (world.Take(answers) == Sample_Use::another_aircraft)
            return Sample();
        world.Apply(0, area);
        return paths.size();
    }
    /// After two samples: the second one's size is what this state of the aircraft costs.
    std::size_t Cost(const Properties& changes) {
        for (const auto& [path, value] : changes)
            properties[path] = value;
        Sample();
        return Sample();
    }

    Properties properties = on_final;
    Flightgear_World world{Flightgear_Table(aircraft_files / "flightgear.cfg"), "/sim", 7};
    Offset_Area area;
};

TEST(Flightgear_Landings, Tell_Attitude_Load_And_Levers) {
    Landing landing;
    landing.Sample();
    const Offset_Area& area = landing.area;
    EXPECT_NEAR(area.Get(pitch_deg), 3.5, 1e-6);
    EXPECT_NEAR(area.Get(bank_deg), -7.25, 1e-6);
    EXPECT_NEAR(area.Get(g_load), 1.28, 1e-3);
    EXPECT_NEAR(area.Get(flaps_percent), 50, 0.01);
    EXPECT_EQ(area.Get(gear_percent), 100) << "fixed, whatever a lever says";
    EXPECT_EQ(area.Get(simulation_rate), 2);
    EXPECT_EQ(area.Get(paused) + area.Get(replaying), 0);
    EXPECT_NEAR(Decode_Exact_Altitude(area.Bytes(Offset_Of(altitude_fraction_ft), 8)), 190.25,
                1e-6);
    landing.Cost({{"/sim/freeze/master", "true"}, {"/sim/replay/replay-state", "1"}});
    EXPECT_EQ(area.Get(paused) + area.Get(replaying), 2);
}

TEST(Flightgear_Landings, Ask_Little_And_Miss_Nothing) {
    Landing landing;
    const std::size_t everything = landing.Sample();
    std::size_t quick = 0;
    for (int sample = 1; sample < 25; ++sample) {
        landing.properties["/orientation/pitch-deg"] = std::to_string(sample);
        landing.properties["/gear/gear[1]/wow"] = sample > 20 ? "true" : "false";
        landing.properties["/engines/active-engine/rpm"] = "900";
        quick = landing.Sample();
        EXPECT_NEAR(landing.area.Get(pitch_deg), sample, 1e-6);
        EXPECT_EQ(landing.area.Get(on_ground), sample > 20 ? 1 : 0) << sample;
        EXPECT_EQ(landing.area.Get(engine_propeller_fraction), 1.5) << "not asked yet";
    }
    EXPECT_LE(quick, 20U);
    EXPECT_EQ(landing.Sample(), everything) << "the others in between";
    EXPECT_EQ(landing.area.Get(engine_propeller_fraction), 0.9);

    // Where no landing is to be measured, no simulator is hurried.
    EXPECT_EQ(landing.Cost({{"/velocities/groundspeed-kt", "12"}}), everything) << "taxiing";
    EXPECT_EQ(landing.Cost({{"/position/altitude-ft", "250"}, {"/gear/gear[1]/wow", "false"}}),
              everything);
    EXPECT_FALSE(landing.world.Is_Hurried());
    EXPECT_LE(landing.Cost({{"/position/altitude-ft", "230"}}), 20U) << "a helicopter hovers";
    EXPECT_TRUE(landing.world.Is_Hurried());
    landing.world.Ask_All();
    EXPECT_EQ(landing.Cost({{"/sim/freeze/master", "true"}}), everything) << "paused";
}

/// Answers what it was asked in each of its frames, 60 a second, as FlightGear does.
class Simulator_With_Frames {
  public:
    Simulator_With_Frames() : m_listener(Listen_At({"", "127.0.0.1", 0})) {
        address = Bound_Address(m_listener, {"", "127.0.0.1", 0});
    }
    void Serve() {
        const auto now = std::chrono::steady_clock::now();
        if (now < m_next_frame)
            return;
        m_next_frame = std::max(m_next_frame + 16667us, now - 16667us);
        if (auto client = Accept_From(m_listener); client.Is_Open())
            m_client = std::move(client);
        std::string piece(m_client.Is_Open() ? 65536 : 0, ' ');
        piece.resize(Receive_Ready(m_client, std::as_writable_bytes(std::span(piece))));
        m_incoming += piece;
        std::string answers;
        for (std::size_t end = 0; (end = m_incoming.find("\r\n")) != std::string::npos;) {
            const std::string line = m_incoming.substr(0, end);
            m_incoming.erase(0, end + 2);
            if (!line.starts_with("get "))
                continue;
            ++lines;
            samples += line.ends_with("/latitude-deg") ? 1 : 0;
            answers += Told(properties, line.substr(4)) + "\r\n";
        }
        if (!answers.empty())
            Send_Bytes(m_client, std::as_bytes(std::span(answers)));
    }

    Link_Address address;
    Properties properties = on_final;
    int samples = 0, lines = 0;

  private:
    Link_Socket m_listener;
    Link_Socket m_client;
    std::string m_incoming;
    std::chrono::steady_clock::time_point m_next_frame = std::chrono::steady_clock::now();
};

TEST(Flightgear_Landings, Are_Sampled_Fifty_Times_A_Second) {
    Simulator_With_Frames simulator;
    System_Clock clock;
    Flightgear_Service service({.flightgear = simulator.address,
                                .listen = {"", "127.0.0.1", 0},
                                .simulator_version = 7,
                                .simulator_directory = aircraft_files,
                                .pace = {}},
                               clock);
    const auto pump_for = [&](std::chrono::milliseconds duration) {
        const auto end = std::chrono::steady_clock::now() + duration;
        simulator.samples = simulator.lines = 0;
        while (std::chrono::steady_clock::now() < end) {
            simulator.Serve();
            service.Serve(1ms);
        }
    };
    pump_for(500ms);
    ASSERT_TRUE(service.Is_Serving());
    pump_for(2000ms);
    RecordProperty("samples_in_2_s", simulator.samples);
    RecordProperty("lines_in_2_s", simulator.lines);
    // 100; a busy computer makes a few of them late.
    EXPECT_GE(simulator.samples, 80);
    EXPECT_LE(simulator.samples, 102);
    EXPECT_LE(simulator.lines / simulator.samples, 30);
    simulator.properties["/position/altitude-ft"] = "1190";
    pump_for(500ms);
    pump_for(1000ms);
    EXPECT_LE(simulator.samples, 11) << "up there a tenth of a second is enough";
}

}  // namespace
}  // namespace norvane::test
