#include "simhost/recording/replay.h"

#include <algorithm>
#include <utility>

namespace norvane {

Replay::Replay(std::vector<Recorded_Moment> moments) : m_moments(std::move(moments)) {}

void Replay::Apply(double seconds, Offset_Area& area) {
    // The first moment carries every variable: playing from it undoes whatever came later.
    if (m_applied > 0 && m_moments[m_applied - 1].seconds > seconds)
        m_applied = 0;
    while (m_applied < m_moments.size() &&
           (m_applied == 0 || m_moments[m_applied].seconds <= seconds)) {
        for (const Recorded_Change& change : m_moments[m_applied].changes) {
            const auto bytes = area.Bytes(change.offset, change.bytes.size());
            std::copy(change.bytes.begin(), change.bytes.end(), bytes.begin());
        }
        ++m_applied;
    }
}

double Replay::Length() const {
    return m_moments.back().seconds;
}

}  // namespace norvane
