// An airline's answer of any bytes: what is left of it is plain structure.

#include "net/plain_page.h"
#include "fuzz_world.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    const Plain_Page page = Clean_Page(fuzz::Text_Of(data, size));
    fuzz::Check(page.content.find('\x1b') == std::string::npos);
    if (!page.is_text) {
        fuzz::Check(page.content.find("<script") == std::string::npos);
        fuzz::Check(page.content.find("style=") == std::string::npos);
    }
    return 0;
}
