// What every writer takes: layers of features, rasters and texts, one after the other.
//
//   writer->begin(layer);
//   while (...) writer->add(fid, geometry, values);
//   writer->end();
//   writer->text(...);
//   writer->finish();
//
// Nothing is seen under the user's name before finish() has returned: the output grows in a file or
// folder of our own beside it, which goes away with a writer that did not finish. What fails (a
// full disk, say) is told once, as a std::runtime_error that names the output and the system's
// reason; nothing can be written after it.
#ifndef FORMATS_WRITER_H
#define FORMATS_WRITER_H

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "crs/reference_system.h"
#include "formats/raster.h"

namespace formats {

// A layer of multi-something takes single ones too; its features have any number of parts.
enum class GeometryType {
    kNone,  // a table
    kPoint,
    kPointZ,
    kLineString,
    kLineStringZ,
    kMultiLineString,
    kPolygon,
    kPolygonZ,
    kMultiPolygon,
};

constexpr bool hasZ(GeometryType type) {
    return type == GeometryType::kPointZ || type == GeometryType::kLineStringZ ||
           type == GeometryType::kPolygonZ;
}

struct Date {
    int32_t year = 0;
    int32_t month = 0;  // from 1
    int32_t day = 0;    // from 1
};

enum class ColumnType { kInteger, kReal, kText, kDate };

struct Column {
    std::string name;  // as it is stored; the writer makes it unique and quotes it
    ColumnType type = ColumnType::kText;
    // Texts: the most characters, 0 if unknown. Numbers: bytes, 0 for the widest. A real of 4 bytes
    // is printed with as many digits as tell one float from another.
    int32_t width = 0;
};

// Texts are UTF-8 and live as long as the call. Nothing (monostate) is a missing value.
using Value = std::variant<std::monostate, int64_t, double, std::string_view, Date>;

struct Layer {
    std::string name;
    GeometryType geometry = GeometryType::kNone;
    std::vector<Column> columns;
    crs::ReferenceSystem system;
    std::string description;
};

// A view of coordinates that the caller owns, valid during the call. Each part is the vertices of a
// point (one vertex), a line or a ring: x, y or x, y, z of each, as the layer's type says. A ring
// ends where it begins. The first ring of a polygon is its outer one, and those that follow are its
// holes.
struct Geometry {
    std::span<const std::span<const double>> parts;
    // How many of the parts belong to each polygon of a multipolygon. Empty: all to one.
    std::span<const uint32_t> ringCounts;

    // No vertices at all: missing.
    bool empty() const {
        for (const std::span<const double> part : parts) {
            if (!part.empty()) return false;
        }
        return true;
    }
};

// A text that belongs to the whole output or to one of its layers.
struct Text {
    std::string name;                     // what it is: "log", "projection"
    std::string mimeType = "text/plain";  // of its content
    std::string standard;                 // URI of the standard it follows, if any
    std::string layer;                    // as begin() told it; empty for the whole output
    std::string_view content;             // UTF-8
};

class Writer {
  public:
    virtual ~Writer() = default;

    // Begins a layer, which may stay empty. The result is its name in the output, made unique and
    // fit for the format.
    virtual std::string begin(const Layer& layer) = 0;
    // Takes a feature or, without a geometry, a row. The fid is a key within the layer, from 1;
    // ascending ones are written fastest. There is a value for each column, of its type or nothing.
    // A geometry without vertices is a missing one. False if the geometry was left out, with all
    // else kept, because a coordinate is not finite or cannot be transformed.
    virtual bool add(int64_t fid, const Geometry& geometry, std::span<const Value> values) = 0;
    // Ends the layer.
    virtual void end() = 0;
    // Keeps a text, between layers or after the last one. False if the format has no place for it.
    virtual bool text(const Text& text) = 0;
    // Keeps a raster, between layers, and gives its name in the output. Nothing if the format has
    // no place for it, where nothing is read.
    virtual std::optional<std::string> raster(const Raster&) { return {}; }
    // Completes the output and puts it under its name.
    virtual void finish() = 0;
};

// Turns pairs x, y in place. A pair that cannot be turned becomes infinite.
using Transform = std::function<void(std::span<double> pairs)>;

struct Options {
    // What is there already under the output's name is replaced, not an error. Of folders only one
    // that holds nothing but files of the same format.
    bool replace = false;
    // A folder with a file for each layer, of formats whose files can be that.
    bool folder = false;

    // GeoPackage: whether layers get a spatial index.
    bool spatialIndex = true;

    // GeoJSON: to longitude and latitude on WGS 84, for a reference system; an empty function where
    // there is no way. Without a way begin() fails and says so, unless coordinates are taken as
    // they are.
    std::function<Transform(const crs::ReferenceSystem&)> toWgs84 = {};
    bool asIs = false;
    // GeoJSON: features carry their bounding box.
    bool boundingBoxes = false;

    RasterOptions rasters = {};

    // CSV: geometries as well-known text in a last column.
    bool wellKnownText = false;

    // PLY: numbers as text.
    bool ascii = false;

    // PLY and glTF: called now and then while a surface is written, and may throw.
    std::function<void()> look = {};
};

// Makes writers of one format. What a module of a format exports is a constant one of these.
class WriterMaker {
  public:
    virtual ~WriterMaker() = default;
    // Throws a std::runtime_error if the output cannot be begun, or is there and not to be
    // replaced.
    virtual std::unique_ptr<Writer> make(const std::string& path, const Options& options) const = 0;
};

}  // namespace formats

#endif
