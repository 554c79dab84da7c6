// The online network's data of any bytes: refused, or what is found is one line, and the pilot's
// own.

#include "fuzz_world.h"
#include "net/vatsim_data.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    const std::string text(fuzz::Text_Of(data, size));
    fuzz::May_Refuse([&] {
        const std::string line = Find_VATSIM_Line(text, "812345", [] {});
        fuzz::Check(line.find('\n') == std::string::npos);
        fuzz::Check(line.empty() || line.find("812345") != std::string::npos);
    });
    return 0;
}
