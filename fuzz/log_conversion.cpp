// The simulator's own flight log of any bytes: converted, or refused; a result is a log of ours.

#include "common/file_writer.h"
#include "common/line_reader.h"
#include "flightlog/log_reading.h"
#include "flightlog/mod_fs_log.h"
#include "fuzz_world.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    fuzz::Fuzz_World& world = fuzz::Shared_World();
    const auto source = world.Write("a.log", fuzz::Text_Of(data, size));
    fuzz::May_Refuse([&] {
        const auto made = modFSLog::Convert(world.services, source, "a");
        fuzz::Check(Parse_Log(Read_File(made)).long_lines.empty());
    });
    return 0;
}
