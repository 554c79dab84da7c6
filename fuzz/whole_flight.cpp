// A flight of the whole program, in this process and on a virtual clock, in a simulator whose
// memory, answers and pilot the input decides: what was logged is in the log once, and a program
// that was killed finds what it had.

#include <optional>

#include "app/program.h"
#include "common/file_writer.h"
#include "fuzz_world.h"
#include "simlink/catalogue.h"
#include "simlink/in_process_transport.h"
#include "simlink/offset_area.h"

namespace norvane::fuzz {
namespace {

constexpr int most_steps = 64;

/// What happens at a step; the numbers are those of the input.
enum Happening : std::uint8_t {
    variable_set = 0,
    raw_bytes_set = 1,
    brake_released = 2,
    brake_set = 3,
    lifted_off = 4,
    touched_down = 5,
    exchange_fails = 6,
    paused_or_resumed = 7,
    reset = 8,
    logged = 9,
    killed = 10,
    moved = 11,
    happening_count = 12,
};

class Random_Flight {
  public:
    Random_Flight(const std::uint8_t* data, std::size_t size) : m_input(data, size) {
        static const bool made = Make_Directory();
        Check(made);
        std::filesystem::remove(World().directory / "logs" / "My Flight Log.txt");
        m_transport.on_deliver = [this](std::span<std::byte>) -> std::optional<Delivery> {
            if (m_failing == 0)
                return std::nullopt;
            --m_failing;
            return Delivery{Delivery_Outcome::answered, 0};
        };
        const std::uint8_t first = m_input.Byte();
        m_store.Set("Options", "Auto Log", (first & 1) != 0 ? "1" : "0");
        m_area.Set(Variable::on_ground, 1);
        m_area.Set(Variable::parking_brake, 32767);
        m_area.Set(Variable::engine_count, 2);
        m_area.Set(Variable::engine_combustion, 1);
        m_area.Set_Text(Variable::aircraft_title, "A");
    }

    void Fly() {
        Start();
        for (int step = 0; step < most_steps && !m_input.Is_Used_Up(); ++step) {
            Let(static_cast<Happening>(m_input.Byte() % happening_count));
            m_world.desktop.Run_For(std::chrono::milliseconds(500));
        }
        m_program->Close(ucACARS::Closing::by_signal);
        m_program.reset();
    }

  private:
    static Fuzz_World& World() { return Shared_World(); }
    static bool Make_Directory() {
        World().Write("bin/fs9.wld", "40.6|-73.8|13|KJFK|Kennedy\r\n42.4|-71|20|KBOS|Logan\r\n");
        std::filesystem::create_directories(World().directory / "logs");
        return true;
    }

    void Start() {
        m_program.reset();
        m_program.emplace(m_services, m_transport);
        m_program->panel.hypOn.Click();
    }

    void Let(Happening happening) {
        ucACARS& panel = m_program->panel;
        switch (happening) {
            case variable_set: {
                const auto all = All_Variables();
                const Variable_Row& row = all[m_input.Byte() % all.size()];
                Put(row.offset, row.size);
                break;
            }
            case raw_bytes_set:
                Put(m_input.Word() % 0xFF00, m_input.Byte());
                break;
            case brake_released:
                m_area.Set(Variable::parking_brake, 0);
                break;
            case brake_set:
                m_area.Set(Variable::parking_brake, 32767);
                break;
            case lifted_off:
                m_area.Set(Variable::on_ground, 0);
                break;
            case touched_down:
                m_area.Set(Variable::on_ground, 1);
                break;
            case exchange_fails:
                m_failing = m_input.Byte();
                break;
            case paused_or_resumed:
                panel.hypPause.Click();
                break;
            case reset:
                m_world.desktop.answers = {Answer::yes};
                panel.hypReset.Click();
                break;
            case logged:
                m_world.desktop.answers = {Answer::yes};
                panel.hypLog.Click();
                break;
            case killed:
                if (++m_kills < 3)
                    Start();
                break;
            case moved:
                m_area.Set(Variable::altitude_ft, m_input.Word() % 60000);
                m_area.Set(Variable::latitude_deg, m_input.Byte() % 90);
                break;
            case happening_count:
                break;
        }
    }

    void Put(std::uint32_t offset, std::size_t size) {
        const auto bytes = m_input.Bytes(size);
        std::memcpy(m_area.Bytes(offset, bytes.size()).data(), bytes.data(), bytes.size());
    }

    Input m_input;
    Fuzz_World& m_world = Shared_World();
    Memory_Store m_store;
    Services m_services{m_world.desktop,
                        m_store,
                        m_world.clock,
                        m_world.services.error_log,
                        m_world.services.regional,
                        m_world.services.program_directory};
    Offset_Area m_area;
    In_Process_Transport m_transport{m_area};
    int m_failing = 0;
    int m_kills = 0;
    std::optional<Program> m_program;
};

}  // namespace
}  // namespace norvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    norvane::fuzz::Random_Flight(data, size).Fly();
    return 0;
}
