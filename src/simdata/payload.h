#pragma once
// The payload of an aircraft, read from the section of its configuration file that describes the
// loading stations. Aircraft makers describe them in five layouts, each with a reader of its own.
// Used by `clsIniFile`, which chooses the reader.

#include <optional>
#include <string>
#include <string_view>

namespace norvane {

/// Figures as the engine passes them on; empty when the layout tells nothing.
struct Payload {
    std::string pax;
    std::string baggage_cargo;
};

/// Layouts whose stations are "station_load" entries of the section's text `section`. What was
/// found before a failure stays in `payload`. Raise 5 for a station whose marks stand in the wrong
/// order, 6 for a weight beyond 32 bits.
void Read_ACLoader_Payload(std::string_view section, Payload& payload);
/// `atc_model` tells the weight of a passenger; with a model that is not known no passengers are.
void Read_PSS_Payload(std::string_view section, std::string_view atc_model, Payload& payload);
void Read_DF_Payload(std::string_view section, Payload& payload);

/// A station's weight given as a text, its comma included or not; empty when it is no number.
[[nodiscard]] std::optional<double> Station_Number(std::string_view text);

}  // namespace norvane
