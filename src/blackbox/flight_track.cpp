#include "blackbox/flight_track.h"

#include <array>
#include <cmath>
#include <cstdint>

#include "common/run_error.h"

namespace norvane {

namespace {

constexpr char track_version = 1;
constexpr unsigned bits_a_byte = 7;
constexpr unsigned char more_follows = 0x80;

struct Kept_Figure {
    double& (*of)(Flight_Point& point);
    /// Units in one of the figure's own.
    double scale;
};

constexpr auto kept_figures = std::to_array<Kept_Figure>({
    {[](Flight_Point& point) -> double& { return point.seconds; }, 1000},
    {[](Flight_Point& point) -> double& { return point.position.latitude; }, 1e7},
    {[](Flight_Point& point) -> double& { return point.position.longitude; }, 1e7},
    {[](Flight_Point& point) -> double& { return point.altitude_ft; }, 10},
    {[](Flight_Point& point) -> double& { return point.ground_elevation_ft; }, 10},
    {[](Flight_Point& point) -> double& { return point.vertical_speed_fpm; }, 1},
    {[](Flight_Point& point) -> double& { return point.ground_speed_kt; }, 10},
    {[](Flight_Point& point) -> double& { return point.indicated_airspeed_kt; }, 10},
    {[](Flight_Point& point) -> double& { return point.true_heading_deg; }, 100},
});

// The last byte of a point: its phase and two flags.
constexpr unsigned phase_mask = 7;
constexpr unsigned on_ground_flag = 8;
constexpr unsigned begins_segment_flag = 16;

/// Small numbers of either sign become small numbers without one.
std::uint64_t Folded(std::int64_t value) {
    return (static_cast<std::uint64_t>(value) << 1) ^ static_cast<std::uint64_t>(value >> 63);
}

std::int64_t Unfolded(std::uint64_t value) {
    return static_cast<std::int64_t>(value >> 1) ^ -static_cast<std::int64_t>(value & 1);
}

void Add_Number(std::string& bytes, std::int64_t value) {
    std::uint64_t rest = Folded(value);
    while (rest >= more_follows) {
        bytes += static_cast<char>((rest & (more_follows - 1U)) | more_follows);
        rest >>= bits_a_byte;
    }
    bytes += static_cast<char>(rest);
}

class Track_Bytes {
  public:
    explicit Track_Bytes(std::string_view bytes) : m_rest(bytes) {}

    [[nodiscard]] bool At_End() const { return m_rest.empty(); }
    unsigned Byte() {
        if (m_rest.empty())
            throw Run_Error(error_number::device_io_error, "The stored track is cut short");
        const auto byte = static_cast<unsigned char>(m_rest.front());
        m_rest.remove_prefix(1);
        return byte;
    }
    std::int64_t Number() {
        std::uint64_t value = 0;
        for (unsigned shift = 0; shift < 64; shift += bits_a_byte) {
            const unsigned byte = Byte();
            value |= static_cast<std::uint64_t>(byte & (more_follows - 1U)) << shift;
            if (byte < more_follows)
                return Unfolded(value);
        }
        throw Run_Error(error_number::device_io_error, "The stored track is damaged");
    }

  private:
    std::string_view m_rest;
};

}  // namespace

std::string Pack_Track(const std::vector<Flight_Point>& track) {
    std::string bytes(1, track_version);
    std::array<std::int64_t, kept_figures.size()> before{};
    for (Flight_Point point : track) {
        for (std::size_t i = 0; i < kept_figures.size(); ++i) {
            const std::int64_t now =
                std::llround(kept_figures.at(i).of(point) * kept_figures.at(i).scale);
            // Without a sign, as it is read: what was damaged may be as large as it likes.
            Add_Number(bytes, static_cast<std::int64_t>(static_cast<std::uint64_t>(now) -
                                                        static_cast<std::uint64_t>(before.at(i))));
            before.at(i) = now;
        }
        bytes += static_cast<char>(static_cast<unsigned>(point.phase) |
                                   (point.on_ground ? on_ground_flag : 0) |
                                   (point.begins_segment ? begins_segment_flag : 0));
    }
    return bytes;
}

std::vector<Flight_Point> Unpack_Track(std::string_view bytes) {
    Track_Bytes rest(bytes);
    if (rest.Byte() != track_version)
        throw Run_Error(error_number::device_io_error, "The stored track has another version");
    std::vector<Flight_Point> track;
    std::array<std::uint64_t, kept_figures.size()> sums{};
    while (!rest.At_End()) {
        Flight_Point& point = track.emplace_back();
        for (std::size_t i = 0; i < kept_figures.size(); ++i) {
            // Without a sign, as it is written.
            sums.at(i) += static_cast<std::uint64_t>(rest.Number());
            kept_figures.at(i).of(point) =
                static_cast<double>(static_cast<std::int64_t>(sums.at(i))) /
                kept_figures.at(i).scale;
        }
        const unsigned flags = rest.Byte();
        if ((flags & phase_mask) > static_cast<unsigned>(Flight_Phase::in))
            throw Run_Error(error_number::device_io_error, "The stored track is damaged");
        point.phase = static_cast<Flight_Phase>(flags & phase_mask);
        point.on_ground = (flags & on_ground_flag) != 0;
        point.begins_segment = (flags & begins_segment_flag) != 0;
    }
    return track;
}

}  // namespace norvane
