#pragma once
// Texts that the engine builds from simulator values: the state of the aircraft's engines, and the
// weather at the surface. N1 and N2 are the speeds of a turbine's two shafts.

#include <string>

namespace norvane {

struct Engine_Context;

/// N1 and N2 of each engine, as "E1N1 95 /E1N2 97".
[[nodiscard]] std::string N_Text(Engine_Context& engine);
/// RPM and manifold pressure of each piston engine.
[[nodiscard]] std::string Piston_Text(Engine_Context& engine);
/// What the take-off settings are for this kind of engine: N text, piston text, or nothing.
[[nodiscard]] std::string Engine_Settings(Engine_Context& engine);
/// The same as a position report carries it, with the fuel flow of turbines.
[[nodiscard]] std::string Engine_Report(Engine_Context& engine);

/// The weather at the surface; an airport's code goes in front of it.
[[nodiscard]] std::string Weather_Report(Engine_Context& engine);

}  // namespace norvane
