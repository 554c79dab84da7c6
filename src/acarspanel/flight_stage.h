#pragma once
// How far the flight on the ACARS panel has come, as the pilot sees it: the one value that decides
// which commands are usable and what is asked before anything ends. Owned by the panel.

namespace norvane {

enum class Stage {
    none,      // no flight, or one that is not tracked yet
    stored,    // begun in an earlier run: "On" goes on with it
    tracked,   // under way
    paused,    // under way, and nothing is recorded
    at_gate,   // finished, and the destination's weather is waited for
    unlogged,  // finished, and not in the log
    logged,    // finished, and in the log
    given_up,  // finished, and the pilot does not want it in the log
};

class Flight_Stage {
  public:
    [[nodiscard]] Stage Now() const { return m_now; }
    /// Raises when no flight can go from the present stage to this one.
    void Enter(Stage next);

    /// The flight is followed, paused or not, or waits for its last weather.
    [[nodiscard]] bool Is_Active() const;
    /// It has come to the gate.
    [[nodiscard]] bool Is_Finished() const;
    /// It is finished, and not in the log.
    [[nodiscard]] bool Is_Unlogged() const;
    /// It is neither in the log nor given up.
    [[nodiscard]] bool Is_To_Be_Kept() const;

  private:
    Stage m_now = Stage::none;
};

}  // namespace norvane
