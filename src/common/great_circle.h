#pragma once
// Great-circle distance as the whole system computes it (haversine, pi taken as 3.14159).

namespace norvane {

/// Degrees; north and east positive.
struct Position {
    double latitude = 0;
    double longitude = 0;
    bool operator==(const Position&) const = default;
};

/// Distance in nautical miles (minutes of arc), not rounded.
[[nodiscard]] double Great_Circle_Nm(Position from, Position to);

}  // namespace norvane
