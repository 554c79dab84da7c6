#pragma once
// The layout of a request block: the records a client queues, one after another, and the walk over
// them that both sides make. All fields are 32-bit little-endian.

#include <cstddef>
#include <cstdint>
#include <span>

namespace norvane {

/// Room for request records, their data and the 4-byte end record.
inline constexpr std::size_t request_block_limit = 0x7F00;

/// First field of a record.
namespace record_identifier {
inline constexpr std::uint32_t end = 0;    // nothing follows
inline constexpr std::uint32_t read = 1;   // offset, size, destination token, `size` bytes
inline constexpr std::uint32_t write = 2;  // offset, size, `size` bytes
}  // namespace record_identifier

inline constexpr std::size_t read_header_size = 16;
inline constexpr std::size_t write_header_size = 12;
inline constexpr std::size_t end_record_size = 4;

/// Upper half of the simulator version word: what speaks here is a simulator's FSUIPC.
inline constexpr std::uint32_t simulator_check_pattern = 0xFADE;

[[nodiscard]] std::uint32_t Load_U32(std::span<const std::byte> bytes, std::size_t place);
void Store_U32(std::span<std::byte> bytes, std::size_t place, std::uint32_t value);

struct Request_Record {
    std::uint32_t identifier = record_identifier::end;
    std::uint32_t offset = 0;
    std::uint32_t size = 0;
    /// Of a read: the client's own number for the destination.
    std::uint32_t token = 0;
    /// Where the record's data stands in the block.
    std::size_t data_place = 0;
};

/// Goes through the read and write records of a block and never beyond its bytes.
class Record_Walk {
  public:
    explicit Record_Walk(std::span<const std::byte> block) : m_block(block) {}

    /// Moves to the next record; false at the end record and at anything that is no whole record.
    bool Next();
    [[nodiscard]] const Request_Record& Record() const { return m_record; }
    /// After `Next` gave false: the walk met the end record, and it is the last of the block.
    [[nodiscard]] bool Ended_Whole() const { return m_ended && m_place == m_block.size(); }

  private:
    std::span<const std::byte> m_block;
    std::size_t m_place = 0;
    Request_Record m_record;
    bool m_ended = false;
};

}  // namespace norvane
