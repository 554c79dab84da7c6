#include "cli/resume_check.h"

#include <chrono>
#include <string>
#include <string_view>
#include <utility>

#include "acars/persistence.h"
#include "cli/console_desktop.h"
#include "common/great_circle.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/sim_reader.h"

namespace norvane {

namespace {

constexpr std::chrono::seconds look_again(1);

/// True where the flight can go on, and when the simulator does not answer: resuming itself tells.
bool Can_Go_On(Sim_Reader& reader, const Stored_Flight& stored) {
    reader.Begin_Step();
    const bool on_ground = reader.Read_Whole(Variable::on_ground) != 0;
    const Position now{reader.Read(Variable::latitude_deg), reader.Read(Variable::longitude_deg)};
    if (reader.Failed() || (stored.phase == Flight_Phase::off && !on_ground))
        return true;
    return stored.last_position && Great_Circle_Nm(*stored.last_position, now) <= resume_within_nm;
}

std::string_view What_Is_Awaited(Flight_Phase phase) {
    return phase == Flight_Phase::off
               ? "Waiting until the aircraft is in the air or near the place where the flight was "
                 "broken off."
               : "Waiting until the aircraft is near the place where the flight had landed.  "
                 "\"fly --new\" gives the flight up and keeps its row.";
}

}  // namespace

bool Await_Stored_Flight_In_The_Simulator(Services& services, modFSUIPC& link,
                                          const std::function<bool()>& ended) {
    const Stored_Flight stored = Read_Stored_Flight(services);
    int result = 0;
    const bool under_way = stored.phase == Flight_Phase::off || stored.phase == Flight_Phase::on;
    if (!under_way || !link.IPC_Open(0, result))
        return true;
    Sim_Reader reader(link);
    bool told = false;
    bool ready = Can_Go_On(reader, stored);
    while (!ready && !ended()) {
        if (!std::exchange(told, true))
            Console_Desktop::Say(std::string(What_Is_Awaited(stored.phase)));
        services.desktop.Wait_Until([] { return false; }, look_again);
        ready = Can_Go_On(reader, stored);
    }
    link.IPC_Close();
    return ready;
}

}  // namespace norvane
