// A weather source's answer of any bytes, as page and as plain report, from every source: refused,
// or what is cut out of it is text.

#include <array>

#include "fuzz_world.h"
#include "net/weather_pages.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    fuzz::Fuzz_World& world = fuzz::Shared_World();
    static constexpr std::array<std::string_view, 4> sources{"NOAA", "VATSIM", "ADDS", "FS"};
    const std::string answer = Without_Controls(std::string(fuzz::Text_Of(data, size)));
    fuzz::Check(answer.find_first_of("\x1b\x7f") == std::string::npos);
    for (const std::string_view source : sources) {
        fuzz::May_Refuse([&] {
            const std::string report = METAR_In(world.services, source, "KJFK", answer);
            fuzz::Check(report.find('\n') == std::string::npos);
            fuzz::Check(source != "NOAA" || report.empty() || report.starts_with("KJFK"));
        });
    }
    fuzz::May_Refuse([&] {
        const std::string report = TAF_In("KJFK", answer);
        fuzz::Check(report.find_first_of("<\n") == std::string::npos);
    });
    const std::string both = METAR_TAF_In(world.services, answer);
    fuzz::Check(both.size() <= answer.size());
    return 0;
}
