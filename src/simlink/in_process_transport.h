#pragma once
// The transport within one process: requests go straight to an offset area. Tests and benchmarks
// use it, and put trouble in the link's way through its hooks.

#include <functional>
#include <optional>

#include "simlink/link_address.h"
#include "simlink/transport.h"

namespace norvane {

class Offset_Area;

class In_Process_Transport : public Transport {
  public:
    /// `area` outlives the transport.
    explicit In_Process_Transport(Offset_Area& area);

    [[nodiscard]] Transport_Opening Open() override;
    Delivery Deliver(std::span<std::byte> block, std::chrono::milliseconds at_most) override;
    void Close() override {}
    [[nodiscard]] std::string Where() const override { return std::string(default_link_address); }
    [[nodiscard]] bool Is_Given_Up() const override { return given_up; }

    /// Asked at each opening; what it gives takes the place of a good one.
    std::function<std::optional<Transport_Opening>()> on_open;
    /// Asked at each delivery, before the area sees the block (which it may change); what it gives
    /// takes the area's place.
    std::function<std::optional<Delivery>(std::span<std::byte>)> on_deliver;
    bool given_up = false;

  private:
    Offset_Area& m_area;
};

}  // namespace norvane
