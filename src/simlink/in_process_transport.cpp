#include "simlink/in_process_transport.h"

#include "simlink/offset_area.h"

namespace norvane {

In_Process_Transport::In_Process_Transport(Offset_Area& area) : m_area(area) {}

Transport_Opening In_Process_Transport::Open() {
    if (on_open) {
        if (const auto opening = on_open())
            return *opening;
    }
    return {};
}

Delivery In_Process_Transport::Deliver(std::span<std::byte> block,
                                       std::chrono::milliseconds /*at_most*/) {
    if (on_deliver) {
        if (const auto delivery = on_deliver(block))
            return *delivery;
    }
    return {Delivery_Outcome::answered, m_area.Process(block) ? 1U : 0U};
}

}  // namespace norvane
