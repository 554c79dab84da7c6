#include "blackbox/flight_text.h"

#include <fmt/format.h>

#include <array>
#include <cmath>

#include "blackbox/flight_time.h"
#include "common/number.h"
#include "common/text.h"

namespace norvane {

namespace {

std::string Line(std::string_view what, std::string_view text) {
    return text.empty() ? std::string() : fmt::format("{}: {}\n", what, text);
}

std::string Figure(const std::optional<double>& value, int decimals, std::string_view unit) {
    return value ? Format_Fixed(*value, decimals) + std::string(unit) : std::string();
}

std::string_view Words_Of(Flight_Phase phase) {
    constexpr std::array<std::string_view, 5> words{"Before OUT", "Taxi out", "In the air",
                                                    "Taxi in", "At the gate"};
    return words.at(static_cast<std::size_t>(phase));
}

std::string_view Words_Of(Block_Event event) {
    constexpr std::array<std::string_view, block_event_count> words{"OUT", "OFF", "ON", "IN"};
    return words.at(static_cast<std::size_t>(event));
}

std::string Lasted(std::string_view what, const Flight_Incident& incident) {
    return fmt::format("{} of {}", what, Duration_Text(incident.lasted_seconds));
}

std::string Words_Of(const Flight_Incident& incident) {
    switch (incident.kind) {
        case Incident_Kind::pause:
            return Lasted("a pause", incident);
        case Incident_Kind::gap:
            return Lasted("a gap", incident);
        case Incident_Kind::taken_up:
            return "the flight was taken up again";
        case Incident_Kind::rate_change:
            return "the simulation ran at " + Format_Significant(incident.value) + " x";
        case Incident_Kind::teleport:
            return "a jump of " + Format_Fixed(incident.value, 1) + " nm";
        case Incident_Kind::replay:
            return Lasted("a replay", incident);
    }
    return {};
}

/// "parking brake 32767 -> 0, on ground 1"
std::string Values_Text(const std::vector<Evidence_Value>& values) {
    std::vector<std::string> texts;
    for (const Evidence_Value& value : values) {
        const bool changed = !value.before.empty() && value.before != value.now;
        texts.push_back(value.name + " " + (changed ? value.before + " -> " : "") + value.now);
    }
    return Join(texts, ", ");
}

std::string Sentence(std::string_view what, const std::string& text) {
    return text.empty() ? std::string() : fmt::format("  {}{}.", what, text);
}

std::string Explained(const Flight_Summary& flight, const Recorded_Event& event) {
    std::string text = fmt::format("{} {}", Words_Of(event.event), Clock_At(flight, event.seconds));
    const Block_Evidence& evidence = event.evidence;
    if (evidence.rule == Block_Rule::none)
        text += ": taken from the recording; no engine told why.";
    else if (evidence.step == 0)
        text += fmt::format(", taken from the recording: {}.", Words_Of(evidence.rule));
    else
        text += fmt::format(", step {}: {}.", evidence.step, Words_Of(evidence.rule));
    return text + Sentence("", Values_Text(evidence.values)) +
           Sentence("Settings: ", Values_Text(evidence.settings)) +
           Sentence("Near: ", Join(event.near, ", ")) + "\n";
}

/// "right 1.2" for what has a side.
std::string Sided(const std::optional<double>& value, std::string_view positive,
                  std::string_view negative, std::string_view unit) {
    if (!value)
        return {};
    return fmt::format("{}{} {}", Format_Fixed(std::abs(*value), 1), unit,
                       *value < 0 ? negative : positive);
}

std::string Touch_Line(const Flight_Summary& flight, const Touch& touch) {
    std::string text = Clock_At(flight, touch.seconds);
    const auto add = [&](std::string_view what, const std::string& figure) {
        if (!figure.empty())
            text += fmt::format(", {}{}", what, figure);
    };
    add("", touch.rate_fpm ? fmt::format("{} fpm (from {} samples at {} Hz)",
                                         Format_Whole(*touch.rate_fpm), touch.samples,
                                         Format_Significant(Round_Half_Up(touch.sample_rate_hz, 1)))
                           : std::string("vertical speed unknown"));
    add("peak ", Figure(touch.peak_g, 2, " g"));
    add("pitch ", Figure(touch.pitch_deg, 1, " deg"));
    add("bank ", Figure(touch.bank_deg, 1, " deg"));
    add("crab ", Sided(touch.crab_deg, "right", "left", " deg"));
    add("indicated ", Figure(touch.indicated_airspeed_kt, 0, " kt"));
    add("over ground ", Figure(touch.ground_speed_kt, 0, " kt"));
    add("wind ", Sided(touch.headwind_kt, "head", "tail", " kt"));
    add("cross ", Sided(touch.crosswind_kt, "from the right", "from the left", " kt"));
    add("flaps ", Figure(touch.flaps_percent, 0, " %"));
    add("weight ", Figure(touch.weight_lbs, 0, " lbs"));
    return text;
}

std::string Recorded_Line(const Flight_Summary& flight) {
    std::string text = flight.began_utc;
    if (flight.length_seconds > 0)
        text += (text.empty() ? "" : ", ") + Duration_Text(flight.length_seconds);
    return flight.program_version.empty() ? text : text + ", Norvane " + flight.program_version;
}

std::string Moments_Text(const Flight_Summary& flight) {
    std::string text;
    for (const Recorded_Event& event : flight.events)
        text += Line(Words_Of(event.event), Clock_At(flight, event.seconds));
    const auto moment = [&](const std::optional<double>& seconds) {
        return seconds ? Clock_At(flight, *seconds) : std::string();
    };
    return text + Line("Top of climb", moment(flight.top_of_climb_s)) +
           Line("Top of descent", moment(flight.top_of_descent_s));
}

/// "Planned time OUT: 1400Z, flown 1405Z"
std::string Planned_Lines(const Flight_Summary& flight) {
    std::string text;
    for (const Planned_Figure& figure : flight.planned) {
        const bool is_fuel = figure.name.ends_with("_lbs");
        const auto shown = [&](const std::string& value) {
            return value.empty() || !is_fuel ? value : value + " lbs";
        };
        // "block fuel", or "fuel OUT".
        std::string words = Replace_All(Before(figure.name, "_lbs"), "_", " ");
        if (!words.ends_with("fuel") && Contains(words, " "))
            words = std::string(Before(words, " ")) + Upper(words.substr(words.find(' ')));
        text += Line(
            "Planned " + words,
            shown(figure.planned) + (figure.flown.empty() ? "" : ", flown " + shown(figure.flown)));
    }
    return text;
}

}  // namespace

std::string Flight_Text(const Flight_Summary& flight) {
    std::string text = flight.id + "\n";
    text += Line("Flight", flight.flight_number) + Line("Airline", flight.airline) +
            Line("Aircraft", flight.aircraft) + Line("Tail", flight.tail) +
            Line("Simulator", flight.simulator) + Line("From", flight.origin) +
            Line("To", flight.destination) + Line("Recorded", Recorded_Line(flight)) +
            Line("Log", flight.log_name) + Moments_Text(flight);
    text += Line("Distance flown", Format_Fixed(flight.distance_flown_nm, 1) + " nm");
    text += Line("Great circle", Format_Fixed(flight.great_circle_nm, 1) + " nm");
    text += Line("Highest", Format_Whole(flight.highest_ft) + " ft");
    text += Line("Lowest in the air", Format_Whole(flight.lowest_ft) + " ft");
    text += Line("Fastest over ground", Format_Whole(flight.fastest_ground_speed_kt) + " kt");
    for (const Phase_Sum& sum : flight.phases) {
        text += Line(Words_Of(sum.phase), fmt::format("{}, {} gal", Duration_Text(sum.seconds),
                                                      Format_Fixed(sum.fuel_gal, 1)));
    }
    text += Planned_Lines(flight) + Landing_Text(flight);
    for (const Flight_Incident& incident : flight.incidents)
        text += Line(Clock_At(flight, incident.seconds), Words_Of(incident));
    return text;
}

std::string Evidence_Words(const Flight_Summary& flight) {
    std::string text;
    for (const Recorded_Event& event : flight.events)
        text += Explained(flight, event);
    return text.empty() ? "The recording holds no block event.\n" : text;
}

std::string Landing_Text(const Flight_Summary& flight) {
    std::string text;
    for (std::size_t i = 0; i < flight.landings.size(); ++i) {
        const Landing_Record& landing = flight.landings[i];
        for (std::size_t k = 0; k < landing.touches.size(); ++k) {
            const std::string what = k == 0 ? fmt::format("Landing {}", i + 1)
                                            : fmt::format("Landing {}, bounce {}", i + 1, k);
            text += Line(what, Touch_Line(flight, landing.touches[k]));
        }
        if (landing.is_touch_and_go)
            text += fmt::format("Landing {}: touch-and-go\n", i + 1);
        if (landing.roll_out_ft) {
            text += fmt::format("Landing {}: {} ft to 40 kt\n", i + 1,
                                Format_Whole(*landing.roll_out_ft));
        }
    }
    return text.empty() ? "The recording holds no landing.\n" : text;
}

}  // namespace norvane
