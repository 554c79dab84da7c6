#include "simlink/offset_area.h"

#include <algorithm>
#include <cstring>

#include "common/run_error.h"
#include "simlink/request_block.h"

namespace norvane {

namespace {

constexpr std::uint32_t fsuipc_3_750 = 0x37500000;
constexpr std::uint16_t fs2004 = 7;

}  // namespace

Offset_Area::Offset_Area() {
    std::memcpy(m_bytes.data() + Offset_Of(Variable::fsuipc_version), &fsuipc_3_750,
                sizeof fsuipc_3_750);
    Set_Simulator_Version(fs2004);
}

bool Offset_Area::Takes(std::span<const std::byte> records) {
    Record_Walk walk(records);
    while (walk.Next()) {
        const Request_Record& record = walk.Record();
        if (std::uint64_t{record.offset} + record.size > size)
            return false;
    }
    return walk.Ended_Whole();
}

bool Offset_Area::Process(std::span<std::byte> records) {
    if (!Takes(records))
        return false;
    Record_Walk walk(records);
    while (walk.Next()) {
        const Request_Record& record = walk.Record();
        const auto data = records.subspan(record.data_place, record.size);
        if (record.identifier == record_identifier::read) {
            if (on_read)
                on_read(record.offset, record.size);
            std::memcpy(data.data(), m_bytes.data() + record.offset, record.size);
        } else {
            Write(record.offset, data);
            if (on_write)
                on_write(record.offset, record.size);
        }
    }
    return true;
}

void Offset_Area::Write(std::uint32_t offset, std::span<const std::byte> data) {
    // What a client writes to the library version stands where others read the check pattern: the
    // version words are never the client's to change.
    const auto versions = Bytes(Offset_Of(Variable::fsuipc_version), 8);
    std::array<std::byte, 8> kept{};
    std::copy(versions.begin(), versions.end(), kept.begin());
    std::copy(data.begin(), data.end(), m_bytes.begin() + offset);
    std::copy(kept.begin(), kept.end(), versions.begin());
}

void Offset_Area::Set(Variable variable, double value, int engine) {
    Encode(variable, value, Bytes(Offset_Of(variable, engine), Row_Of(variable).size));
}

void Offset_Area::Set_Text(Variable variable, std::string_view text) {
    Encode_Text(text, Bytes(Offset_Of(variable), Row_Of(variable).size));
}

void Offset_Area::Set_Tank(std::size_t tank, double gallons, std::int32_t capacity_gal) {
    const Tank_Row& row = All_Tanks().at(tank);
    const std::int32_t level = capacity_gal > 0 ? Tank_Raw_Level(gallons, capacity_gal) : 0;
    std::memcpy(m_bytes.data() + row.level_offset, &level, sizeof level);
    std::memcpy(m_bytes.data() + row.capacity_offset, &capacity_gal, sizeof capacity_gal);
}

void Offset_Area::Set_Simulator_Version(std::uint16_t version) {
    const std::uint32_t word = simulator_check_pattern << 16 | version;
    std::memcpy(m_bytes.data() + Offset_Of(Variable::simulator_version), &word, sizeof word);
}

double Offset_Area::Get(Variable variable, int engine) const {
    return Decode(variable, Bytes(Offset_Of(variable, engine), Row_Of(variable).size));
}

std::string Offset_Area::Get_Text(Variable variable) const {
    return Decode_Text(Bytes(Offset_Of(variable), Row_Of(variable).size));
}

std::span<std::byte> Offset_Area::Bytes(std::uint32_t offset, std::size_t count) {
    if (offset > size || count > size - offset)
        throw Run_Error(error_number::subscript_out_of_range,
                        "The range lies beyond the offset area");
    return std::span(m_bytes).subspan(offset, count);
}

std::span<const std::byte> Offset_Area::Bytes(std::uint32_t offset, std::size_t count) const {
    if (offset > size || count > size - offset)
        throw Run_Error(error_number::subscript_out_of_range,
                        "The range lies beyond the offset area");
    return std::span(m_bytes).subspan(offset, count);
}

}  // namespace norvane
