#pragma once
// The other ends of the link for tests: a real server on a thread, and peers that misbehave.

#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
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

/// A link server that runs until it goes out of scope.
class Running_Server {
  public:
    explicit Running_Server(const Link_Address& listen)
        : m_wake(::eventfd(0, EFD_CLOEXEC)), server(listen, area), m_thread([this] {
              while (!server.Serve(std::chrono::seconds(10), m_wake)) {
              }
          }) {}
    ~Running_Server() {
        ::eventfd_write(m_wake, 1);
        m_thread.join();
        ::close(m_wake);
    }

  private:
    int m_wake;

  public:
    Offset_Area area;
    Link_Server server;

  private:
    std::thread m_thread;
};

/// Takes one connection after the other and hands each to the next of `acts`.
class Scripted_Peer {
  public:
    using Act = std::function<void(int)>;

    Scripted_Peer(const Link_Address& listen, std::vector<Act> acts)
        : m_listener(Listen_At(listen)), m_thread([this, acts = std::move(acts)] {
              for (const Act& act : acts) {
                  const Link_Deadline deadline{std::chrono::steady_clock::now() +
                                               std::chrono::seconds(10)};
                  if (!Wait_For(m_listener, POLLIN, deadline))
                      return;
                  const Link_Socket client = Accept_From(m_listener);
                  ++connections;
                  act(client.Descriptor());
              }
          }) {}
    ~Scripted_Peer() { m_thread.join(); }
    std::atomic<int> connections = 0;

  private:
    Link_Socket m_listener;
    std::thread m_thread;
};

/// Reads one whole request frame: its sequence and records. Empty when the client has gone.
struct Request_Frame {
    std::uint32_t sequence = 0;
    std::vector<std::byte> records;
};

inline bool Receive_Exactly(int peer, std::span<std::byte> bytes) {
    while (!bytes.empty()) {
        pollfd entry{peer, POLLIN, 0};
        if (::poll(&entry, 1, 10'000) <= 0)
            return false;
        const auto got = ::recv(peer, bytes.data(), bytes.size(), 0);
        if (got <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(got));
    }
    return true;
}

inline Request_Frame Receive_Request(int peer) {
    std::vector<std::byte> head(request_head_size);
    if (!Receive_Exactly(peer, head))
        return {};
    Request_Frame frame{Load_U32(head, 0), std::vector<std::byte>(Load_U32(head, 4))};
    if (!Receive_Exactly(peer, frame.records))
        return {};
    return frame;
}

inline std::vector<std::byte> Answer_Frame(std::uint32_t sequence, std::uint32_t answer,
                                           std::span<const std::byte> records) {
    std::vector<std::byte> frame(answer_head_size);
    Store_U32(frame, 0, sequence);
    Store_U32(frame, 4, answer);
    Store_U32(frame, 8, static_cast<std::uint32_t>(records.size()));
    frame.insert(frame.end(), records.begin(), records.end());
    return frame;
}

inline void Send_Bytes(int peer, std::span<const std::byte> bytes) {
    (void)::send(peer, bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

}  // namespace norvane::test
