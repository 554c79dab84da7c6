// A list of airports of any bytes, plain or packed: what is taken is a world file without a fault.

#include "acars/world_file.h"
#include "common/run_error.h"
#include "fuzz_world.h"
#include "worldtools/airport_sources.h"
#include "worldtools/world_builder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    fuzz::Fuzz_World& world = fuzz::Shared_World();
    const auto source = world.Write("a.dat", fuzz::Text_Of(data, size));
    fuzz::May_Refuse([&] {
        World_Builder builder(Heliports::take);
        Read_Airports(source, builder);
        builder.Sort();
        World_File file;
        file.Load(world.Write("built.wld", builder.Content()));
        fuzz::Check(file.First_Fault().empty());
    });
    return 0;
}
