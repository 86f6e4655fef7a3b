// Light on a surface, from the north-west.
#ifndef APP_INTAKE_DRAW_RELIEF_H
#define APP_INTAKE_DRAW_RELIEF_H

#include <algorithm>
#include <cmath>

namespace program {

// How much light a slope gets, 0 to 1, by its rise to the east and to the north per unit.
inline double lightOn(double eastward, double northward) {
    constexpr double kX = -0.5;
    constexpr double kY = 0.5;
    constexpr double kZ = 0.7071;
    const double length = std::sqrt(1 + eastward * eastward + northward * northward);
    return std::clamp((-eastward * kX - northward * kY + kZ) / length, 0.0, 1.0);
}

}  // namespace program

#endif
