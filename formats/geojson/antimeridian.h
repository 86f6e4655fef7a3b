// Longitudes and latitudes, cut where they would cross the meridian of 180 degrees: whatever is
// given, all that comes out lies between -180 and 180.
#ifndef FORMATS_GEOJSON_ANTIMERIDIAN_H
#define FORMATS_GEOJSON_ANTIMERIDIAN_H

#include <limits>
#include <vector>

namespace formats::geojson {

struct Vertex {
    double x = 0;
    double y = 0;
    double z = 0;

    friend bool operator==(const Vertex&, const Vertex&) = default;
};

// The vertices of a line, or of a ring that ends where it begins.
using Path = std::vector<Vertex>;
// The outer ring and the holes.
using Polygon = std::vector<Path>;

struct Range {
    double least = std::numeric_limits<double>::infinity();
    double most = -std::numeric_limits<double>::infinity();

    // Whether all of it is between -180 and 180 already.
    bool home() const { return least >= -180 && most <= 180; }
};
Range longitudes(const Path& path);

// The same place between -180 and 180.
double normalized(double longitude);

// Turns longitudes by whole turns, so that no step is wider than half a turn: a line that crosses
// goes on beyond 180.
void unroll(Path& path);

// The signed area, positive for a ring that runs counter-clockwise.
double area(const Path& ring);

// Whether a ring goes once around a pole: unroll() has left it open.
bool windsAround(const Path& ring);
// Closes an outer ring that does, with the meridian of 180 degrees as a side: around the pole, or
// around a hole that winds around it too. The pole is that on the left of the outer ring, which has
// to run counter-clockwise around what it encloses, and the hole clockwise.
void closeAroundPole(Path& outer, const Path* hole);

// The pieces of a line whose longitudes run on beyond 180.
std::vector<Path> cutLine(const Path& line);

// The pieces of a polygon whose longitudes run on beyond 180. Outer rings run counter-clockwise and
// holes clockwise, in what is given and what comes out.
std::vector<Polygon> cutPolygon(Polygon polygon);

}  // namespace formats::geojson

#endif
