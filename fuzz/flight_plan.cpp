// A saved flight plan of any bytes: none of its values breaks a line of the log.

#include "fuzz_world.h"
#include "simdata/cls_ini_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    fuzz::Fuzz_World& world = fuzz::Shared_World();
    clsIniFile plan(world.services);
    plan.Set_INI_FilePath(world.Write("a.pln", fuzz::Text_Of(data, size)));
    plan.Get_Flight_Plan();
    for (const std::string* value :
         {&plan.FLIGHT_PLAN(), &plan.Flight_Origin_ICAO(), &plan.Flight_Origin_Name(),
          &plan.Flight_Destination_ICAO(), &plan.Flight_Destination_Name(), &plan.FLIGHT_LEVEL()})
        fuzz::Check(value->find_first_of("|\r\n") == std::string::npos);
    return 0;
}
