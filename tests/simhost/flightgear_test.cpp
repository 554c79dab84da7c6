#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <tuple>

#include "common/line_reader.h"
#include "common/run_error.h"
#include "common/system_clock.h"
#include "common/text.h"
#include "simhost/flightgear/flightgear_command.h"
#include "simhost/scenario_files.h"
#include "simlink/link_peers.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/sim_reader.h"
#include "simlink/socket_transport.h"
#include "support/test_world.h"

namespace norvane {
namespace {

using namespace std::chrono_literals;
using namespace test;
using enum Variable;
using testing::HasSubstr;

using Properties = std::map<std::string, std::string>;

const std::string call_sign = "/sim/multiplay/callsign";

/// As the default aircraft tells them in flight.
Properties Cessna() {
    Properties properties;
    for (const std::string& line : Split(Read_File(Data_File("flightgear-c172p.txt")), '\n')) {
        if (const auto sign = line.find(" = "); sign != std::string::npos)
            properties[line.substr(0, sign)] = line.substr(sign + 3);
    }
    return properties;
}
const Properties cessna = Cessna();

/// What the world makes of properties that do not change.
class Told_World {
  public:
    explicit Told_World(const Properties& properties, std::uint16_t version = 7)
        : m_world(Flightgear_Table(aircraft_files / "flightgear.cfg"), "/sim", version) {
        Tell(properties);
    }
    Sample_Use Tell(const Properties& properties) {
        std::vector<std::string> answers;
        for (const std::string& path : m_world.Paths()) {
            const auto found = properties.find(path);
            answers.push_back(found == properties.end() ? "" : found->second);
        }
        const Sample_Use use = m_world.Take(answers);
        // The first sample of an aircraft with lines of its own only says which one it is.
        if (use == Sample_Use::another_aircraft)
            return Tell(properties);
        m_world.Apply(0, m_area);
        return use;
    }
    [[nodiscard]] double Get(Variable variable, int engine = 1) const {
        return m_area.Get(variable, engine);
    }
    [[nodiscard]] std::string Text(Variable variable) const { return m_area.Get_Text(variable); }
    [[nodiscard]] double Fuel_Gal() const { return All_Gallons(m_area); }
    /// All that clients read, a line each; of as many engines as are told.
    [[nodiscard]] std::string All_Figures() const {
        std::string figures = fmt::format("fuel in gallons {:.5f}\n", Fuel_Gal());
        for (const Variable_Row& row : All_Variables()) {
            figures += row.meaning;
            if (row.raw == Raw::text)
                figures += " " + Text(row.id);
            for (int engine = 1; engine <= (row.stride == 0 ? 1 : Get(engine_count)); ++engine)
                figures += row.raw == Raw::text ? "" : fmt::format(" {:.10g}", Get(row.id, engine));
            figures += "\n";
        }
        return figures;
    }

  private:
    Offset_Area m_area;
    Flightgear_World m_world;
};

/// What changes with each property in turn: missing, far too low and high, plain numbers, none.
std::string Followed(const Properties& properties) {
    const auto lines = [](const Properties& told) {
        return Split(Told_World(told).All_Figures(), '\n');
    };
    const auto before = lines(properties);
    // Where the simulator tells no time, it is the computer's.
    const auto is_clock = [](const std::string& text) {
        return text.starts_with("/sim/time/") || text.starts_with("simulator local") ||
               text.starts_with("simulator UTC") || text.starts_with("simulator date");
    };
    std::string followed;
    const auto follow = [&](const std::string& path, const std::string& value) {
        Properties changed = properties;
        changed[path] = value;
        followed += fmt::format("{} = {}\n", path, value);
        const auto now = lines(changed);
        for (std::size_t i = 0; i < now.size(); ++i)
            followed += now[i] == before[i] || (is_clock(now[i]) && !is_clock(path))
                            ? ""
                            : "    " + now[i] + "\n";
    };
    for (const auto& [path, value] : properties) {
        for (const char* other : {"", "-1e7", "1e7", "1", "0.3", "true", "nan"}) {
            if (!is_clock(path) || other == std::string("1"))
                follow(path, other);
        }
    }
    for (const char* sign : {"callsign", "FG-8617", "N172NV", "FG-86170", "FG-86A7", "FG"})
        follow(call_sign, sign);
    for (const char* variant :
         {"c172p-bush26", "c172p-ski", "c172p-float", "c172p-amphibious", "ufo"})
        follow("/sim/aircraft", variant);
    return followed;
}

/// Sample by sample in one world. Heights and wheels are what FlightGear's own aircraft tell.
TEST(Flightgear_Worlds, Know_The_Ground_By_Wheels_Water_Or_Height) {
    constexpr int none = -1;
    const std::tuple<std::string, double, double, int, std::string, bool> samples[] = {
        {"c172p", 4, 0, 1, "0", true},
        {"c172p", 15, 30, none, "0", false},  // it has wheels, and none is down
        {"ufo", 0.1, 0, none, "", true},
        {"ufo", 19, 39, none, "", true},
        {"ufo", 19, 41, none, "", false},
        {"ufo", 21, 0, none, "", false},
        {"c172p-amphibious", 6.4, 0, 19, "0", true},
        {"c172p-amphibious", 6.4, 30, none, "0", false},
        {"c172p-amphibious", 5.7, 30, none, "0.7", true},
        {"c172p-float", 7, 30, none, "0", true},  // it skips over the waves
        {"c172p-float", 7, 50, none, "0", false},
        {"c172p-ski", 4, 60, 25, "0", true},
    };
    Told_World world(cessna);
    for (const auto& [aircraft, above_ft, speed_kt, wheel, in_water, expected] : samples) {
        Properties properties = cessna;
        properties["/sim/aircraft"] = aircraft;
        properties["/position/altitude-ft"] = std::to_string(141.8 + above_ft);
        properties["/velocities/groundspeed-kt"] = std::to_string(speed_kt);
        properties["/fdm/jsbsim/hydro/active-norm"] = in_water;
        for (int n = 0; n < 26; ++n)
            properties[fmt::format("/gear/gear[{}]/wow", n)] = n == wheel ? "true" : "false";
        world.Tell(properties);
        EXPECT_EQ(world.Get(on_ground), expected) << aircraft << " at " << above_ft << " ft";
    }
}

TEST(Flightgear_Worlds, Tell_What_Each_Kind_Of_Aircraft_Tells) {
    Properties other{{"/position/latitude-deg", "47"},
                     {"/position/longitude-deg", "11"},
                     {"/position/altitude-ft", "2010"}};
    // Else the computer's clock is told.
    for (const auto& [path, value] : cessna) {
        if (path.starts_with("/sim/time/"))
            other[path] = value;
    }
    std::string told = "Cessna\n" + Told_World(cessna).All_Figures();
    told += "\nGlider\n" + Told_World(other, 8).All_Figures();
    for (int n = 0; n < 4; ++n) {
        const std::string engine = fmt::format("/engines/engine[{}]/", n);
        other[engine + "n1"] = std::to_string(80 + n);
        other[engine + "n2"] = "95";
        other[engine + "running"] = n == 2 ? "false" : "true";
    }
    // More tanks than clients know: what is in the further ones counts as well.
    for (int n = 0; n < 16; ++n) {
        const std::string tank = fmt::format("/consumables/fuel/tank[{}]/", n);
        other[tank + "level-gal_us"] = "100";
        other[tank + "capacity-gal_us"] = "1000.5";
    }
    told += "\nJet\n" + Told_World(other).All_Figures();
    other["/engines/engine[0]/rpm"] = "1700";
    told += "\nTurboprop\n" + Told_World(other).All_Figures();
    other["/rotors/main/cone-deg"] = "-0.4";
    told += "\nHelicopter\n" + Told_World(other).All_Figures();
    told += "\nFollowed\n" + Followed(other) + Followed(cessna);
    Expect_As_Looked_At("flightgear-told.txt", told);
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
    EXPECT_EQ(sources[0].path + fmt::format(" * {}", sources[0].factor), "/b * 0.5");
    EXPECT_EQ(table.Sources_Of(Figure::engine_rpm, "747").size(), 2U);
    for (const std::string fault :
         {"rpm = /a", "[747", "[]", "year", "year = a", "year = /a * b", "year = /a b",
          "latitude_deg = 91", "title = 7", "year = nan"}) {
        EXPECT_THAT([&] { read("[747]\n" + fault + "\n"); },
                    testing::ThrowsMessage<Run_Error>(HasSubstr("flightgear.cfg, line 2: ")))
            << fault;
    }
}

TEST(Flightgear_Tables, Have_The_Ranges_That_Their_File_Tells_Pilots) {
    const std::regex told(R"((\w+) =[^#]*# (-?\d+ to -?\d+) .*)");
    std::size_t count = 0;
    for (const std::string& line : Split(Read_File(aircraft_files / "flightgear.cfg"), '\n')) {
        std::smatch parts;
        const bool has_range = std::regex_match(line, parts, told);
        for (int i = 0; has_range && i <= static_cast<int>(Figure::call_sign); ++i) {
            const Figure_Row& row = Row_Of(static_cast<Figure>(i));
            if (parts[1].str() != row.name)
                continue;
            EXPECT_EQ(fmt::format("{:.0f} to {:.0f}", row.low, row.high), parts[2].str()) << line;
            ++count;
        }
    }
    EXPECT_GT(count, 30U);
}

/// A property server on loopback.
class Scripted_Simulator {
  public:
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
        }
        std::string piece(m_client.Is_Open() ? 65536 : 0, ' ');
        piece.resize(Receive_Ready(m_client, std::as_writable_bytes(std::span(piece))));
        if (piece.empty())
            return;
        m_incoming += piece;
        std::string answers;
        for (std::size_t end = 0; (end = m_incoming.find(cr_lf)) != std::string::npos;) {
            answers += Answer(m_incoming.substr(0, end));
            m_incoming.erase(0, end + cr_lf.size());
        }
        answers = instead.value_or(answers);
        Send_Bytes(m_client, std::as_bytes(std::span(answers)));
    }

    Link_Address address;
    /// What it says, whatever it is asked.
    std::optional<std::string> instead;
    Properties properties = cessna;

  private:
    std::string Answer(const std::string& line) {
        if (line.starts_with("set ")) {
            const auto blank = line.find(' ', 4);
            properties[line.substr(4, blank - 4)] = line.substr(blank + 1);
        }
        if (!line.starts_with("get "))
            return "";
        const auto found = properties.find(line.substr(4));
        return (found == properties.end() ? "" : found->second) + "\r\n";
    }

    Link_Socket m_listener;
    Link_Socket m_client;
    std::string m_incoming;
};

class Flightgear_Services : public testing::Test {
  protected:
    Flightgear_Services()
        : service({.flightgear = simulator.address,
                   .listen = {"", "127.0.0.1", 0},
                   .simulator_version = 6,
                   .simulator_directory = aircraft_files,
                   .pace = {20ms, 300ms, 200ms, 50ms}},
                  clock),
          transport(service.Address(), 200ms, [this] { return Pump(); }),
          link(transport, clock),
          reader(link) {
        service.told.Connect([this](const std::string& text) { told.push_back(text); });
        service.text_shown.Connect([this](const std::string& text) { shown = text; });
    }
    bool Pump() {
        simulator.Serve();
        service.Serve(1ms);
        return true;
    }
    bool Pump_Until(const std::function<bool()>& condition) {
        const auto end = std::chrono::steady_clock::now() + 10s;
        while (!condition() && std::chrono::steady_clock::now() < end)
            Pump();
        return condition();
    }
    bool Pump_Until_Serving(bool serving = true) {
        return Pump_Until([&] { return service.Is_Serving() == serving; });
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
    simulator.properties["/sim/signals/fdm-initialized"] = "false";
    ASSERT_TRUE(Pump_Until([this] { return told.size() == 2; }));
    EXPECT_THAT(told.back(), HasSubstr("to finish its start"));
    simulator.properties["/sim/signals/fdm-initialized"] = "true";
    ASSERT_TRUE(Pump_Until_Serving());
    ASSERT_TRUE(link.IPC_Open(0, result)) << result;
    EXPECT_EQ(link.IPC_SimName(), "FS2002");
    EXPECT_EQ(reader.Read_Text(aircraft_title), "Cessna 172P Skyhawk (1982)");

    simulator.properties["/velocities/vertical-speed-fps"] = "10";
    EXPECT_TRUE(Pump_Until([this] { return reader.Read(vertical_speed_fpm) == 600; }));
    EXPECT_TRUE(reader.Write_Display("At the\r\ngate \xE9", 8));
    const std::string& copilot = simulator.properties["/sim/messages/copilot"];
    EXPECT_TRUE(Pump_Until([&] { return copilot == "At the  gate \xC3\xA9"; }));
    EXPECT_EQ(shown, "At the  gate \xE9");

    simulator.Die();
    ASSERT_TRUE(Pump_Until_Serving(false));
    reader.Begin_Step();
    (void)reader.Read(on_ground);
    EXPECT_TRUE(reader.Failed()) << "no figure that stands still";
    simulator.Live_Again();
    ASSERT_TRUE(Pump_Until_Serving());
    reader.Begin_Step();
    EXPECT_EQ(reader.Read(vertical_speed_fpm), 600);
    EXPECT_FALSE(reader.Failed());
    EXPECT_EQ(std::adjacent_find(told.begin(), told.end()), told.end())
        << "each state once: " << testing::PrintToString(told);
}

TEST_F(Flightgear_Services, Report_A_Host_That_Is_No_Simulator_And_Try_Again) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "says nothing"},
        {Replace_All(std::string(999, '.'), ".", "\r\n"), "more than it was asked for"},
        {"1\r\n2\r\n", "2 answers to"},
        {std::string(1'000'000, 'x'), "line without end"},
        {{"\0\xFF\r\xFE\n\r\n\x80\r\n", 9}, "waiting for FlightGear"}};
    for (const auto& [says, reason] : cases) {
        simulator.instead.reset();
        ASSERT_TRUE(Pump_Until_Serving()) << "before: " << reason;
        simulator.instead = says;
        EXPECT_TRUE(Pump_Until_Serving(false)) << reason;
        EXPECT_TRUE(Pump_Until([&, &why = reason] { return Contains(told.back(), why); }))
            << told.back();
    }
}

}  // namespace
}  // namespace norvane
