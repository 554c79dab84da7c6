#pragma once
// The simulator's side of the link: 65536 bytes that requests read and write. It stands behind the
// in-process transport and inside the simulator's stand-in.

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "simlink/catalogue.h"

namespace norvane {

class Offset_Area {
  public:
    static constexpr std::size_t size = 0x10000;

    /// All zero but for the version words: FSUIPC 3.750, simulator 7 ("FS2004").
    Offset_Area();

    /// False for a record beyond the area, an unknown identifier or a length that does not fit:
    /// such a request block is refused, wherever it would be carried out.
    [[nodiscard]] static bool Takes(std::span<const std::byte> records);
    /// Carries out the records of a request block, in place. False, with nothing changed, when the
    /// area does not take them. Writes leave
    /// the version words (0x3304 to 0x330B) as they are.
    bool Process(std::span<std::byte> records);

    void Set(Variable variable, double value, int engine = 1);
    void Set_Text(Variable variable, std::string_view text);
    /// Fuel in US gallons of the tank at `tank` (0 to 10), and its capacity.
    void Set_Tank(std::size_t tank, double gallons, std::int32_t capacity_gal);
    void Set_Simulator_Version(std::uint16_t version);
    [[nodiscard]] double Get(Variable variable, int engine = 1) const;
    [[nodiscard]] std::string Get_Text(Variable variable) const;

    [[nodiscard]] std::span<std::byte> Bytes(std::uint32_t offset, std::size_t count);
    [[nodiscard]] std::span<const std::byte> Bytes(std::uint32_t offset, std::size_t count) const;

    /// Called before each read and after each write of a processed block: offset and size.
    std::function<void(std::uint32_t, std::uint32_t)> on_read;
    std::function<void(std::uint32_t, std::uint32_t)> on_write;

  private:
    void Write(std::uint32_t offset, std::span<const std::byte> data);

    std::array<std::byte, size> m_bytes{};
};

}  // namespace norvane
