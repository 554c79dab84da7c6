#pragma once
// The engine that the ACARS panel drives, and what has to wait for its step: a step is never
// interrupted. Owned by the panel.

#include <deque>
#include <functional>

namespace norvane {

class clsACARS;

class Step_Queue {
  public:
    /// It outlives the queue's use of it.
    void Set_Engine(clsACARS& engine) { m_engine = &engine; }
    /// Null before there is one.
    [[nodiscard]] clsACARS* Engine() const { return m_engine; }
    /// True while the engine starts or makes a step. A request begun then would hold the step up
    /// until its answer.
    [[nodiscard]] bool Is_Stepping() const;
    /// Runs `work` now, or at the end of the step that is running.
    void After_Step(std::function<void()> work);
    void Run_What_Waited();

  private:
    clsACARS* m_engine = nullptr;
    std::deque<std::function<void()>> m_waiting;
};

}  // namespace norvane
