#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <memory>

#include "common/run_error.h"
#include "common/system_clock.h"
#include "common/text.h"
#include "simhost/flightgear_command.h"
#include "simlink/link_peers.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/sim_reader.h"
#include "simlink/socket_transport.h"

namespace norvane {
namespace {

using namespace std::chrono_literals;
using namespace test;
using testing::HasSubstr;

using Properties = std::map<std::string, std::string>;

const std::filesystem::path shipped =
    std::filesystem::path(NORVANE_SOURCE_DIR) / "data" / "simulator";

/// As the default aircraft tells them in flight.
Properties Cessna() {
    return {{"/sim/signals/fdm-initialized", "true"},
            {"/sim/aircraft", "c172p"},
            {"/sim/description", "Cessna 172P Skyhawk (1982)"},
            {"/sim/multiplay/callsign", "callsign"},
            {"/sim/time/utc/year", "2026"},
            {"/sim/time/utc/month", "3"},
            {"/sim/time/utc/day", "1"},
            {"/sim/time/utc/hour", "13"},
            {"/sim/time/utc/minute", "16"},
            {"/sim/time/local-day-seconds", "47785"},
            {"/position/latitude-deg", "63.99183633"},
            {"/position/longitude-deg", "-22.60542635"},
            {"/position/altitude-ft", "1146.2"},
            {"/position/ground-elev-ft", "141.8"},
            {"/velocities/airspeed-kt", "98.4"},
            {"/velocities/vertical-speed-fps", "-5"},
            {"/orientation/heading-deg", "270.5"},
            {"/environment/magnetic-variation-deg", "-9.7"},
            {"/gear/gear[0]/wow", "false"},
            {"/gear/gear[1]/wow", "false"},
            {"/controls/gear/brake-parking", "0"},
            {"/sim/model/c172p/brake-parking", "1"},
            {"/engines/active-engine/running", "true"},
            {"/engines/active-engine/rpm", "2310"},
            {"/engines/active-engine/mp-osi", "24.5"},
            {"/engines/active-engine/fuel-flow-gph", "7.5"},
            {"/engines/engine[0]/rpm", "0"},
            {"/engines/engine[1]/rpm", "0"},
            {"/rotors/main/rpm", "2.394370126"},
            {"/consumables/fuel/tank[0]/level-gal_us", "10.5"},
            {"/consumables/fuel/tank[0]/capacity-gal_us", "21.5"},
            {"/consumables/fuel/tank[0]/density-ppg", "6.02"},
            {"/consumables/fuel/tank[1]/level-gal_us", "10"},
            {"/consumables/fuel/tank[1]/capacity-gal_us", "21.5"},
            {"/fdm/jsbsim/inertia/weight-lbs", "2000"},
            {"/environment/clouds/layer[0]/elevation-ft", "20170"},
            {"/environment/clouds/layer[0]/coverage", "few"},
            {"/environment/clouds/layer[1]/elevation-ft", "4270"},
            {"/environment/clouds/layer[1]/coverage", "scattered"},
            {"/environment/clouds/layer[2]/elevation-ft", "-9999"},
            {"/environment/clouds/layer[2]/coverage", "broken"},
            {"/environment/snow-norm", "0.5"}};
}

/// What the world makes of properties that do not change.
class Told_World {
  public:
    explicit Told_World(const Properties& properties, std::uint16_t version = 7)
        : m_world(Flightgear_Table(shipped / "flightgear.cfg"), "/sim", version) {
        // The first sample of an aircraft with lines of its own only says which one it is.
        if (Tell(properties) == Sample_Use::another_aircraft)
            Tell(properties);
    }
    Sample_Use Tell(const Properties& properties) {
        std::vector<std::string> answers;
        for (const std::string& path : m_world.Paths()) {
            const auto found = properties.find(path);
            answers.push_back(found == properties.end() ? "" : found->second);
        }
        const Sample_Use use = m_world.Take(answers);
        m_world.Apply(0, area);
        return use;
    }
    [[nodiscard]] double Get(Variable variable, int engine = 1) const {
        return area.Get(variable, engine);
    }
    [[nodiscard]] double Fuel_Gal() const {
        double gallons = 0;
        for (const Tank_Row& tank : All_Tanks())
            gallons += Tank_Gallons(Number(tank.level_offset), Number(tank.capacity_offset));
        return gallons;
    }
    Offset_Area area;

  private:
    [[nodiscard]] std::int32_t Number(std::uint32_t offset) const {
        return static_cast<std::int32_t>(Load_U32(area.Bytes(offset, 4), 0));
    }
    Flightgear_World m_world;
};

TEST(Flightgear_Worlds, Tell_The_Figures_Of_An_Aircraft_With_Lines_Of_Its_Own) {
    const Told_World world(Cessna());
    EXPECT_NEAR(world.Get(Variable::latitude_deg), 63.99183633, 1e-8);
    EXPECT_NEAR(world.Get(Variable::longitude_deg), -22.60542635, 1e-8);
    EXPECT_EQ(world.Get(Variable::indicated_airspeed_kt), 98);
    EXPECT_EQ(world.Get(Variable::true_airspeed_kt), 100) << "computed from the indicated one";
    EXPECT_EQ(world.Get(Variable::vertical_speed_fpm), -300);
    EXPECT_EQ(world.Get(Variable::on_ground), 0);
    EXPECT_GT(world.Get(Variable::parking_brake), 0) << "its own brake";
    EXPECT_EQ(world.Get(Variable::engine_type), engine_kind::piston) << "no helicopter";
    EXPECT_EQ(world.Get(Variable::engine_count), 1);
    EXPECT_EQ(world.Get(Variable::engine_combustion), 1);
    EXPECT_NEAR(world.Get(Variable::engine_propeller_fraction), 2.31, 1e-9);
    EXPECT_NEAR(world.Get(Variable::engine_manifold_inhg), 24.5, 1e-3);
    EXPECT_NEAR(world.Get(Variable::engine_fuel_flow_pph), 45.15, 1e-3);
    EXPECT_NEAR(world.Fuel_Gal(), 20.5, 1e-3);
    EXPECT_EQ(world.Get(Variable::zero_fuel_weight_lbs), 1877) << "2000 - 20.5 × 6.02";
    EXPECT_EQ(world.Get(Variable::day_of_year), 60);
    EXPECT_EQ(world.Get(Variable::local_hour), 13);
    EXPECT_EQ(world.Get(Variable::local_minute), 16);
    EXPECT_EQ(world.Get(Variable::cloud1_base_hundred_ft), 43) << "the lower layer is the first";
    EXPECT_EQ(world.Get(Variable::cloud1_cover_eighths), 4);
    EXPECT_EQ(world.Get(Variable::cloud2_base_hundred_ft), 202);
    EXPECT_GE(world.Get(Variable::precipitation_type), 2) << "snow";
    EXPECT_EQ(world.area.Get_Text(Variable::atc_identifier), "") << "a call sign nobody chose";
    EXPECT_EQ(world.area.Get_Text(Variable::aircraft_path), "Aircraft\\flightgear\\flightgear.air");
    EXPECT_EQ(Told_World(Cessna(), 8).area.Get_Text(Variable::aircraft_path),
              "\\sim\\Aircraft\\flightgear\\flightgear.air");
}

TEST(Flightgear_Worlds, Hold_A_Flight_While_Paused_Or_Replayed) {
    Properties properties = Cessna();
    EXPECT_EQ(Told_World(properties).Get(Variable::slew_mode), 0);
    properties["/sim/freeze/master"] = "true";
    EXPECT_EQ(Told_World(properties).Get(Variable::slew_mode), 1);
    properties["/sim/freeze/master"] = "false";
    properties["/sim/replay/replay-state"] = "1";
    EXPECT_EQ(Told_World(properties).Get(Variable::slew_mode), 1);
}

/// Whatever stands in a property, no figure leaves the range in which aircraft live.
TEST(Flightgear_Worlds, Make_Nothing_Wild_Of_Wild_Properties) {
    for (const std::string wild : {"nan", "-nan", "inf", "-inf", "", "1e300", "-1e300", "wild",
                                   "99999999999999999999", "0x10", "12 13", "true"}) {
        Properties properties = Cessna();
        for (auto& [path, value] : properties) {
            if (!path.starts_with("/position/") && !path.starts_with("/sim/aircraft") &&
                !path.starts_with("/sim/signals"))
                value = wild;
        }
        Told_World world(properties);
        SCOPED_TRACE(wild);
        EXPECT_NEAR(world.Get(Variable::latitude_deg), 63.99183633, 1e-8);
        EXPECT_LE(world.Get(Variable::indicated_airspeed_kt), 1);
        EXPECT_LE(std::abs(world.Get(Variable::vertical_speed_fpm)), 60);
        EXPECT_LE(world.Get(Variable::engine_propeller_fraction), 0.01);
        EXPECT_LE(world.Fuel_Gal(), 2);
        EXPECT_LE(world.Get(Variable::total_weight_lbs), 1);
        EXPECT_EQ(world.Get(Variable::fuel_weight_lb_per_gal), 6);
        EXPECT_GE(world.Get(Variable::year), 2024) << "the computer's clock";
        EXPECT_NEAR(world.Get(Variable::sea_level_pressure_inhg), 29.92, 0.01);
        EXPECT_EQ(world.Get(Variable::cloud1_cover_eighths), 0);

        // Without a position a sample is none: the last one stays.
        properties["/position/latitude-deg"] = wild;
        if (wild != "true") {
            EXPECT_EQ(world.Tell(properties), Sample_Use::no_position);
            EXPECT_NEAR(world.Get(Variable::latitude_deg), 63.99183633, 1e-8);
        }
    }
}

TEST(Flightgear_Worlds, Know_Other_Aircraft_By_What_They_Have) {
    Properties glider{{"/position/latitude-deg", "47"},
                      {"/position/longitude-deg", "11"},
                      {"/position/altitude-ft", "2010"},
                      {"/position/ground-elev-ft", "2000"}};
    {
        const Told_World world(glider);
        EXPECT_EQ(world.Get(Variable::engine_count), 0);
        EXPECT_EQ(world.Get(Variable::on_ground), 1) << "no wheel tells, 10 ft above the ground";
        EXPECT_EQ(world.Fuel_Gal(), 0);
    }
    Properties jet = glider;
    jet["/position/altitude-ft"] = "31000";
    for (int n = 0; n < 4; ++n) {
        const std::string engine = "/engines/engine[" + std::to_string(n) + "]/";
        jet[engine + "n1"] = std::to_string(80 + n);
        jet[engine + "n2"] = "95";
        jet[engine + "running"] = n == 2 ? "false" : "true";
    }
    // More tanks than clients know: what is in the further ones counts as well.
    for (int n = 0; n < 16; ++n) {
        const std::string tank = "/consumables/fuel/tank[" + std::to_string(n) + "]/";
        jet[tank + "level-gal_us"] = "100";
        jet[tank + "capacity-gal_us"] = "1000.5";
    }
    {
        const Told_World world(jet);
        EXPECT_EQ(world.Get(Variable::engine_type), engine_kind::jet);
        EXPECT_EQ(world.Get(Variable::engine_count), 4);
        EXPECT_NEAR(world.Get(Variable::engine_n1_percent, 4), 83, 0.01);
        EXPECT_EQ(world.Get(Variable::engine_combustion, 3), 0);
        EXPECT_EQ(world.Get(Variable::on_ground), 0);
        EXPECT_NEAR(world.Fuel_Gal(), 1600, 0.1);
    }
    jet["/engines/engine[0]/rpm"] = "1700";
    EXPECT_EQ(Told_World(jet).Get(Variable::engine_type), engine_kind::turboprop);
    jet["/rotors/main/cone-deg"] = "-0.4";
    EXPECT_EQ(Told_World(jet).Get(Variable::engine_type), engine_kind::helicopter);
}

TEST(Flightgear_Tables, Take_A_Pilots_Lines_And_Name_What_Is_Wrong_With_Them) {
    const Socket_Directory directory;
    const auto file = directory.path / "flightgear.cfg";
    const auto read = [&](const std::string& text) {
        std::ofstream(file) << text;
        return Flightgear_Table(file);
    };
    const auto table = read("engine_rpm = /a[n] ; 5\n[777*]\n\nengine_rpm=/b * 0.5 # mine\n");
    const auto sources = table.Sources_Of(Figure::engine_rpm, "777-200");
    ASSERT_EQ(sources.size(), 3U);
    EXPECT_EQ(sources[0].path, "/b");
    EXPECT_EQ(sources[0].factor, 0.5);
    EXPECT_EQ(table.Sources_Of(Figure::engine_rpm, "747").size(), 2U);
    for (const std::string fault :
         {"rpm = /a", "[747", "[]", "year", "year = a", "year = /a * b", "year = /a b",
          "latitude_deg = 91", "title = 7", "year = nan"}) {
        try {
            read("[747]\n" + fault + "\n");
            ADD_FAILURE() << fault << " was taken";
        } catch (const Run_Error& error) {
            EXPECT_THAT(error.Description(), HasSubstr("flightgear.cfg, line 2: "));
        }
    }
}

/// A property server on loopback that misbehaves as it is told.
class Scripted_Simulator {
  public:
    enum class Manner { obedient, silent, too_many, too_few, endless_line, noise, closing };

    Scripted_Simulator() : m_listener(Listen_At({"", "127.0.0.1", 0})) {
        address = Bound_Address(m_listener, {"", "127.0.0.1", 0});
    }
    void Die() {
        m_client.Close();
        m_listener.Close();
    }
    void Live_Again() { m_listener = Listen_At(address); }

    void Serve() {
        if (auto client = Accept_From(m_listener); client.Is_Open()) {
            m_client = std::move(client);
            m_incoming.clear();
            m_sent = 0;
        }
        if (!m_client.Is_Open())
            return;
        std::array<std::byte, 4096> piece{};
        for (std::ptrdiff_t got = 0;
             (got = system_sockets::Receive(m_client.Descriptor(), piece)) > 0;)
            m_incoming.append(reinterpret_cast<const char*>(piece.data()),
                              static_cast<std::size_t>(got));
        std::string answers;
        for (std::size_t end = 0; (end = m_incoming.find("\r\n")) != std::string::npos;) {
            answers += Answer(m_incoming.substr(0, end));
            m_incoming.erase(0, end + 2);
        }
        if (manner == Manner::endless_line && m_sent < 10'000'000)
            answers = std::string(1'000'000, 'x');
        if (manner == Manner::noise)
            answers = std::string("\0\xFF\r\xFE\n\r\n\x80\r\n", 10);
        m_sent += answers.size();
        if (manner != Manner::silent)
            Send_Bytes(m_client.Descriptor(), std::as_bytes(std::span(answers)));
        if (manner == Manner::closing)
            m_client.Close();
    }

    Link_Address address;
    Manner manner = Manner::obedient;
    Properties properties = Cessna();

  private:
    std::string Answer(const std::string& line) {
        if (line.starts_with("set ")) {
            const auto blank = line.find(' ', 4);
            properties[line.substr(4, blank - 4)] = line.substr(blank + 1);
        }
        if (!line.starts_with("get ") ||
            (manner == Manner::too_few && line.ends_with("latitude-deg")))
            return "";
        const std::string path = line.substr(4);
        const std::string extra =
            manner == Manner::too_many && path == "/sim/multiplay/callsign" ? "more\r\n" : "";
        const auto found = properties.find(path);
        return (found == properties.end() ? "" : found->second) + "\r\n" + extra;
    }

    Link_Socket m_listener;
    Link_Socket m_client;
    std::string m_incoming;
    std::size_t m_sent = 0;
};

class Flightgear_Services : public testing::Test {
  protected:
    Flightgear_Services()
        : service({.flightgear = simulator.address,
                   .listen = {"", "127.0.0.1", 0},
                   .simulator_version = 6,
                   .simulator_directory = shipped,
                   .pace = {20ms, 300ms, 200ms, 50ms}},
                  clock),
          transport(service.Address(), 200ms, [this] { Pump(); }),
          link(transport, clock),
          reader(link) {
        service.told.connect([this](const std::string& text) { told.push_back(text); });
        service.text_shown.connect([this](const std::string& text) { shown = text; });
    }
    void Pump() {
        simulator.Serve();
        service.Serve(1ms);
    }
    bool Pump_Until(const std::function<bool()>& condition) {
        const auto end = std::chrono::steady_clock::now() + 10s;
        while (!condition() && std::chrono::steady_clock::now() < end)
            Pump();
        return condition();
    }
    bool Pump_Until_Serving() {
        return Pump_Until([this] { return service.Is_Serving(); });
    }

    System_Clock clock;
    Scripted_Simulator simulator;
    Flightgear_Service service;
    Socket_Transport transport;
    modFSUIPC link;
    Sim_Reader reader;
    std::vector<std::string> told;
    std::string shown;
};

TEST_F(Flightgear_Services, Lose_The_Link_With_The_Simulator_And_Regain_It) {
    int result = -1;
    EXPECT_FALSE(link.IPC_Open(0, result));
    EXPECT_EQ(result, ipc_result::no_simulator) << "nothing has come from the simulator yet";
    ASSERT_TRUE(Pump_Until_Serving());
    ASSERT_TRUE(link.IPC_Open(0, result)) << result;
    EXPECT_EQ(modFSUIPC::IPC_ErrorText(result), "Okay");
    EXPECT_EQ(link.IPC_SimName(), "FS2002");
    EXPECT_EQ(reader.Read_Text(Variable::aircraft_title), "Cessna 172P Skyhawk (1982)");

    simulator.properties["/velocities/vertical-speed-fps"] = "10";
    EXPECT_TRUE(Pump_Until([this] { return reader.Read(Variable::vertical_speed_fpm) == 600; }));
    EXPECT_TRUE(reader.Write_Display("At the\r\ngate \xE9", 8));
    EXPECT_TRUE(Pump_Until([this] {
        return simulator.properties["/sim/messages/copilot"] == "At the  gate \xC3\xA9";
    }));
    EXPECT_EQ(shown, "At the  gate \xE9");

    simulator.Die();
    ASSERT_TRUE(Pump_Until([this] { return !service.Is_Serving(); }));
    reader.Begin_Step();
    (void)reader.Read(Variable::on_ground);
    EXPECT_TRUE(reader.Failed()) << "no figure that stands still";
    simulator.Live_Again();
    ASSERT_TRUE(Pump_Until_Serving());
    reader.Begin_Step();
    EXPECT_EQ(reader.Read(Variable::vertical_speed_fpm), 600);
    EXPECT_FALSE(reader.Failed());
    EXPECT_EQ(std::adjacent_find(told.begin(), told.end()), told.end())
        << "each state once: " << testing::PrintToString(told);
}

TEST_F(Flightgear_Services, Wait_While_The_Simulator_Starts) {
    simulator.properties["/sim/signals/fdm-initialized"] = "false";
    ASSERT_TRUE(Pump_Until([this] { return told.size() == 2; }));
    EXPECT_THAT(told.back(), HasSubstr("to finish its start"));
    EXPECT_FALSE(service.Is_Serving());
    simulator.properties["/sim/signals/fdm-initialized"] = "true";
    EXPECT_TRUE(Pump_Until_Serving());
}

TEST_F(Flightgear_Services, Report_A_Host_That_Is_No_Simulator_And_Try_Again) {
    using enum Scripted_Simulator::Manner;
    const std::vector<std::pair<Scripted_Simulator::Manner, std::string>> cases{
        {silent, "says nothing"},          {too_many, "more than it was asked for"},
        {too_few, "answers to"},           {endless_line, "line without end"},
        {noise, "waiting for FlightGear"}, {closing, "closed"}};
    for (const auto& [manner, reason] : cases) {
        simulator.manner = obedient;
        ASSERT_TRUE(Pump_Until_Serving()) << "before: " << reason;
        simulator.manner = manner;
        EXPECT_TRUE(Pump_Until([&] { return !service.Is_Serving(); })) << reason;
        EXPECT_TRUE(Pump_Until([&] { return Contains(told.back(), reason); })) << told.back();
    }
}

}  // namespace
}  // namespace norvane
