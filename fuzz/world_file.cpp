// A world file of any bytes: loaded, and searched for the nearest airport.

#include "acars/world_file.h"
#include "fuzz_world.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    fuzz::Fuzz_World& world = fuzz::Shared_World();
    const auto path = world.Write("a.wld", fuzz::Text_Of(data, size));
    World_File file;
    file.Load(path);
    Nearest_Search search;
    search.from = {40.6, -73.8};
    file.Search(search, Equal_Distance::replaces_best, {});
    fuzz::Check(search.Best().icao.find('|') == std::string::npos);
    return 0;
}
