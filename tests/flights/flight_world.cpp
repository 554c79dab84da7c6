#include "flights/flight_world.h"

#include "common/line_reader.h"
#include "simhost/scenario/scenario.h"

namespace norvane::test {

namespace {

const std::filesystem::path data_directory = std::filesystem::path(NORVANE_SOURCE_DIR) / "data";

}  // namespace

std::unique_ptr<World_Source> Scenario_World(const std::filesystem::path& file) {
    return Load_Scenario(file, data_directory / "simulator");
}

World_Source& Short_Hop() {
    static const auto world = Scenario_World(Data_File("scenarios/short-jet.json"));
    return *world;
}

Flight_World::Flight_World() : Flight_World(Short_Hop(), 5) {
    Write("bin/optfields.cfg", "Gate^\r\nType^Charter|Ferry\r\n");
}

Flight_World::Flight_World(World_Source& world, double step_s) : m_world(world), m_step_s(step_s) {
    // A thousand hops have no use for all airports there are.
    const auto airports = Write("bin/fs9.wld",
                                "40.639801|-73.7789|13|KJFK|Kennedy\r\n"
                                "40.777199|-73.872597|21|KLGA|La Guardia\r\n");
    if (&world != &Short_Hop()) {
        std::filesystem::copy(data_directory / "bin" / "fs9.wld", airports,
                              std::filesystem::copy_options::overwrite_existing);
    }
    // The flight's date must not depend on the day the test runs.
    store.Set("Options", "Report Date", "0");
    transport.on_deliver = [this](std::span<std::byte> block) { return Exchange(block); };
}

std::optional<Delivery> Flight_World::Exchange(std::span<std::byte> block) {
    if (m_moment_s != m_applied_s)
        m_world.Apply(m_moment_s, area);
    m_applied_s = m_moment_s;
    if (!linked)
        return Delivery{Delivery_Outcome::failed, 0};
    return trouble ? trouble(exchanges++, block) : (++exchanges, std::nullopt);
}

Program& Flight_World::Start() {
    Test_Flight::Start();
    program->engine.events.FSTime.Connect([this](const std::string&) {
        m_moment_s += m_step_s;
        if (on_step)
            on_step();
    });
    program->engine.events.ACARSMessage.Connect(
        [this](Message_Type, const std::string& text) { messages.push_back(text); });
    return *program;
}

void Flight_World::Take_Off() {
    program->panel.hypOn.Click();
    EXPECT_TRUE(desktop.Wait_Until([this] { return !program->engine.TIME_OFF().empty(); },
                                   std::chrono::hours(1)));
}

bool Flight_World::Fly_To_Gate() {
    const auto end = desktop.Now() + std::chrono::hours(3);
    ucACARS& panel = program->panel;
    while (!panel.Is_At_Gate() && desktop.Now() < end) {
        if (panel.Is_Paused())
            panel.hypPause.Click();
        else if (!panel.Is_Active())
            panel.hypOn.Click();
        desktop.Wait_Until([&] { return panel.Is_At_Gate() || panel.Is_Paused(); },
                           std::chrono::seconds(60));
    }
    return panel.Is_At_Gate();
}

Row Flight_World::Fly() {
    if (!Fly_To_Gate())
        return {};
    Log();
    const auto rows = Rows();
    return rows.size() == 1 ? rows[0] : Row{};
}

std::vector<Row> Flight_World::Rows() const {
    std::vector<Row> rows;
    for (const auto& line : Read_Lines(program->settings.FlightLog_Path())) {
        if (!line.empty())
            rows.push_back(Split(line, '|'));
    }
    return rows;
}

}  // namespace norvane::test
