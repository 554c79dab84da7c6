#pragma once
// The connection to a simulator's property server: a line "get PATH" each, asked in one go,
// answered by a line each in the same order. It connects, samples at its pace, tells what goes
// wrong, and tries again for ever. Runs on its owner's thread, a `Step` at a time, and waits for
// neither connection nor answers.

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "common/signal.h"
#include "simlink/link_socket.h"
#include "simlink/system_sockets.h"

namespace norvane {

struct Property_Pace {
    /// From one sample to the next.
    std::chrono::milliseconds sample{100};
    /// For all answers of a sample. A simulator that loads scenery can stand still for seconds.
    std::chrono::milliseconds answer{5000};
    /// For a connection with each of the host's names.
    std::chrono::milliseconds connect{1000};
    /// Before the next try to connect.
    std::chrono::milliseconds retry{1000};
    /// From one sample to the next while the aircraft takes off or lands.
    std::chrono::milliseconds hurried{20};
};

class Property_Server {
  public:
    /// Nothing is connected before the first `Step`.
    explicit Property_Server(Link_Address address, Property_Pace pace = {});

    [[nodiscard]] const Link_Address& Address() const { return m_address; }
    /// Connects, asks, and takes what has come, as the time is right for it.
    void Step();
    /// Sets a property; without a connection nothing happens. Control characters become blanks.
    void Set(std::string_view path, std::string_view value);

    /// From the last sample on, the next one comes after so long.
    void Sample_Every(std::chrono::milliseconds pace);

    /// What is to be polled for (an entry without descriptor: nothing), and how long at most until
    /// the next step.
    [[nodiscard]] pollfd Wanted() const;
    [[nodiscard]] std::chrono::milliseconds Until_Next_Step() const;

    /// What to ask for in the next sample; not empty. Called before each sample.
    std::function<const std::vector<std::string>&()> paths;
    /// All answers of a sample, in the order of its paths.
    Signal<std::vector<std::string>> sampled;
    /// There is no connection, or no longer; why, for the pilot.
    Signal<const std::string&> lost;

  private:
    using Moment = std::chrono::steady_clock::time_point;

    void Connect();
    void Try_Next_Name(std::string failure);
    void Await_Connection();
    void Begin();
    void Ask();
    void Receive();
    void Take_Lines();
    void Send();
    void Lose(const std::string& reason);

    Link_Address m_address;
    Property_Pace m_pace;
    Link_Socket m_socket;
    /// The host's names that are still to be tried, the next one last.
    std::vector<Socket_Name> m_names;
    /// The socket has begun to connect.
    bool m_connecting = false;
    std::string m_outgoing;
    std::string m_incoming;
    std::vector<std::string> m_answers;
    /// Answers that are due for the sample that was asked for; 0: none was.
    std::size_t m_due = 0;
    /// When to connect or ask next, or, while a connection or answers are due, to give them up.
    Moment m_next;
    Moment m_sampled_at;
    std::vector<std::byte> m_piece;
};

}  // namespace norvane
