#pragma once
// Where the Norvane link meets: a Unix domain socket or a TCP port. Both sides read the same texts.

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace norvane {

/// Where the simulator's side listens and the client looks unless told otherwise.
inline constexpr std::string_view default_link_address = "127.0.0.1:8338";

struct Link_Address {
    /// Not empty: a Unix domain socket, and the other two mean nothing.
    std::filesystem::path socket_file;
    std::string host;
    /// 0 lets a listener take any free port.
    std::uint16_t port = 0;

    [[nodiscard]] bool Is_Unix() const { return !socket_file.empty(); }
    /// The text that reads back as this address.
    [[nodiscard]] std::string Text() const;
};

/// Reads `unix:/path`, `host:port` or `[address]:port`. Raises 5 with what is wrong.
[[nodiscard]] Link_Address Parse_Link_Address(std::string_view text);

/// What is wrong with the text of an address; empty when nothing is.
[[nodiscard]] std::string Link_Address_Fault(const std::string& text);

}  // namespace norvane
