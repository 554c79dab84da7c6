// A flight log of any bytes: read, sorted, listed, and every row written again as it was read.

#include "flightlog/log_reading.h"
#include "flightlog/log_table.h"
#include "fuzz_world.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    Log_Reading reading = Parse_Log(std::string(fuzz::Text_Of(data, size)));
    for (const int mode : {0, 1}) {
        Sort_XArray(reading.table, mode, "M/d/yyyy");
        for (std::size_t row = 0; row < reading.table.Row_Count(); ++row)
            fuzz::Check(!Listed_Row(reading.table, row).empty());
    }
    return 0;
}
