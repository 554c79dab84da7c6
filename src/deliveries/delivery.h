#pragma once
// Something that an airline is to get, exactly as it is sent, and what has become of it so far.
// Kept by the delivery store, moved by the outbox.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

enum class Delivery_Kind { pirep, acars_report, api_call };

enum class Delivery_State {
    waiting,    // goes out when its turn comes
    sending,    // given to the network: the server may have it
    delivered,  // answered, and taken
    refused,    // answered, and not taken
    uncertain,  // it left, and no answer came back
    given_up,   // by the pilot
};

struct Airline_Delivery {
    /// In the order in which they arose; 0 before the store has it.
    std::int64_t id = 0;
    std::string airline;
    Delivery_Kind kind = Delivery_Kind::pirep;
    /// What is of one flight goes out one by one.
    std::string flight;

    std::string method = "POST";
    /// A whole one.
    std::string address;
    /// Whole lines, none of them secret.
    std::vector<std::string> headers;
    std::string body;
    /// The receiver can tell a repetition: what is uncertain may be sent again.
    bool is_idempotent = false;
    /// Full name of the file that it was made of; empty: none.
    std::string file;

    Delivery_State state = Delivery_State::waiting;
    int attempts = 0;
    /// Moments in seconds since 1970, UTC; 0: none.
    std::int64_t created_s = 0;
    std::int64_t next_s = 0;
    /// Until when the server asked to be left alone.
    std::int64_t not_before_s = 0;
    std::int64_t changed_s = 0;
    /// What came last: its status (0: no answer), its page, why there is none.
    long status = 0;
    std::string answer;
    std::string failure;
};

/// Nothing more happens to it by itself.
[[nodiscard]] bool Is_Final(Delivery_State state);
/// As the store has it: "PIREP", "ACARS report".
[[nodiscard]] std::string_view Name_Of(Delivery_Kind kind);
[[nodiscard]] std::string_view Name_Of(Delivery_State state);
/// A kind that nobody knows is a call; a state that nobody knows is uncertain, so that nothing is
/// sent twice.
[[nodiscard]] Delivery_Kind Kind_Of(std::string_view name);
[[nodiscard]] Delivery_State State_Of(std::string_view name);
/// "PIREP for the airline X".
[[nodiscard]] std::string Words_Of(const Airline_Delivery& delivery);
/// What came of it last, in one line: "no answer: InternetConnect", "status 404: Not here".
[[nodiscard]] std::string Outcome_Words(const Airline_Delivery& delivery);
/// The server in its address, with the port.
[[nodiscard]] std::string Host_Of(const Airline_Delivery& delivery);

}  // namespace norvane
