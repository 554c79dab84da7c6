#include "simdata/payload.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <vector>

#include "common/number.h"
#include "common/run_error.h"
#include "common/text.h"

namespace norvane {

namespace {

struct Passenger_Weight {
    std::string_view atc_model;
    int weight_lbs;
};

constexpr std::array<Passenger_Weight, 6> passenger_weights{{
    {"DH8A", 175},
    {"B777", 240},
    {"A319", 180},
    {"A320", 180},
    {"A321", 180},
    {"B744", 180},
}};

struct Station {
    std::string text;
    /// False for what precedes the first station, where marks may stand in any order.
    bool is_entry = true;
};

std::vector<Station> Stations(std::string_view section) {
    std::vector<Station> stations;
    for (auto& piece : Split(section, "station_load"))
        stations.push_back({std::move(piece), !stations.empty()});
    return stations;
}

/// The whole-number value of a number's text, 0 when it is none.
std::int64_t Whole_Value(std::string_view text) {
    const auto number = Station_Number(text);
    if (!number)
        return 0;
    const double whole = Round_Half_Even(*number);
    if (whole > std::numeric_limits<std::int32_t>::max() ||
        whole < std::numeric_limits<std::int32_t>::min()) {
        throw Run_Error(error_number::overflow, "A station's figure is too large");
    }
    return static_cast<std::int64_t>(whole);
}

/// Text between the first `open` and the first of `close`, wherever that stands. Empty when either
/// is missing; raises when they stand in the wrong order.
std::string_view Between(const Station& station, char open, std::string_view close) {
    const auto begin = station.text.find(open);
    const auto end = station.text.find_first_of(close);
    if (begin == std::string::npos || end == std::string::npos)
        return {};
    if (end < begin) {
        if (!station.is_entry)
            return {};
        throw Run_Error(error_number::invalid_call, std::string("A station has its \"") + open +
                                                        "\" behind its \"" + close.front() + "\"");
    }
    return std::string_view(station.text).substr(begin + 1, end - begin - 1);
}

std::int64_t Station_Weight(const Station& station) {
    return Whole_Value(Between(station, '=', ","));
}

void Write_Positive(std::int64_t figure, std::string& result) {
    if (figure > 0)
        result = std::to_string(figure);
}

bool Names_People(std::string_view station) {
    constexpr std::array<std::string_view, 4> marks{"PERSON", "PEOPLE", "PPL)", "PER)"};
    return std::any_of(marks.begin(), marks.end(),
                       [&](std::string_view mark) { return Contains_No_Case(station, mark); });
}

}  // namespace

std::optional<double> Station_Number(std::string_view text) {
    text = Trimmed_View(text);
    if (text.ends_with(','))
        text.remove_suffix(1);
    return Parse_Number(text);
}

void Read_ACLoader_Payload(std::string_view section, Payload& payload) {
    std::int64_t passengers = 0;
    std::int64_t cargo_lbs = 0;
    for (auto& station : Stations(section)) {
        std::erase(station.text, '"');
        if (Names_People(station.text))
            passengers += Whole_Value(Between(station, '(', "Pp"));
        else if (Contains_No_Case(station.text, "CARGO"))
            cargo_lbs += Station_Weight(station);
    }
    Write_Positive(passengers, payload.pax);
    Write_Positive(cargo_lbs, payload.baggage_cargo);
}

void Read_PSS_Payload(std::string_view section, std::string_view atc_model, Payload& payload) {
    std::int64_t passengers_lbs = 0;
    std::int64_t cargo_lbs = 0;
    for (const auto& station : Stations(section)) {
        if (Contains_No_Case(station.text, "PSGR"))
            passengers_lbs += Station_Weight(station);
        else if (Contains_No_Case(station.text, "CARGO") ||
                 Contains_No_Case(station.text, "BAGGAGE"))
            cargo_lbs += Station_Weight(station);
    }
    for (const auto& [model, weight_lbs] : passenger_weights) {
        if (model == atc_model && passengers_lbs > 0)
            payload.pax = Format_Significant(static_cast<double>(passengers_lbs) / weight_lbs);
    }
    Write_Positive(cargo_lbs, payload.baggage_cargo);
}

void Read_DF_Payload(std::string_view section, Payload& payload) {
    std::int64_t passengers = 0;
    std::int64_t cargo_lbs = 0;
    for (const auto& station : Stations(section)) {
        if (Contains_No_Case(station.text, "PASSENGER") && Station_Weight(station) > 0)
            ++passengers;
        else if (Contains_No_Case(station.text, "CARGO"))
            cargo_lbs += Station_Weight(station);
    }
    Write_Positive(passengers, payload.pax);
    Write_Positive(cargo_lbs, payload.baggage_cargo);
}

}  // namespace norvane
