// A scenario of any bytes: read, or refused by name.

#include "simhost/scenario/scenario.h"
#include "fuzz_world.h"
#include "simhost/scenario/scenario_data.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    fuzz::Fuzz_World& world = fuzz::Shared_World();
    const auto path = world.Write("a.json", fuzz::Text_Of(data, size));
    fuzz::May_Refuse([&] {
        static_cast<void>(
            Read_Scenario(path, std::filesystem::path(NORVANE_SOURCE_DIR) / "data" / "simulator"));
    });
    return 0;
}
