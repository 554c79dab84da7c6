// An airline's answer of any bytes: what is left of it is plain structure.

#include "net/plain_page.h"

#include <algorithm>

#include "fuzz_world.h"

namespace {

bool Is_Of(std::string_view text, bool with_hash) {
    return std::all_of(text.begin(), text.end(), [&](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               (with_hash && c == '#');
    });
}

/// What stands between "<" and ">" names an element, perhaps with a text colour.
bool Is_Plain_Tag(std::string_view tag) {
    static constexpr std::string_view color = " color=\"";
    if (tag.starts_with('/'))
        tag.remove_prefix(1);
    const std::string_view name = tag.substr(0, tag.find(' '));
    tag.remove_prefix(name.size());
    if (name.empty() || !Is_Of(name, false) || name == "script" || name == "style")
        return false;
    if (tag.empty())
        return true;
    return tag.starts_with(color) && tag.ends_with('"') &&
           Is_Of(tag.substr(color.size(), tag.size() - color.size() - 1), true);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    const Plain_Page page = Clean_Page(fuzz::Text_Of(data, size));
    fuzz::Check(page.content.find('\x1b') == std::string::npos);
    const std::string_view content = page.content;
    for (std::size_t place = content.find('<'); !page.is_text && place != content.npos;
         place = content.find('<', place + 1)) {
        const std::size_t end = content.find('>', place);
        fuzz::Check(end != content.npos &&
                    Is_Plain_Tag(content.substr(place + 1, end - place - 1)));
    }
    return 0;
}
