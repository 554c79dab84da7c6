#include "blackbox/step_sampler.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>

#include "acars/cls_acars.h"
#include "simlink/catalogue.h"
#include "simlink/mod_fsuipc.h"

namespace norvane {

namespace {

/// The lowest bits of a variable that only the recording reads, and that it leaves out.
struct Noise {
    Variable variable;
    unsigned bits;
};

/// What stays: 4 mm of latitude, 9 mm of longitude, 0.01 ft of altitude, 0.01 degrees, 0.01 kt,
/// 0.005 % of a tank, and of numbers in 8 bytes the first 24 bits.
constexpr auto noise = std::to_array<Noise>({
    {Variable::latitude_deg, 24},
    {Variable::longitude_deg, 32},
    {Variable::altitude_fraction_ft, 24},
    {Variable::ground_elevation_ft, 2},
    {Variable::true_heading_deg, 16},
    {Variable::pitch_deg, 16},
    {Variable::bank_deg, 16},
    {Variable::ground_speed_kt, 8},
    {Variable::engine_fuel_flow_pph, 36},
    {Variable::engine_propeller_fraction, 38},
    {Variable::engine_n1_percent, 3},
    {Variable::engine_n2_percent, 3},
    {Variable::engine_manifold_inhg, 3},
    {Variable::total_weight_lbs, 28},
    {Variable::dew_point_c, 4},
    {Variable::surface_temperature_c, 4},
    {Variable::total_air_temperature_c, 4},
});
constexpr unsigned tank_noise = 8;
/// A simulator that has refused the whole block so often in a row does not know it.
constexpr int most_refusals = 3;

constexpr auto fast_variables = std::to_array<Variable>({
    Variable::latitude_deg,
    Variable::longitude_deg,
    Variable::altitude_fraction_ft,
    Variable::altitude_ft,
    Variable::ground_elevation_ft,
    Variable::vertical_speed_fpm,
    Variable::ground_speed_kt,
    Variable::indicated_airspeed_kt,
    Variable::true_heading_deg,
    Variable::pitch_deg,
    Variable::bank_deg,
    Variable::g_load,
    Variable::on_ground,
    Variable::flaps_percent,
    Variable::wind_speed_kt,
    Variable::wind_direction_deg,
    Variable::paused,
    Variable::replaying,
    Variable::slew_mode,
});

std::map<std::uint32_t, unsigned> Noise_By_Offset() {
    std::map<std::uint32_t, unsigned> by_offset;
    for (const Noise& row : noise) {
        const int engines = Row_Of(row.variable).stride == 0 ? 1 : most_engines;
        for (int engine = 1; engine <= engines; ++engine)
            by_offset[Offset_Of(row.variable, engine)] = row.bits;
    }
    for (const Tank_Row& tank : All_Tanks())
        by_offset[tank.level_offset] = tank_noise;
    return by_offset;
}

/// Clears the lowest bits: whole numbers go down, those in 8 bytes towards 0.
void Leave_Noise_Out(Recorded_Change& change) {
    static const std::map<std::uint32_t, unsigned> by_offset = Noise_By_Offset();
    const auto row = by_offset.find(change.offset);
    if (row == by_offset.end())
        return;
    unsigned bits = row->second;
    for (std::size_t i = 0; i < change.bytes.size() && bits > 0; ++i) {
        const unsigned here = std::min(bits, 8U);
        change.bytes[i] &= static_cast<std::byte>(0xFF << here);
        bits -= here;
    }
}

bool Is_Position(const Recorded_Change& change) {
    return change.offset == Offset_Of(Variable::latitude_deg) ||
           change.offset == Offset_Of(Variable::longitude_deg);
}

}  // namespace

Step_Sampler::Step_Sampler() {
    for (const Recorded_Field& field : Recorded_Fields()) {
        // A world that stands still between steps goes on when the brake is read, which is the
        // engine's to do.
        if (field.offset != Offset_Of(Variable::parking_brake))
            m_fields.push_back(field);
    }
    for (const Variable variable : fast_variables)
        m_fast_fields.push_back({Offset_Of(variable), Row_Of(variable).size});
}

void Step_Sampler::Begin_Anew() {
    m_image = {};
    m_refusals = 0;
}

Recorded_Moment Step_Sampler::Sample_Step(modFSUIPC& link, const Engine_Step& step) {
    Recorded_Moment moment;
    int result = ipc_result::okay;
    const bool is_asked = m_refusals < most_refusals;
    if (!is_asked || !Read_Fields(link, m_fields, false, m_sample, result))
        m_sample.clear();
    if (is_asked && result != ipc_result::bad_data)
        m_refusals = 0;
    else
        ++m_refusals;
    // The position decides only where something happens: elsewhere it is read to be forgotten.
    const bool exact = step.has_events || step.kind != Engine_Step::Kind::step;
    std::map<std::uint32_t, Recorded_Change> first_reads;
    for (const Recorded_Change& read : step.reads) {
        const auto [place, is_first] = first_reads.try_emplace(read.offset, read);
        if (!is_first && place->second.bytes != read.bytes && (exact || !Is_Position(read))) {
            const std::string line = Recording_Lines({0, {read}});
            moment.remarks.push_back(
                "again " + line.substr(line.find(' ') + 1, line.size() - line.find(' ') - 2));
        }
    }
    for (Recorded_Change& sampled : m_sample) {
        if (first_reads.contains(sampled.offset))
            continue;
        Leave_Noise_Out(sampled);
        m_image.Take(sampled, moment.changes);
    }
    for (auto& [offset, read] : first_reads) {
        if (!exact && Is_Position(read))
            Leave_Noise_Out(read);
        m_image.Take(read, moment.changes);
    }
    return moment;
}

void Step_Sampler::Complete(Recorded_Moment& start, const Engine_Step& step) {
    for (const Recorded_Change& read : step.reads) {
        if (!m_image.Is_Known(read.offset, read.bytes.size()))
            m_image.Take(read, start.changes);
    }
}

bool Step_Sampler::Sample_Fast(modFSUIPC& link, Recorded_Moment& moment) {
    int result = ipc_result::okay;
    if (!Read_Fields(link, m_fast_fields, false, m_sample, result))
        return false;
    for (Recorded_Change& sampled : m_sample) {
        Leave_Noise_Out(sampled);
        m_image.Take(sampled, moment.changes);
    }
    return true;
}

double Step_Sampler::Height_Ft() const {
    const auto altitude =
        m_image.Bytes(Offset_Of(Variable::altitude_fraction_ft), exact_altitude_size);
    const Variable_Row& ground = Row_Of(Variable::ground_elevation_ft);
    return Decode_Exact_Altitude(altitude) -
           Decode(ground.id, m_image.Bytes(ground.offset, ground.size));
}

double Step_Sampler::Vertical_Speed_Fpm() const {
    const Variable_Row& row = Row_Of(Variable::vertical_speed_fpm);
    return Decode(row.id, m_image.Bytes(row.offset, row.size));
}

bool Step_Sampler::Is_On_Ground() const {
    const Variable_Row& row = Row_Of(Variable::on_ground);
    return Decode(row.id, m_image.Bytes(row.offset, row.size)) != 0;
}

}  // namespace norvane
