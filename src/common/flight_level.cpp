#include "common/flight_level.h"

#include "common/number.h"

namespace norvane {

namespace {

std::string Padded_Right(std::string digits, std::size_t width) {
    if (digits.size() < width)
        digits.append(width - digits.size(), '0');
    return digits;
}

}  // namespace

std::string Format_FlightLevel(double altitude_ft) {
    if (altitude_ft < 1000)
        return Format_Whole(altitude_ft);
    // Hundreds of feet, so that halves are exact and go to the even hundred.
    const double tenths = Round_Half_Even(Round_Half_Up(altitude_ft / 100, 6));
    std::string digits = Format_Whole(tenths);
    if (digits.ends_with('0'))
        digits.pop_back();
    if (tenths >= 180)
        return "FL" + Padded_Right(digits, 3);
    return Padded_Right(digits, tenths >= 100 ? 5 : 4);
}

}  // namespace norvane
