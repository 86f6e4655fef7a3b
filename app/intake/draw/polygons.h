// The polygons of a coverage, as its exports make them.
#ifndef APP_INTAKE_DRAW_POLYGONS_H
#define APP_INTAKE_DRAW_POLYGONS_H

#include <cstdint>
#include <functional>
#include <string>

#include "topology/shape.h"

namespace program {

bool hasPolygons(const std::string& coverage);

// Calls take(number, shape) for each but the one that lies around all others. A file of lists that
// name the same arcs over and over is not followed to its end.
void eachPolygon(const std::string& coverage,
                 const std::function<void(int32_t, const topology::Shape&)>& take);

}  // namespace program

#endif
