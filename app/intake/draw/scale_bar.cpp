#include "app/intake/draw/scale_bar.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "app/intake/draw/legend.h"
#include "app/intake/draw/palette.h"
#include "app/intake/export/systems.h"

namespace program {

namespace {

constexpr double kText = 11;
constexpr double kThickness = 5;

// The greatest of 1, 2 and 5 times a power of ten that is not above a length.
double roundLength(double most) {
    const double power = std::pow(10, std::floor(std::log10(most)));
    for (const double step : {5, 2}) {
        if (step * power <= most) return step * power;
    }
    return power;
}

std::string plain(double value) {
    std::array<char, 32> digits;
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                         std::chars_format::general, 6)
                               .ptr};
}

std::string words(double length, bool degrees) {
    if (degrees) return plain(length) + "\xC2\xB0";
    return length >= 1000 ? plain(length / 1000) + " km" : plain(length) + " m";
}

}  // namespace

MapUnits unitsOf(const std::string& dataset) {
    const crs::ReferenceSystem system = systemIfKnown(dataset);
    return {system.perUnit, system.geographic()};
}

ScaleBar::ScaleBar(const MapUnits& units, double mapWidth, double scale) {
    const double perPixel = units.perUnit / scale;
    // So small or large that no text would help.
    if (!(perPixel > 1e-9 && perPixel < 1e9)) return;
    // These are no degrees on the earth, whatever the text says.
    if (units.degrees && mapWidth * perPixel > 400) return;
    const double most = std::clamp(mapWidth / 4, 50.0, 200.0);
    const double length = roundLength(most * perPixel);
    pixels_ = length / perPixel;
    text_ = words(length, units.degrees);
}

double ScaleBar::width() const { return pixels_ == 0 ? 0 : pixels_ + 6 + widthOf(text_, kText); }

// Two halves, dark and light.
void ScaleBar::draw(Canvas& canvas, Place topLeft) const {
    if (pixels_ == 0) return;
    const auto box = [&](double from, double to) {
        return std::array<Place, 5>{{{topLeft.x + from, topLeft.y},
                                     {topLeft.x + to, topLeft.y},
                                     {topLeft.x + to, topLeft.y + kThickness},
                                     {topLeft.x + from, topLeft.y + kThickness},
                                     {topLeft.x + from, topLeft.y}}};
    };
    const auto half = box(0, pixels_ / 2);
    canvas.area({half.data(), 4}, kInk);
    canvas.line(box(0, pixels_), kInk, 0.8);
    canvas.text({topLeft.x + pixels_ + 6, topLeft.y + kText - 3}, kText, 0, text_, kInk);
}

}  // namespace program
