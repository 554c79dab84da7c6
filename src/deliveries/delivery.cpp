#include "deliveries/delivery.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include "common/text.h"

namespace norvane {

namespace {

constexpr std::array<std::string_view, 3> kinds{"PIREP", "ACARS report", "call"};
constexpr std::array<std::string_view, 6> states{"waiting", "sending",   "delivered",
                                                 "refused", "uncertain", "given up"};
/// How much of a page tells what it is about.
constexpr std::size_t longest_words = 120;

template <class Value, std::size_t count>
Value Find_Name(const std::array<std::string_view, count>& names, std::string_view name,
                Value otherwise) {
    const auto* const found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? otherwise : static_cast<Value>(found - names.begin());
}

/// A page without its tags, in one line.
std::string Words_Of_Page(std::string_view page) {
    std::string words;
    bool in_tag = false;
    for (const char c : page) {
        if (c == '<' || c == '>') {
            in_tag = c == '<';
            words += ' ';
        } else if (!in_tag) {
            words += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
        }
        if (words.size() > longest_words)
            return Trim(words) + " ...";
    }
    while (Contains(words, "  "))
        words = Replace_All(words, "  ", " ");
    return Trim(words);
}

}  // namespace

bool Is_Final(Delivery_State state) {
    return state != Delivery_State::waiting && state != Delivery_State::sending;
}

std::string_view Name_Of(Delivery_Kind kind) {
    return kinds.at(static_cast<std::size_t>(kind));
}

std::string_view Name_Of(Delivery_State state) {
    return states.at(static_cast<std::size_t>(state));
}

Delivery_Kind Kind_Of(std::string_view name) {
    return Find_Name(kinds, name, Delivery_Kind::api_call);
}

Delivery_State State_Of(std::string_view name) {
    return Find_Name(states, name, Delivery_State::uncertain);
}

std::string Words_Of(const Airline_Delivery& delivery) {
    return fmt::format("{} for the airline {}", Name_Of(delivery.kind), delivery.airline);
}

std::string Outcome_Words(const Airline_Delivery& delivery) {
    if (delivery.status == 0)
        return delivery.failure.empty() ? std::string() : "no answer: " + delivery.failure;
    const std::string words = Words_Of_Page(delivery.answer);
    std::string outcome = fmt::format("status {}", delivery.status);
    if (!delivery.failure.empty())
        outcome += ", " + delivery.failure;
    return words.empty() ? outcome : outcome + ": " + words;
}

std::string Host_Of(const Airline_Delivery& delivery) {
    const std::size_t scheme = delivery.address.find("://");
    const std::size_t host = scheme == std::string::npos ? 0 : scheme + 3;
    return delivery.address.substr(host, delivery.address.find_first_of("/?", host) - host);
}

}  // namespace norvane
