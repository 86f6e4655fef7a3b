// How large a map is: a bar of a round length below it.
#ifndef APP_INTAKE_DRAW_SCALE_BAR_H
#define APP_INTAKE_DRAW_SCALE_BAR_H

#include <string>

#include "app/intake/draw/canvas.h"

namespace program {

// What a dataset's coordinates are in: metres, or degrees, a unit; 0 where that is not known.
struct MapUnits {
    double perUnit = 0;
    bool degrees = false;
};
// By the projection text.
MapUnits unitsOf(const std::string& dataset);

class ScaleBar {
  public:
    static constexpr double kHeight = 30;

    // For a map of a width in pixels, and pixels a unit. There is none where the units are not
    // known or no round length can be told.
    ScaleBar(const MapUnits& units, double mapWidth, double scale);
    explicit operator bool() const { return pixels_ > 0; }
    double width() const;
    void draw(Canvas& canvas, Place topLeft) const;

  private:
    double pixels_ = 0;
    std::string text_;
};

}  // namespace program

#endif
