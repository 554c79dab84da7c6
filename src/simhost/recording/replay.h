#pragma once
// A world played from a recording; it holds the recording's last moment when it is over.

#include <vector>

#include "simhost/world_source.h"
#include "simlink/recording.h"

namespace norvane {

class Replay : public World_Source {
  public:
    /// `moments` as `Read_Recording` gives them.
    explicit Replay(std::vector<Recorded_Moment> moments);

    void Apply(double seconds, Offset_Area& area) override;
    [[nodiscard]] double Length() const override;

  private:
    std::vector<Recorded_Moment> m_moments;
    /// Moments that stand in the area.
    std::size_t m_applied = 0;
};

}  // namespace norvane
