#pragma once
// The encoding of names and values in a form post, and of airport codes in an address.

#include <string>
#include <string_view>

namespace norvane {

/// Letters and digits of ASCII as they are, a blank as "+", every other byte as "%" and two
/// upper-case hexadecimal digits.
[[nodiscard]] std::string Encode_URL(std::string_view text);

}  // namespace norvane
