// A recording of any bytes: read, or refused by its line; what was read can be replayed.

#include "simlink/recording.h"
#include "fuzz_world.h"
#include "simhost/recording/replay.h"
#include "simlink/offset_area.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    fuzz::Fuzz_World& world = fuzz::Shared_World();
    const auto path = world.Write("a.rec", fuzz::Text_Of(data, size));
    fuzz::May_Refuse([&] {
        Replay replay(Read_Recording(path));
        Offset_Area area;
        for (const double seconds : {0.0, replay.Length() / 2, replay.Length(), 0.0})
            replay.Apply(seconds, area);
    });
    return 0;
}
