#pragma once
// The 51 events by which the ACARS engine reports a flight, in their numbering. Owned by the
// engine; panels connect. Within a sampling step events are held back until every read of the step
// has succeeded, then raised in the order in which they came up.

#include <string>

#include "common/signal.h"

namespace norvane {

/// Unit codes of fuel and weight figures.
namespace unit {
inline constexpr int pounds = 0;
inline constexpr int kilograms = 1;
inline constexpr int gallons = 2;  // fuel only
}  // namespace unit

/// Kinds of time figures.
namespace time_kind {
inline constexpr int local = 0;
inline constexpr int utc = 1;
}  // namespace time_kind

/// Types of ACARS messages.
enum class Message_Type {
    out = 0,
    off = 1,
    on = 2,
    in = 3,
    times = 4,
    weather = 5,
    position = 6,
    altitude = 7,
    comment = 8,
    connected = 9,
    disconnected = 10,
};
inline constexpr int message_type_count = 11;

struct ACARS_Events {
    using Plain = Signal<>;
    using Text = Signal<const std::string&>;
    /// A value and its unit or time code.
    using Figure = Signal<const std::string&, int>;
    /// An ICAO code and the airport's name.
    using Airport = Signal<const std::string&, const std::string&>;
    using Message = Signal<Message_Type, const std::string&>;

    Text FlightDate;          // 1
    Text ATCTail;             // 2
    Text ATCType;             // 3
    Text ATCFlight;           // 4  airline " - " flight number
    Text AirlineFlight;       // 5
    Figure FlightOUT;         // 6  "hhmm"
    Figure FlightOFF;         // 7
    Figure FlightON;          // 8
    Figure FlightIN;          // 9
    Text BlockTime;           // 10 decimal hours
    Text BlockTimeHHMM;       // 11
    Text FlightTime;          // 12
    Text FlightTimeHHMM;      // 13
    Figure FuelOUT;           // 14
    Figure FuelOFF;           // 15
    Figure FuelON;            // 16
    Figure FuelIN;            // 17
    Figure FuelUsedBlock;     // 18
    Figure FuelUsedFlight;    // 19
    Figure WeightZFW;         // 20
    Figure WeightOUT;         // 21
    Figure WeightOFF;         // 22
    Figure WeightON;          // 23
    Figure WeightIN;          // 24
    Airport ICAODep;          // 25
    Airport ICAOArr;          // 26
    Text Distance;            // 27 nautical miles
    Text MaxTaxiOrigin;       // 28 knots
    Text MaxTaxiDestination;  // 29
    Text NSettings;           // 30
    Text EngSettings;         // 31
    Text IASTakeOff;          // 32 knots
    Text IASLanding;          // 33
    Text VS;                  // 34 feet per minute
    Text FlightLevel;         // 35
    Text PAX;                 // 36
    Text BaggageCargo;        // 37
    Text WXDep;               // 38
    Text WXArr;               // 39
    Message ACARSMessage;     // 40
    Text FSTime;              // 41 "hhmm"; ends a step
    Text FSVersion;           // 42
    Text FSClosed;            // 43 after the step, which was undone
    Text Error;               // 44 likewise
    Plain Start;              // 45
    Plain Paused;             // 46
    Plain Reset;              // 47
    Plain FlightAtGate;       // 48 after the step and its writes
    Plain TouchAndGo;         // 49 in the air again after ON, which the next contact reports anew
    Text No_Airport;          // 50 where none was found; once a flight
    Text Elsewhere;           // 51 whole nautical miles to where the flight that was taken up again
                              //    had landed; it waits. Once.
};

}  // namespace norvane
