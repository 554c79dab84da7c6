#include "net/form_encoding.h"

namespace norvane {

std::string Encode_URL(std::string_view text) {
    static constexpr std::string_view digits = "0123456789ABCDEF";
    const auto plain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    };
    std::string encoded;
    encoded.reserve(text.size() * 3 / 2);
    for (const char c : text) {
        if (plain(c)) {
            encoded += c;
        } else if (c == ' ') {
            encoded += '+';
        } else {
            const auto code = static_cast<unsigned char>(c);
            encoded += '%';
            encoded += digits[code >> 4U];
            encoded += digits[code & 0xFU];
        }
    }
    return encoded;
}

}  // namespace norvane
