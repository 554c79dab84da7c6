#pragma once
// What the simulator's stand-in plays: something that knows, for each moment, what stands in the
// offset area. A recording (replay.h) is one, a flown scenario (scenario.h) another. Owned by the
// program; the host (host.h) asks it for the moments it needs.

#include "simlink/offset_area.h"

namespace norvane {

class World_Source {
  public:
    virtual ~World_Source() = default;
    World_Source() = default;
    World_Source(const World_Source&) = delete;
    World_Source& operator=(const World_Source&) = delete;

    /// Puts the world as it is `seconds` after its start into the area. Same moment, same bytes,
    /// however it was reached: moments usually rise, but an earlier one may be asked for at any
    /// time. Before 0 the first moment holds, after `Length` the last. Always called with the same
    /// area.
    virtual void Apply(double seconds, Offset_Area& area) = 0;
    /// Seconds from the first moment to the last.
    [[nodiscard]] virtual double Length() const = 0;
};

}  // namespace norvane
