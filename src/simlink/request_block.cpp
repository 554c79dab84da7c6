#include "simlink/request_block.h"

#include <cstring>

namespace norvane {

std::uint32_t Load_U32(std::span<const std::byte> bytes, std::size_t place) {
    std::uint32_t value = 0;
    std::memcpy(&value, bytes.subspan(place, sizeof value).data(), sizeof value);
    return value;
}

void Store_U32(std::span<std::byte> bytes, std::size_t place, std::uint32_t value) {
    std::memcpy(bytes.subspan(place, sizeof value).data(), &value, sizeof value);
}

bool Record_Walk::Next() {
    const std::size_t room = m_block.size() - m_place;
    if (m_ended || room < end_record_size)
        return false;
    const std::uint32_t identifier = Load_U32(m_block, m_place);
    if (identifier == record_identifier::end) {
        m_ended = true;
        m_place += end_record_size;
        return false;
    }
    const bool read = identifier == record_identifier::read;
    if (!read && identifier != record_identifier::write)
        return false;
    const std::size_t header = read ? read_header_size : write_header_size;
    if (room < header)
        return false;
    const std::uint32_t size = Load_U32(m_block, m_place + 8);
    if (size > room - header)
        return false;
    m_record = {identifier, Load_U32(m_block, m_place + 4), size,
                read ? Load_U32(m_block, m_place + 12) : 0, m_place + header};
    m_place += header + size;
    return true;
}

}  // namespace norvane
