#include "blackbox/recorded_flight.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "simlink/recorded_block.h"

namespace norvane {

namespace {

constexpr std::string_view fast_remark = "fast";
constexpr std::string_view ended_remark = "ended:";
constexpr std::string_view logged_remark = "logged:";

bool Has_Remark(const Recorded_Moment& moment, std::string_view beginning) {
    return std::any_of(moment.remarks.begin(), moment.remarks.end(),
                       [&](const std::string& remark) { return remark.starts_with(beginning); });
}

/// Reads an image that grows moment by moment.
class Moment_Decoder {
  public:
    Flight_Sample Next(const Recorded_Moment& moment) {
        m_image.Apply(moment);
        Flight_Sample sample;
        Read_Point(moment.seconds, sample.point);
        Read_Figures(sample);
        Read_Flags(sample);
        sample.is_fast = Has_Remark(moment, fast_remark);
        return sample;
    }

  private:
    [[nodiscard]] double Value(Variable variable, int engine = 1) const {
        return Decode_Unrounded(variable,
                                m_image.Bytes(Offset_Of(variable, engine), Row_Of(variable).size));
    }

    [[nodiscard]] bool Flag(Variable variable, int engine = 1) const {
        return Value(variable, engine) != 0;
    }

    [[nodiscard]] std::int32_t Raw_Whole(std::uint32_t offset) const {
        std::int32_t raw = 0;
        std::memcpy(&raw, m_image.Bytes(offset, sizeof raw).data(), sizeof raw);
        return raw;
    }

    void Read_Point(double seconds, Flight_Point& point) const {
        point.seconds = seconds;
        point.position = {Value(Variable::latitude_deg), Value(Variable::longitude_deg)};
        point.altitude_ft = Decode_Exact_Altitude(
            m_image.Bytes(Offset_Of(Variable::altitude_fraction_ft), exact_altitude_size));
        point.ground_elevation_ft = Value(Variable::ground_elevation_ft);
        point.vertical_speed_fpm = Value(Variable::vertical_speed_fpm);
        point.ground_speed_kt = Value(Variable::ground_speed_kt);
        point.indicated_airspeed_kt = Value(Variable::indicated_airspeed_kt);
        point.true_heading_deg = Value(Variable::true_heading_deg);
        point.on_ground = Flag(Variable::on_ground);
    }

    void Read_Figures(Flight_Sample& sample) const {
        sample.pitch_deg = Value(Variable::pitch_deg);
        sample.bank_deg = Value(Variable::bank_deg);
        sample.g_load = Value(Variable::g_load);
        sample.flaps_percent = Value(Variable::flaps_percent);
        sample.wind_speed_kt = Value(Variable::wind_speed_kt);
        sample.wind_direction_deg = Value(Variable::wind_direction_deg);
        sample.weight_lbs = Value(Variable::total_weight_lbs);
        for (const Tank_Row& tank : All_Tanks())
            sample.fuel_gal +=
                Tank_Gallons(Raw_Whole(tank.level_offset), Raw_Whole(tank.capacity_offset));
        sample.fuel_lb_per_gal = Value(Variable::fuel_weight_lb_per_gal);
        sample.utc_minutes = static_cast<int>(Value(Variable::utc_hour)) * 60 +
                             static_cast<int>(Value(Variable::utc_minute));
        const double rate = Value(Variable::simulation_rate);
        sample.simulation_rate = rate > 0 ? rate : 1;
    }

    void Read_Flags(Flight_Sample& sample) const {
        sample.parking_brake = Flag(Variable::parking_brake);
        sample.paused = Flag(Variable::paused);
        sample.replaying = Flag(Variable::replaying);
        sample.slewing = Flag(Variable::slew_mode);
        sample.engine_count =
            std::clamp(static_cast<int>(Value(Variable::engine_count)), 0, most_engines);
        for (int engine = 1; engine <= sample.engine_count; ++engine)
            sample.engine_runs.at(static_cast<std::size_t>(engine - 1)) =
                Flag(Variable::engine_combustion, engine);
    }

    Recorded_Image m_image;
};

bool Has_Moved(const Flight_Point& before, const Flight_Point& now) {
    return now.position != before.position || now.altitude_ft != before.altitude_ft ||
           now.vertical_speed_fpm != before.vertical_speed_fpm || now.on_ground != before.on_ground;
}

/// Bytes of the altitude's fraction, which few simulators have.
bool Tells_Fraction(const Flight_Sample& sample) {
    const double metres = sample.point.altitude_ft / feet_per_metre;
    return metres != static_cast<double>(static_cast<std::int64_t>(metres));
}

void Note_Served(const Flight_Sample& sample, Served_Variables& served) {
    served.vertical_speed |= sample.point.vertical_speed_fpm != 0;
    served.ground_speed |= sample.point.ground_speed_kt != 0;
    served.indicated_airspeed |= sample.point.indicated_airspeed_kt != 0;
    served.weight |= sample.weight_lbs != 0;
    served.exact_altitude |= Tells_Fraction(sample);
    served.pitch |= sample.pitch_deg != 0;
    served.bank |= sample.bank_deg != 0;
    served.g_load |= sample.g_load != 0;
    served.flaps |= sample.flaps_percent != 0;
    served.wind |= sample.wind_speed_kt != 0;
}

}  // namespace

Recorded_Flight Decode_Moments(const std::vector<Recorded_Moment>& moments) {
    Recorded_Flight flight;
    flight.samples.reserve(moments.size());
    Moment_Decoder decoder;
    for (const Recorded_Moment& moment : moments) {
        if (moment.changes.empty() &&
            (Has_Remark(moment, ended_remark) || Has_Remark(moment, logged_remark)))
            continue;
        Flight_Sample sample = decoder.Next(moment);
        Note_Served(sample, flight.served);
        if (!flight.samples.empty())
            sample.is_new = Has_Moved(flight.samples.back().point, sample.point);
        flight.samples.push_back(sample);
    }
    return flight;
}

const Flight_Sample* Sample_At(const std::vector<Flight_Sample>& samples, double seconds) {
    const auto found = std::lower_bound(
        samples.begin(), samples.end(), seconds,
        [](const Flight_Sample& sample, double moment) { return sample.point.seconds < moment; });
    return found == samples.end() ? nullptr : &*found;
}

}  // namespace norvane
