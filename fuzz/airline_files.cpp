// The files of an airline, of any bytes: where its server is, and the fields of its PIREP. The
// input is the three of them, with form feeds between.

#include <array>

#include "common/text.h"
#include "config/cls_va_settings.h"
#include "fuzz_world.h"
#include "net/http_address.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    fuzz::Fuzz_World& world = fuzz::Shared_World();
    std::vector<std::string> parts = Split(std::string(fuzz::Text_Of(data, size)), '\f');
    static constexpr std::array<const char*, 3> names{"server.cfg", "pirep.cfg", "vafields.cfg"};
    parts.resize(names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        world.Write(std::filesystem::path("VA_X") / names.at(i), parts.at(i));
    clsVASettings airline(world.services);
    airline.Get_VA_Settings("X");
    fuzz::Check(airline.PIREP_Fields_Ubound() < 76);
    for (int i = 0; i <= airline.PIREP_Fields_Ubound(); ++i) {
        for (const std::string* text : {&airline.PIREP_Fields(i), &airline.PIREP_Field_Names(i)})
            fuzz::Check(text->find_first_of("\r\n") == std::string::npos);
    }
    // Where its answer sends the next request is of the airline's making, too.
    fuzz::May_Refuse([&] {
        const Http_Hop hop{Http_Verb::post,
                           Request_Address(airline.WebServer(), airline.Script_PIREP())};
        const auto next = Next_Hop(hop, 302, parts.at(0));
        fuzz::Check(!next || next->verb == Http_Verb::post);
    });
    return 0;
}
