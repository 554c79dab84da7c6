#pragma once
// What the black box reads of the simulator: at each sampling step everything in one exchange, near
// the ground a few variables many times a second. What the engine itself read in a step is kept to
// the bit, so that the flight can be computed again; the rest loses the noise below what anybody
// can use, which halves a recording.

#include <cstdint>
#include <string>
#include <vector>

#include "simlink/recorded_block.h"
#include "simlink/recording.h"

namespace norvane {

class modFSUIPC;
struct Engine_Step;

class Step_Sampler {
  public:
    Step_Sampler();

    /// Nothing is known of the simulator yet: the next moment carries all.
    void Begin_Anew();
    /// The step's moment: what the engine read, and everything else if the simulator gives it.
    /// Values that the engine read once more in the step, and differing, become remarks.
    [[nodiscard]] Recorded_Moment Sample_Step(modFSUIPC& link, const Engine_Step& step);
    /// Adds what only a step reads to the moment of the start before it.
    void Complete(Recorded_Moment& start, const Engine_Step& step);
    /// A moment of the small set; false when the simulator did not answer.
    [[nodiscard]] bool Sample_Fast(modFSUIPC& link, Recorded_Moment& moment);

    // As sampled last.
    [[nodiscard]] double Height_Ft() const;
    [[nodiscard]] double Vertical_Speed_Fpm() const;
    [[nodiscard]] bool Is_On_Ground() const;

  private:
    std::vector<Recorded_Field> m_fields;
    std::vector<Recorded_Field> m_fast_fields;
    std::vector<Recorded_Change> m_sample;
    Recorded_Image m_image;
    /// Of the whole block, in a row; after some of them only what the engine reads is recorded.
    int m_refusals = 0;
};

}  // namespace norvane
