#include "bridge/bridge.h"

#include <cstdio>
#include <thread>
#include <utility>

#include "common/run_error.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/offset_area.h"

namespace norvane {

namespace {

using namespace std::chrono_literals;

constexpr auto pause_between_looks = 500ms;
constexpr auto longest_serve = 250ms;
/// As long as a client waits for one answer.
constexpr auto answer_at_most = 2000ms;
/// The system's error for a window whose program runs with higher rights.
constexpr std::uint32_t access_denied = 5;

}  // namespace

Bridge::Bridge(Link_Address listen) : m_listen(std::move(listen)) {
    // A port that another program has is better told now than when a simulator comes.
    (void)Listen_At(m_listen);
}

void Bridge::Run(const std::atomic<bool>& stop) {
    while (!stop) {
        if (!Connect()) {
            std::this_thread::sleep_for(pause_between_looks);
            continue;
        }
        while (!stop && m_transport.Peer_Exists())
            m_server->Serve(longest_serve);
        Disconnect();
        if (!stop)
            Say("the simulator is gone");
    }
}

bool Bridge::Connect() {
    const Transport_Opening opening = m_transport.Open();
    if (opening.result == ipc_result::no_simulator)
        Say("waiting for a simulator");
    else if (opening.result != ipc_result::okay)
        Say(modFSUIPC::IPC_ErrorText(opening.result));
    else if (Listen())
        return true;
    m_transport.Close();
    return false;
}

bool Bridge::Listen() {
    try {
        m_server = std::make_unique<Link_Server>(
            m_listen, [this](std::span<std::byte> records) { return Pass_On(records); });
    } catch (const Run_Error& error) {
        Say(error.Description());
        return false;
    }
    m_server->on_connect = [this] { Say("a client has connected"); };
    Say("listening on " + m_server->Address().Text() + " for the simulator's window " +
        m_transport.Peer_Class());
    return true;
}

void Bridge::Disconnect() {
    m_server.reset();
    m_transport.Close();
}

Delivery Bridge::Pass_On(std::span<std::byte> records) {
    // The simulator walks the records in its own memory: none may lead it astray.
    if (!Offset_Area::Takes(records))
        return {Delivery_Outcome::answered, 0};
    const Delivery delivery = m_transport.Deliver(records, answer_at_most);
    if (delivery.outcome == Delivery_Outcome::silent)
        Say("the simulator does not answer");
    else if (delivery.outcome == Delivery_Outcome::failed && m_transport.Peer_Exists())
        Say("the simulator's window takes no messages (system error " +
            std::to_string(m_transport.Failure()) +
            (m_transport.Failure() == access_denied
                 ? "): start the bridge with the simulator's rights"
                 : ")"));
    return delivery;
}

void Bridge::Say(const std::string& text) {
    if (text == m_said)
        return;
    m_said = text;
    (void)std::printf("%s\n", text.c_str());
    (void)std::fflush(stdout);
}

}  // namespace norvane
