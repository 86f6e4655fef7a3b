// The coordinates of a feature as GeoJSON has them.
#ifndef FORMATS_GEOJSON_PLACES_H
#define FORMATS_GEOJSON_PLACES_H

#include <span>
#include <vector>

#include "formats/geojson/antimeridian.h"
#include "formats/writer.h"

namespace formats::geojson {

class Places {
  public:
    // Without a transform coordinates stay as they are, and nothing is cut.
    Places(const Layer& layer, Transform transform);

    // False if a coordinate is not finite, or is no longitude and latitude.
    //
    // What a step from one vertex to the next means depends on the layer's reference system. Where
    // it is geographic, coordinates are taken as a plane: -180 to 180 is once around the world, and
    // 170 to 190 crosses the antimeridian. Where it is projected, longitudes come out of the
    // transform between -180 and 180, and the shorter way from one to the next is taken.
    bool take(const Geometry& geometry);

    // Points and lines: what take() made of the last geometry.
    std::span<const Path> paths() const { return paths_; }
    // Polygons.
    std::span<const Polygon> polygons() const { return polygons_; }
    // West, south and, with z, the lowest; then east, north and the highest. West is the greater
    // where the antimeridian lies between.
    std::vector<double> bounds() const;

  private:
    bool read(const Geometry& geometry);
    bool toLongitudes();
    bool makePolygons(std::span<const uint32_t> ringCounts);
    bool makePolygon(Polygon polygon);
    void takeCut(std::vector<Polygon> pieces);

    GeometryType type_;
    bool projected_;
    double degreesPerUnit_;
    Transform transform_;
    std::vector<Path> paths_;
    std::vector<Polygon> polygons_;
    std::vector<double> pairs_;
    Range x_;  // running on beyond 180
    Range y_;
    Range z_;
};

}  // namespace formats::geojson

#endif
