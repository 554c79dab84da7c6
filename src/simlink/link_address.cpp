#include "simlink/link_address.h"

#include "common/number.h"
#include "common/run_error.h"

namespace norvane {

namespace {

constexpr std::string_view unix_prefix = "unix:";
/// A socket's path and its NUL must fit the system's own field of 108 bytes.
constexpr std::size_t longest_path = 107;

#ifdef _WIN32
constexpr bool has_unix_sockets = false;
#else
constexpr bool has_unix_sockets = true;
#endif

[[noreturn]] void Refuse(std::string_view text, const std::string& fault) {
    throw Run_Error(error_number::invalid_call,
                    "\"" + std::string(text.substr(0, 200)) + "\" is no link address: " + fault);
}

}  // namespace

std::string Link_Address::Text() const {
    if (Is_Unix())
        return std::string(unix_prefix) + socket_file.string();
    const bool bracketed = host.find(':') != std::string::npos;
    return (bracketed ? "[" + host + "]" : host) + ":" + std::to_string(port);
}

Link_Address Parse_Link_Address(std::string_view text) {
    if (text.find('\0') != std::string_view::npos)
        Refuse(text.substr(0, text.find('\0')), "it holds a NUL character");
    Link_Address address;
    if (text.starts_with(unix_prefix)) {
        if (!has_unix_sockets)
            Refuse(text, "this system has no Unix sockets");
        address.socket_file = text.substr(unix_prefix.size());
        if (address.socket_file.empty())
            Refuse(text, "the path is missing behind \"unix:\"");
        if (address.socket_file.string().size() > longest_path)
            Refuse(text, "the path is longer than " + std::to_string(longest_path) + " bytes");
        return address;
    }
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos)
        Refuse(text, "neither unix:/path nor host:port");
    std::string_view host = text.substr(0, colon);
    if (host.starts_with('[') && host.ends_with(']'))
        host = host.substr(1, host.size() - 2);
    else if (host.find(':') != std::string_view::npos)
        Refuse(text, "an address with colons stands in brackets");
    if (host.empty())
        Refuse(text, "the host is missing");
    const auto port = Parse_Int32(text.substr(colon + 1));
    if (!port || *port < 0 || *port > 65535)
        Refuse(text, "the port is no number from 0 to 65535");
    address.host = host;
    address.port = static_cast<std::uint16_t>(*port);
    return address;
}

std::string Link_Address_Fault(const std::string& text) {
    try {
        static_cast<void>(Parse_Link_Address(text));
        return {};
    } catch (const Run_Error& error) {
        return error.Description();
    }
}

}  // namespace norvane
