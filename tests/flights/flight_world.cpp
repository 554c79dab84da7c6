#include "flights/flight_world.h"

#include "common/line_reader.h"
#include "simhost/recording.h"
#include "simhost/replay.h"
#include "simhost/scenario.h"

namespace norvane::test {

namespace {

const std::filesystem::path data_directory = std::filesystem::path(NORVANE_SOURCE_DIR) / "data";

}  // namespace

std::unique_ptr<World_Source> Recorded_World(const std::string& name) {
    return std::make_unique<Replay>(Read_Recording(Data_File(name)));
}

std::unique_ptr<World_Source> Scenario_World(const std::filesystem::path& file) {
    return Load_Scenario(file, data_directory / "simulator");
}

Flight_World::Flight_World(World_Source& world, double step_s) : m_world(world), m_step_s(step_s) {
    std::filesystem::create_directories(directory / "bin");
    std::filesystem::copy(data_directory / "bin" / "fs9.wld", directory / "bin" / "fs9.wld");
    // The flight's date must not depend on the day the test runs.
    store.Set("Options", "Report Date", "0");
    m_transport.on_deliver = [this](std::span<std::byte> block) { return Exchange(block); };
}

std::optional<Delivery> Flight_World::Exchange(std::span<std::byte> block) {
    if (m_moment_s != m_applied_s)
        m_world.Apply(m_moment_s, m_area);
    m_applied_s = m_moment_s;
    return trouble ? trouble(exchanges++, block) : (++exchanges, std::nullopt);
}

Program& Flight_World::Start() {
    m_program.reset();
    m_program.emplace(services, m_transport);
    m_program->engine.events.FSTime.connect([this](const std::string&) {
        m_moment_s += m_step_s;
        if (on_step)
            on_step();
    });
    m_program->engine.events.ACARSMessage.connect(
        [this](Message_Type, const std::string& text) { messages.push_back(text); });
    return *m_program;
}

bool Flight_World::Fly_To_Gate(std::chrono::minutes at_most) {
    const auto end = desktop.Now() + at_most;
    ucACARS& panel = m_program->panel;
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

std::vector<std::vector<std::string>> Flight_World::Rows() const {
    std::vector<std::vector<std::string>> rows;
    for (const auto& line : Read_Lines(m_program->settings.FlightLog_Path())) {
        if (!line.empty())
            rows.push_back(Split(line, '|'));
    }
    return rows;
}

}  // namespace norvane::test
