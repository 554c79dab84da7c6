#include "simlink/sim_reader.h"

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

#include "common/number.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/request_block.h"

namespace norvane {

Sim_Reader::Sim_Reader(modFSUIPC& link) : m_link(link) {}

void Sim_Reader::Begin_Step() {
    m_failure.reset();
    m_reads.clear();
}

double Sim_Reader::Read(Variable variable, int engine) {
    std::array<std::byte, 8> bytes{};
    const std::uint32_t size = Row_Of(variable).size;
    if (size > bytes.size() || !Exchange(Offset_Of(variable, engine), size, bytes.data()))
        return 0;
    return Decode(variable, std::span(bytes).first(size));
}

std::int32_t Sim_Reader::Read_Whole(Variable variable, int engine) {
    constexpr double low = std::numeric_limits<std::int32_t>::min();
    constexpr double high = std::numeric_limits<std::int32_t>::max();
    const double value = Round_Half_Even(Read(variable, engine));
    return static_cast<std::int32_t>(std::clamp(value, low, high));
}

std::string Sim_Reader::Read_Text(Variable variable) {
    std::vector<std::byte> bytes(Row_Of(variable).size);
    if (!Exchange(Offset_Of(variable), Row_Of(variable).size, bytes.data()))
        return {};
    return Decode_Text(bytes);
}

double Sim_Reader::Read_Fuel_Gallons() {
    double gallons = 0;
    for (const Tank_Row& tank : All_Tanks()) {
        std::int32_t level = 0;
        std::int32_t capacity_gal = 0;
        if (!Exchange(tank.level_offset, sizeof level, &level) ||
            !Exchange(tank.capacity_offset, sizeof capacity_gal, &capacity_gal))
            return 0;
        gallons += Tank_Gallons(level, capacity_gal);
    }
    return gallons;
}

bool Sim_Reader::Write_Display(const std::string& line, std::int16_t control) {
    if (m_failure)
        return false;
    // A text queued without its control would stay queued and stop whatever comes after it.
    constexpr std::size_t around = 2 * write_header_size + 1 + sizeof control + end_record_size;
    if (line.size() + around > request_block_limit)
        return Fail(false, ipc_result::block_full);
    int result = 0;
    if (!m_link.IPC_WriteString(Offset_Of(Variable::display_text),
                                static_cast<std::uint32_t>(line.size() + 1), line, result) ||
        !m_link.IPC_Write(Offset_Of(Variable::display_control), sizeof control, &control, result))
        return Fail(false, result);
    return m_link.IPC_Process(result) || Fail(true, result);
}

bool Sim_Reader::Exchange(std::uint32_t offset, std::uint32_t size, void* destination) {
    if (m_failure)
        return false;
    int result = 0;
    if (!m_link.IPC_Read(offset, size, destination, result))
        return Fail(false, result);
    if (!m_link.IPC_Process(result))
        return Fail(true, result);
    const auto* bytes = static_cast<const std::byte*>(destination);
    m_reads.push_back({offset, {bytes, bytes + size}});
    return true;
}

bool Sim_Reader::Fail(bool exchange, int result) {
    m_failure = Failure{exchange, modFSUIPC::IPC_ErrorText(result)};
    return false;
}

}  // namespace norvane
