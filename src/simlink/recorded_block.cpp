#include "simlink/recorded_block.h"

#include <algorithm>
#include <array>
#include <map>

#include "simlink/catalogue.h"
#include "simlink/mod_fsuipc.h"
#include "simlink/offset_area.h"

namespace norvane {

namespace {

/// Variables that clients write and no simulator tells.
constexpr auto written_variables = std::to_array<Variable>(
    {Variable::display_control, Variable::library_version, Variable::display_text});

}  // namespace

std::vector<Recorded_Field> Recorded_Fields() {
    std::map<std::uint32_t, std::uint32_t> sizes;
    for (const Variable_Row& row : All_Variables()) {
        if (std::find(written_variables.begin(), written_variables.end(), row.id) !=
            written_variables.end())
            continue;
        const int engines = row.stride == 0 ? 1 : most_engines;
        for (int engine = 1; engine <= engines; ++engine)
            sizes[Offset_Of(row.id, engine)] = row.size;
    }
    // With its check pattern, so that a player needs to know nothing of it.
    sizes[Offset_Of(Variable::simulator_version)] = 4;
    for (const Tank_Row& tank : All_Tanks()) {
        sizes[tank.level_offset] = 4;
        sizes[tank.capacity_offset] = 4;
    }
    std::vector<Recorded_Field> fields;
    fields.reserve(sizes.size());
    for (const auto& [offset, size] : sizes)
        fields.push_back({offset, size});
    return fields;
}

bool Read_Fields(modFSUIPC& link, std::span<const Recorded_Field> fields, bool patient,
                 std::vector<Recorded_Change>& sample, int& result) {
    sample.resize(fields.size());
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const Recorded_Field& field = fields[i];
        sample[i].offset = field.offset;
        sample[i].bytes.resize(field.size);
        if (!link.IPC_Read(field.offset, field.size, sample[i].bytes.data(), result))
            return false;
    }
    return patient ? link.IPC_Process(result) : link.IPC_Process_Once(result);
}

Recorded_Image::Recorded_Image() : m_bytes(Offset_Area::size), m_known(Offset_Area::size) {}

void Recorded_Image::Take(const Recorded_Change& sampled, std::vector<Recorded_Change>& changes) {
    const auto differs = [&](std::size_t i) {
        const std::size_t place = sampled.offset + i;
        return !m_known.at(place) || m_bytes.at(place) != sampled.bytes.at(i);
    };
    std::size_t first = 0;
    std::size_t end = sampled.bytes.size();
    while (first < end && !differs(first))
        ++first;
    while (end > first && !differs(end - 1))
        --end;
    if (first == end)
        return;
    const auto begin = sampled.bytes.begin();
    changes.push_back(
        {static_cast<std::uint32_t>(sampled.offset + first),
         {begin + static_cast<std::ptrdiff_t>(first), begin + static_cast<std::ptrdiff_t>(end)}});
    Apply({0, {changes.back()}});
}

void Recorded_Image::Apply(const Recorded_Moment& moment) {
    for (const Recorded_Change& change : moment.changes) {
        for (std::size_t i = 0; i < change.bytes.size(); ++i) {
            m_bytes.at(change.offset + i) = change.bytes[i];
            m_known.at(change.offset + i) = true;
        }
    }
}

std::span<const std::byte> Recorded_Image::Bytes(std::uint32_t offset, std::size_t count) const {
    return std::span(m_bytes).subspan(offset, count);
}

bool Recorded_Image::Is_Known(std::uint32_t offset, std::size_t count) const {
    for (std::size_t i = 0; i < count; ++i) {
        if (!m_known.at(offset + i))
            return false;
    }
    return true;
}

}  // namespace norvane
