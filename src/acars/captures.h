#pragma once
// What is captured at the four block events, each once: times, fuel, weight, speeds, airports, and
// at IN the figures of the whole flight. Every figure is held as an event, every block event also
// as a message.

namespace norvane {

struct Engine_Context;

void Capture_OUT(Engine_Context& engine);
void Capture_OFF(Engine_Context& engine);
void Capture_ON(Engine_Context& engine);
void Capture_IN(Engine_Context& engine);

}  // namespace norvane
