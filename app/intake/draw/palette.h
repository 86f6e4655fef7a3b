// The colours of pictures, and their text height.
#ifndef APP_INTAKE_DRAW_PALETTE_H
#define APP_INTAKE_DRAW_PALETTE_H

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>

#include "app/intake/draw/canvas.h"

namespace program {

inline constexpr Colour kInk = {40, 40, 40};

// The height of texts that do not say theirs.
inline constexpr double kTextPixels = 10;

// Lines and texts by colour number: 0 and 1 are ink.
inline Colour lineColour(int32_t number) {
    constexpr std::array<Colour, 12> kColours = {{{40, 40, 40},
                                                  {40, 40, 40},
                                                  {196, 30, 58},
                                                  {0, 122, 61},
                                                  {0, 71, 171},
                                                  {0, 139, 139},
                                                  {153, 50, 153},
                                                  {184, 134, 11},
                                                  {210, 105, 30},
                                                  {85, 107, 47},
                                                  {70, 90, 120},
                                                  {128, 0, 32}}};
    return kColours[static_cast<std::size_t>(std::abs(int64_t{number})) % kColours.size()];
}

// Fills by shade number.
inline Colour shadeColour(int32_t number) {
    constexpr std::array<Colour, 10> kColours = {{{232, 226, 205},
                                                  {253, 222, 176},
                                                  {205, 228, 196},
                                                  {198, 219, 239},
                                                  {242, 203, 211},
                                                  {221, 211, 236},
                                                  {250, 240, 170},
                                                  {190, 226, 221},
                                                  {236, 208, 180},
                                                  {214, 214, 214}}};
    return kColours[static_cast<std::size_t>(std::abs(int64_t{number})) % kColours.size()];
}

// A height between 0 (lowest) and 1 (highest), lit between 0 (in the dark) and 1 (to the light).
// What is no number counts as 0.
inline Colour reliefColour(double height, double light) {
    constexpr double kSteps[][3] = {{86, 140, 92},   {150, 180, 110}, {224, 210, 150},
                                    {196, 150, 100}, {150, 110, 90},  {245, 245, 245}};
    constexpr std::size_t kLast = std::size(kSteps) - 1;
    const double place = (height > 0 ? std::min(height, 1.0) : 0) * static_cast<double>(kLast);
    const auto step =
        static_cast<std::size_t>(place) == kLast ? kLast - 1 : static_cast<std::size_t>(place);
    const double part = place - static_cast<double>(step);
    const double shade = 0.35 + 0.75 * light;
    const auto channel = [&](std::size_t index) {
        const double value =
            (kSteps[step][index] * (1 - part) + kSteps[step + 1][index] * part) * shade;
        return static_cast<uint8_t>(value > 0 ? std::min(value, 255.0) : 0);
    };
    return {channel(0), channel(1), channel(2)};
}

}  // namespace program

#endif
