// A flight of the whole program, in this process and on a virtual clock, in a simulator whose
// memory, answers and pilot the input decides: a flight is in the log once, and a program that was
// killed or ended finds what it had. An input is a byte for each setting of the table and one for
// the end, then a short list of happenings, a step after each.

#include <fmt/format.h>

#include <array>
#include <optional>
#include <set>
#include <vector>

#include "app/program.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "flightlog/log_reading.h"
#include "fuzz_world.h"
#include "logentry/cls_log_entry.h"
#include "logentry/log_fields.h"
#include "simlink/catalogue.h"
#include "simlink/in_process_transport.h"
#include "simlink/offset_area.h"

namespace norvane::fuzz {
namespace {

constexpr int most_steps = 12;
constexpr int most_kills = 1;

/// What happens before a step; the numbers are those of the input.
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
    switched_on = 12,
    minutes_pass = 13,
    happening_count = 14,
};

struct Choice {
    const char* section;
    const char* key;
    int values;
};
constexpr std::array<Choice, 8> choices{{
    {"Options", "Auto Log", 2},
    {"Options", "Report EOF", 3},
    {"Options", "Touch And Go", 2},
    {"Options", "Record Arrival", 2},
    {"Options", "Report Fuel", 3},
    {"Options", "ACARS to FS", 2},
    {"Options", "atc model", 2},
    {"PIREP", "PIREP", 2},
}};

/// The one program directory of all inputs. What a flight writes into it is taken away with it.
const std::filesystem::path& Program_Directory() {
    static const std::filesystem::path directory = [] {
        // Else every start looks for the aircraft of the simulator.
        Shared_World().Write("bin/ac.cfg", "A\r\n");
        Shared_World().Write("bin/fs9.wld",
                             "40.6|-73.8|13|KJFK|Kennedy\r\n42.4|-71|20|KBOS|Logan\r\n");
        return Shared_World().directory;
    }();
    return directory;
}

class Random_Flight {
  public:
    Random_Flight(const std::uint8_t* data, std::size_t size) : m_input(data, size) {
        static_cast<void>(Log_Failing_Ticks(m_services));
        m_transport.on_deliver = [this](std::span<std::byte>) -> std::optional<Delivery> {
            if (m_failing == 0)
                return std::nullopt;
            --m_failing;
            return Delivery{Delivery_Outcome::answered, 0};
        };
        for (const Choice& choice : choices)
            m_store.Set(choice.section, choice.key, fmt::to_string(m_input.Byte() % choice.values));
        m_store.Set("Options", "WX URL", "NONE");
        m_is_closed = m_input.Byte() % 2 == 0;
        m_area.Set(Variable::on_ground, 1);
        m_area.Set(Variable::parking_brake, 32767);
        m_area.Set(Variable::latitude_deg, 40.6);
        m_area.Set(Variable::longitude_deg, -73.8);
        m_area.Set(Variable::engine_count, 2);
        m_area.Set(Variable::engine_combustion, 1);
        m_area.Set_Text(Variable::aircraft_title, "A");
    }
    ~Random_Flight() {
        std::error_code ignored;
        for (const char* written : {"logs", "reports"})
            std::filesystem::remove_all(m_services.program_directory / written, ignored);
    }
    Random_Flight(const Random_Flight&) = delete;
    Random_Flight& operator=(const Random_Flight&) = delete;

    void Fly() {
        Start();
        m_program->panel.hypOn.Click();
        for (int step = 1; step <= most_steps && !m_input.Is_Used_Up(); ++step) {
            Let(static_cast<Happening>(m_input.Byte() % happening_count));
            // No two flights of an input have the same times.
            for (const Variable hour : {Variable::utc_hour, Variable::local_hour})
                m_area.Set(hour, step / 6);
            for (const Variable minute : {Variable::utc_minute, Variable::local_minute})
                m_area.Set(minute, step % 6 * 10);
            m_desktop.Run_For(std::chrono::milliseconds(500));
            Check_Log();
        }
        End();
    }

  private:
    void Start() {
        m_program.reset();
        m_program.emplace(m_services, m_transport);
        m_was_logged = false;
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
            case brake_set:
                m_area.Set(Variable::parking_brake, happening == brake_set ? 32767 : 0);
                break;
            case lifted_off:
            case touched_down:
                m_area.Set(Variable::on_ground, happening == touched_down ? 1 : 0);
                break;
            case exchange_fails:
                m_failing = m_input.Byte();
                break;
            case paused_or_resumed:
                panel.hypPause.Click();
                break;
            case reset:
                Click_And_Agree(panel.hypReset);
                break;
            case logged:
                Click_And_Agree(panel.hypLog);
                break;
            case killed:
                Kill();
                break;
            case moved:
                m_area.Set(Variable::altitude_ft, m_input.Word() % 60000);
                m_area.Set(Variable::latitude_deg, m_input.Byte() % 90);
                break;
            case switched_on:
                Click_And_Agree(panel.hypOn);
                break;
            case minutes_pass:
                m_clock.Sleep(std::chrono::minutes(m_input.Byte()));
                break;
            case happening_count:
                break;
        }
    }

    void Click_And_Agree(Link& link) {
        m_desktop.answers = {Answer::yes};
        link.Click();
        m_desktop.answers.clear();
    }

    void Put(std::uint32_t offset, std::size_t size) {
        const auto bytes = m_input.Bytes(size);
        const auto place = m_area.Bytes(offset, bytes.size());
        std::copy(bytes.begin(), bytes.end(), reinterpret_cast<std::uint8_t*>(place.data()));
    }

    /// The process ends between two steps, and the program starts anew.
    void Kill() {
        if (++m_kills > most_kills)
            return;
        const std::string off = Off_Of_Flight_To_Keep();
        Start();
        const ucACARS& panel = m_program->panel;
        Check(off.empty() || (panel.Is_Tracked_Or_Stored() && panel.lblTimeOff.Text() == off));
        m_program->panel.hypOn.Click();
    }

    /// Every flight that the panel calls logged stands in the log, and none stands there twice.
    void Check_Log() {
        const ucACARS& panel = m_program->panel;
        if (!panel.Is_Logged() || std::exchange(m_was_logged, true)) {
            m_was_logged = panel.Is_Logged();
            return;
        }
        // Every flight of an input has a time of its own.
        std::set<std::string, std::less<>> outs;
        const Log_Table log = Parse_Log(Read_File(m_program->settings.FlightLog_Path())).table;
        for (std::size_t row = 0; row < log.Row_Count(); ++row)
            Check(outs.emplace(log.Get(row, log_column::time_out)).second);
        Check(outs.contains(panel.lblTimeOut.Text()));
    }

    void End() {
        const std::string off = Off_Of_Flight_To_Keep();
        const ucACARS& panel = m_program->panel;
        if (m_is_closed)
            m_program->Close(ucACARS::Closing::by_signal);
        const std::string key = fmt::to_string(Row_Of(Log_Field::TIME_OFF).store_key);
        Check(off.empty() || panel.Is_Logged() || !panel.Kept_In().empty() ||
              m_store.Get(flight_section, key) == off);
        m_program.reset();
        Check(m_store.Depth() == 0);
    }

    /// When the flight that must not be lost took off; empty when there is none.
    [[nodiscard]] std::string Off_Of_Flight_To_Keep() const {
        const ucACARS& panel = m_program->panel;
        return panel.Is_Tracked_Or_Stored() ? panel.lblTimeOff.Text() : std::string();
    }

    Input m_input;
    test::Virtual_Clock m_clock;
    test::Scripted_Desktop m_desktop{m_clock};
    Memory_Store m_store;
    test::Recorded_Error_Log m_error_log;
    Services m_services{m_desktop, m_store, m_clock, m_error_log, {}, Program_Directory()};
    Offset_Area m_area;
    In_Process_Transport m_transport{m_area};
    /// At the end; else it is killed there too.
    bool m_is_closed = true;
    int m_failing = 0;
    int m_kills = 0;
    bool m_was_logged = false;
    std::optional<Program> m_program;
};

}  // namespace
}  // namespace norvane::fuzz

/// A flight passes so many places of the program that weighing them against each other would take
/// longer than the flight.
extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments) {
    static std::string option = "-entropic=0";
    static std::vector<char*> all(*arguments, *arguments + *count);
    all.insert(all.begin() + 1, option.data());
    *count = static_cast<int>(all.size());
    all.push_back(nullptr);
    *arguments = all.data();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    norvane::fuzz::Random_Flight(data, size).Fly();
    return 0;
}
