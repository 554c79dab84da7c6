#include "acarspanel/step_queue.h"

#include <utility>

#include "acars/cls_acars.h"

namespace norvane {

bool Step_Queue::Is_Stepping() const {
    return m_engine != nullptr && m_engine->Is_Stepping();
}

void Step_Queue::After_Step(std::function<void()> work) {
    if (Is_Stepping())
        m_waiting.push_back(std::move(work));
    else
        work();
}

void Step_Queue::Run_What_Waited() {
    while (!m_waiting.empty()) {
        const auto work = std::move(m_waiting.front());
        m_waiting.pop_front();
        work();
    }
}

}  // namespace norvane
