#include "common/great_circle.h"

#include <cmath>

namespace norvane {

double Great_Circle_Nm(Position from, Position to) {
    // Every distance in every log was computed with this value; a better one would change them.
    constexpr double pi = 3.14159;
    constexpr double radians = pi / 180;
    const double half_latitude = std::sin((to.latitude - from.latitude) * radians / 2);
    const double half_longitude = std::sin((to.longitude - from.longitude) * radians / 2);
    const double square = half_latitude * half_latitude + std::cos(from.latitude * radians) *
                                                              std::cos(to.latitude * radians) *
                                                              half_longitude * half_longitude;
    const double x = std::sqrt(square);
    const double rest = 1 - x * x;
    const double angle = rest > 0 ? 2 * std::atan(x / std::sqrt(rest)) : pi;
    return angle * 180 * 60 / pi;
}

}  // namespace norvane
