#pragma once
// What a recording holds of a simulator, and how it is read: every variable that a simulator tells
// and every tank, in one exchange. Shared by the black box and by the recorder of the simulator's
// stand-in.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "simlink/recording.h"

namespace norvane {

class modFSUIPC;

struct Recorded_Field {
    std::uint32_t offset = 0;
    std::uint32_t size = 0;  // bytes
};

/// In the order of offsets, each once.
[[nodiscard]] std::vector<Recorded_Field> Recorded_Fields();

/// Reads the fields in one exchange, one change for each; false, with the link's result, when that
/// failed. `patient`: with all of the link's tries, otherwise with one.
[[nodiscard]] bool Read_Fields(modFSUIPC& link, std::span<const Recorded_Field> fields,
                               bool patient, std::vector<Recorded_Change>& sample, int& result);

/// The offset area as far as a recording tells it.
class Recorded_Image {
  public:
    Recorded_Image();

    /// Takes bytes over; those that are new or differ are added to `changes`, if there are any.
    void Take(const Recorded_Change& sampled, std::vector<Recorded_Change>& changes);
    /// Takes a moment over as it was recorded.
    void Apply(const Recorded_Moment& moment);
    [[nodiscard]] std::span<const std::byte> Bytes(std::uint32_t offset, std::size_t count) const;
    /// Every byte of this range was recorded.
    [[nodiscard]] bool Is_Known(std::uint32_t offset, std::size_t count) const;

  private:
    std::vector<std::byte> m_bytes;
    std::vector<bool> m_known;
};

}  // namespace norvane
