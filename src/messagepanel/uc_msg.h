#pragma once
// The ACARS message panel: the traffic of the flight in progress, a command box for comments and
// weather requests, the message log file at the end of a flight, and the reports to the airline's
// ACARS script. One object, owned by the program; its controls are public models that the window
// binds to.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "acars/acars_events.h"
#include "common/controls.h"
#include "common/signal.h"
#include "common/timer_queue.h"
#include "net/cls_win_inet.h"
#include "net/http_client.h"

namespace norvane {

struct Services;
class clsACARS;
class clsAppSettings;
class clsVASettings;
class Outbox;

class ucMSG {
  public:
    /// Who the panel works with, all of it longer lived than the panel.
    struct Parts {
        Services& services;
        const clsAppSettings& settings;
        clsVASettings& airline;
        Outbox& outbox;
        Http_Options http;
    };

    explicit ucMSG(Parts parts);
    ucMSG(const ucMSG&) = delete;
    ucMSG& operator=(const ucMSG&) = delete;

    /// The engine whose messages are shown from now on; it outlives the panel's use of it. The
    /// messages of a stored flight stand there already: what is left of it comes behind them.
    void Set_ACARS(clsACARS& engine);

    /// Hands a message to the engine, which composes and announces it.
    void Send_Message(Message_Type type, std::string_view text);
    /// Fetches the weather of the airport in the command box and sends it as a message.
    void Get_WX();
    /// Writes the messages of the flight to a new file in "messagelogs"; the pilot is told when
    /// that fails, without a wait for an answer where a step asked for it.
    void Export_Message_Log();
    /// Puts one message into the outbox, for the ACARS script of the airline that is active now,
    /// with the pilot and the airports of now. The pilot is not told how that went.
    void Send_ACARS_Report(std::string_view text);
    /// Ends the running requests and the pilot's input.
    void Close();

    /// Every message of the flight, each followed by an empty line.
    [[nodiscard]] const std::string& Log() const { return m_log; }
    /// The text that was added at the end of `Log`.
    Signal<const std::string&> Log_Appended;
    Signal<> Log_Cleared;

    Text_Box txtCommand;
    Link hypComment{"Enter Comment"};
    Link hypWX{"Request WX"};

  private:
    /// One message as it is stored with its flight.
    struct Message {
        std::string time;
        Message_Type type = Message_Type::comment;
        std::string text;
    };

    void Connect_Controls();
    void Take_Message(Message_Type type, const std::string& text);
    void Add_To_Log(const std::string& text);
    void Clear_Log();
    void Store_Messages();
    void Restore_Messages();
    void Drop_Other_Flights_Messages();
    void Step_Ended();
    void Enter_Comment();
    void Enable_Input(bool enabled);

    /// Asks for the weather again that was asked for within a step.
    Timer m_wx_timer;
    Services& m_services;
    const clsAppSettings& m_settings;
    clsVASettings& m_airline;
    Outbox& m_outbox;
    Http_Options m_http;
    clsACARS* m_objACARS = nullptr;
    std::string m_log;
    std::vector<Message> m_messages;
    /// How many of them the store has.
    std::size_t m_stored = 0;
    /// They are those of a flight that an earlier run stored, and that may have been given up.
    bool m_restored = false;
    bool m_fetching = false;
    bool m_closed = false;
    /// Counts how often the input was disabled: weather asked for before is of no use then.
    int m_input_round = 0;
    Connections m_engine_connections;
};

}  // namespace norvane
