#pragma once
// What is asked of the web or of the pilot for one flight is of no use once that flight is over. A
// request remembers in which round it was begun. Owned by the ACARS panel.

namespace norvane {

class Request_Round {
  public:
    [[nodiscard]] int Now() const { return m_now; }
    [[nodiscard]] bool Is_Over(int begun_in) const { return begun_in != m_now; }
    void End() { ++m_now; }

  private:
    int m_now = 0;
};

}  // namespace norvane
