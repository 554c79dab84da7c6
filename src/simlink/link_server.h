#pragma once
// The simulator's end of the Norvane link: listens, and answers request frames of any number of
// clients from an offset area, or from another source of answers. It runs on its owner's thread,
// one `Serve` at a time, so that the owner moves its world between requests.

#include <functional>
#include <list>
#include <span>
#include <utility>
#include <vector>

#include "simlink/link_socket.h"
#include "simlink/system_sockets.h"
#include "simlink/transport.h"

namespace norvane {

class Offset_Area;

class Link_Server {
  public:
    /// Answers a request's records, in place. What was not answered in time gets no answer frame;
    /// a failed delivery closes the connection of the client that asked.
    using Answer_Records = std::function<Delivery(std::span<std::byte> records)>;

    /// Listens at `address`; raises when it cannot be had. `area` outlives the server.
    Link_Server(const Link_Address& address, Offset_Area& area);
    Link_Server(const Link_Address& address, Answer_Records answer);
    /// Drops all clients and removes the Unix socket, unless someone else has taken its place.
    ~Link_Server();
    Link_Server(const Link_Server&) = delete;
    Link_Server& operator=(const Link_Server&) = delete;

    /// Where it listens, with the port it was given.
    [[nodiscard]] const Link_Address& Address() const { return m_address; }
    [[nodiscard]] std::size_t Client_Count() const { return m_clients.size(); }

    /// Waits for requests and connections, at most so long, and serves those that are there. Ends
    /// its wait at once when the descriptor `wake` has something to read, and tells so.
    bool Serve(std::chrono::milliseconds at_most, int wake = -1);

    /// A client has connected.
    std::function<void()> on_connect;
    /// Requests have come and are about to be answered.
    std::function<void()> before_requests;

  private:
    struct Client {
        Link_Socket socket;
        std::vector<std::byte> incoming;
        /// Answers the client has not taken yet; while there are any, its requests wait.
        std::vector<std::byte> outgoing;
        bool gone = false;
    };

    void Accept_All();
    void Serve_Client(Client& client, short events);
    void Receive(Client& client);
    void Answer_All(Client& client);
    void Send(Client& client);

    Answer_Records m_answer;
    Link_Address m_address;
    Link_Socket m_listener;
    std::list<Client> m_clients;
    std::vector<pollfd> m_polled;
    std::vector<std::byte> m_piece;
    /// No descriptor was left for the last connection; the next one waits until a client leaves.
    bool m_full = false;
    /// The Unix socket's file as it was made: device and number.
    std::pair<std::uint64_t, std::uint64_t> m_file{0, 0};
};

}  // namespace norvane
