#pragma once
// Servers on loopback that the tests ask, each on a port the system chose and gone with its object:
// one that answers as a web server does, over TLS or not, and one that does with the connection
// whatever a test wants.

#include <httplib.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace norvane::test {

class Web_Server {
  public:
    explicit Web_Server(
        std::unique_ptr<httplib::Server> server = std::make_unique<httplib::Server>());
    ~Web_Server();
    Web_Server(const Web_Server&) = delete;
    Web_Server& operator=(const Web_Server&) = delete;

    /// Set the pages before `Start`.
    httplib::Server* operator->() { return m_server.get(); }
    void Start();
    /// "127.0.0.1:port", or with another name for the same machine.
    [[nodiscard]] std::string Host(const std::string& name = "127.0.0.1") const;

  private:
    std::unique_ptr<httplib::Server> m_server;
    int m_port;
    std::thread m_thread;
};

/// Takes one connection after the other: reads a whole request, then lets `answer` use the socket.
class Raw_Server {
  public:
    explicit Raw_Server(std::function<void(int socket)> answer);
    ~Raw_Server();
    Raw_Server(const Raw_Server&) = delete;
    Raw_Server& operator=(const Raw_Server&) = delete;

    [[nodiscard]] std::string Host() const;
    /// The last request as it came; call it when its answer has arrived.
    [[nodiscard]] const std::string& Request() const { return m_request; }

  private:
    void Serve();

    std::function<void(int)> m_answer;
    int m_listening;
    int m_port = 0;
    std::string m_request;
    std::thread m_thread;
};

void Send(int socket, const std::string& bytes);
/// Until the client has closed its side.
void Hang(int socket);
/// Closes in a way that the client sees as a broken connection.
void Reset(int socket);

/// A certificate for "localhost" alone and its key, made anew in `directory`.
struct Test_Certificate {
    explicit Test_Certificate(const std::filesystem::path& directory);
    std::filesystem::path certificate;
    std::filesystem::path key;
};

}  // namespace norvane::test
