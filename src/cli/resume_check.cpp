#include "cli/resume_check.h"

#include <chrono>
#include <optional>
#include <utility>

#include "acars/persistence.h"
#include "cli/console_desktop.h"
#include "common/great_circle.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/sim_reader.h"

namespace norvane {

namespace {

constexpr double near_enough_nm = 10;
constexpr std::chrono::seconds look_again(1);

/// True where the flight can go on, and when the simulator does not answer: resuming itself tells.
bool Can_Go_On(Sim_Reader& reader, const std::optional<Position>& last) {
    reader.Begin_Step();
    const bool on_ground = reader.Read_Whole(Variable::on_ground) != 0;
    const Position now{reader.Read(Variable::latitude_deg), reader.Read(Variable::longitude_deg)};
    if (reader.Failed() || !on_ground)
        return true;
    return last && Great_Circle_Nm(*last, now) <= near_enough_nm;
}

}  // namespace

bool Await_Stored_Flight_In_The_Simulator(Services& services, modFSUIPC& link,
                                          const std::function<bool()>& ended) {
    const Stored_Flight stored = Read_Stored_Flight(services);
    int result = 0;
    if (stored.phase != Flight_Phase::off || !link.IPC_Open(0, result))
        return true;
    Sim_Reader reader(link);
    bool told = false;
    bool ready = Can_Go_On(reader, stored.last_position);
    while (!ready && !ended()) {
        if (!std::exchange(told, true)) {
            Console_Desktop::Say(
                "Waiting until the aircraft is in the air or near the place where "
                "the flight was broken off.");
        }
        services.desktop.Wait_Until([] { return false; }, look_again);
        ready = Can_Go_On(reader, stored.last_position);
    }
    link.IPC_Close();
    return ready;
}

}  // namespace norvane
