// An INI-style file, a file of field definitions and a list of airlines, of any bytes.

#include "config/airline_list.h"
#include "config/field_definitions.h"
#include "config/profile_reader.h"
#include "fuzz_world.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    fuzz::Fuzz_World& world = fuzz::Shared_World();
    const auto path = world.Write("a.cfg", fuzz::Text_Of(data, size));
    const Profile profile(path);
    for (const std::string& section : profile.Section_Names()) {
        for (const auto& [key, value] : profile.Values(section))
            fuzz::Check(profile.Value(section, key) == value && value.size() <= 254);
        fuzz::Check(!profile.Section(section).empty());
    }
    fuzz::May_Refuse([&] { fuzz::Check(Read_Field_Definitions(path, 20).fields.size() <= 20); });
    fuzz::May_Refuse([&] { static_cast<void>(Read_Airline_Codes(path)); });
    return 0;
}
