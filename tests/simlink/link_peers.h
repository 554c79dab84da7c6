#pragma once
// The other ends of the link for tests: request blocks and frames made by hand.

#include <sys/socket.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "simlink/link_server.h"
#include "simlink/offset_area.h"
#include "simlink/request_block.h"

namespace norvane::test {

/// A socket path of its own for each test, in a directory that is gone afterwards.
class Socket_Directory {
  public:
    Socket_Directory() {
        std::string name = (std::filesystem::temp_directory_path() / "norvane-XXXXXX").string();
        path = ::mkdtemp(name.data());
    }
    ~Socket_Directory() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    [[nodiscard]] Link_Address Address() const { return {path / "link", "", 0}; }
    std::filesystem::path path;
};

/// A block from 32-bit words and, in between, runs of data bytes.
class Block {
  public:
    Block& Words(std::initializer_list<std::uint32_t> words) {
        for (const std::uint32_t word : words) {
            bytes.resize(bytes.size() + 4);
            Store_U32(bytes, bytes.size() - 4, word);
        }
        return *this;
    }
    Block& Data(std::size_t count, int value = 0x55) {
        bytes.insert(bytes.end(), count, std::byte(value));
        return *this;
    }
    Block& Text(std::string_view text) {
        Data(text.size());
        Encode_Text(text, std::span(bytes).last(text.size()));
        return *this;
    }
    std::vector<std::byte> bytes;
};

/// A block with one read of `size` bytes at `offset`.
inline std::vector<std::byte> Read_Block(std::uint32_t offset, std::uint32_t size) {
    return Block().Words({1, offset, size, 1}).Data(size, 0).Words({0}).bytes;
}

/// A frame's head and the records behind it.
inline std::vector<std::byte> Frame(std::initializer_list<std::uint32_t> head,
                                    const std::vector<std::byte>& records) {
    Block frame = Block().Words(head).Words({static_cast<std::uint32_t>(records.size())});
    frame.bytes.insert(frame.bytes.end(), records.begin(), records.end());
    return frame.bytes;
}

inline void Send_Bytes(const Link_Socket& peer, std::span<const std::byte> bytes) {
    (void)::send(peer.Descriptor(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

/// What is there already; how much that was.
inline std::size_t Receive_Ready(const Link_Socket& peer, std::span<std::byte> bytes) {
    const auto got = ::recv(peer.Descriptor(), bytes.data(), bytes.size(), 0);
    return static_cast<std::size_t>(std::max<ssize_t>(got, 0));
}

/// So many bytes; fewer when the other side has gone, or says nothing more for long.
inline std::vector<std::byte> Receive_Bytes(const Link_Socket& peer, std::size_t count) {
    std::vector<std::byte> bytes(count);
    const Link_Deadline deadline{std::chrono::steady_clock::now() + std::chrono::seconds(10)};
    std::size_t place = 0;
    for (std::size_t got = 1; got > 0 && place < count; place += got)
        got = Wait_For(peer, POLLIN, deadline)
                  ? Receive_Ready(peer, std::span(bytes).subspan(place))
                  : 0;
    bytes.resize(place);
    return bytes;
}

/// A frame whose head has so many words, the last of them the length of what follows.
struct Received_Frame {
    Received_Frame(const Link_Socket& peer, std::size_t words)
        : head(Receive_Bytes(peer, 4 * words)) {
        if (head.size() == 4 * words)
            records = Receive_Bytes(peer, Load_U32(head, head.size() - 4));
    }
    std::vector<std::byte> head, records;
};

}  // namespace norvane::test
