// An aircraft's configuration file of any bytes, with the payload of every kind of aircraft.

#include "fuzz_world.h"
#include "simdata/cls_ini_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    fuzz::Fuzz_World& world = fuzz::Shared_World();
    clsIniFile file(world.services);
    file.Set_INI_FilePath(world.Write("aircraft.cfg", fuzz::Text_Of(data, size)));
    file.Get_Configuration_Info();
    fuzz::Check(file.ATC_Model().size() <= 254);
    return 0;
}
