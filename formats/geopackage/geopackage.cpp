#include "formats/geopackage/geopackage.h"

#include <array>
#include <charconv>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "formats/geopackage/database.h"
#include "formats/geopackage/geometry_blob.h"
#include "formats/geopackage/packed_tree.h"
#include "formats/geopackage/rows.h"
#include "formats/geopackage/schema.h"
#include "formats/geopackage/systems.h"
#include "formats/names.h"
#include "formats/output.h"

namespace formats::geopackage {

namespace {

// Now, or as the environment has it for outputs that are to be the same each time.
std::string timeOfChange() {
    std::time_t time = std::time(nullptr);
    if (const char* fixed = std::getenv("SOURCE_DATE_EPOCH")) {
        const std::string_view digits(fixed);
        std::from_chars(digits.data(), digits.data() + digits.size(), time);
    }
    std::tm fields{};
    std::array<char, 40> text{};
    if (!gmtime_r(&time, &fields) ||
        std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S.000Z", &fields) == 0) {
        return "1970-01-01T00:00:00.000Z";
    }
    return text.data();
}

std::string_view typeName(GeometryType type) {
    switch (type) {
        case GeometryType::kNone:
            break;
        case GeometryType::kPoint:
        case GeometryType::kPointZ:
            return "POINT";
        case GeometryType::kLineString:
        case GeometryType::kLineStringZ:
            return "LINESTRING";
        case GeometryType::kMultiLineString:
            return "MULTILINESTRING";
        case GeometryType::kPolygon:
        case GeometryType::kPolygonZ:
            return "POLYGON";
        case GeometryType::kMultiPolygon:
            return "MULTIPOLYGON";
    }
    return {};
}

std::string columnType(const Column& column) {
    switch (column.type) {
        case ColumnType::kInteger:
            if (column.width == 0 || column.width > 4) return "INTEGER";
            return column.width > 2 ? "MEDIUMINT" : "SMALLINT";
        case ColumnType::kReal:
            return column.width == 4 ? "FLOAT" : "DOUBLE";
        case ColumnType::kText:
            return column.width > 0 ? "TEXT(" + std::to_string(column.width) + ")" : "TEXT";
        case ColumnType::kDate:
            return "DATE";
    }
    return "BLOB";
}

// What the standard and SQLite keep for themselves is no name of a layer.
std::string layerName(std::string_view name) {
    std::string result(name.substr(0, name.find('\0')));
    if (result.empty()) return "layer";
    const std::string lower = folded(result);
    for (const std::string_view reserved : {"gpkg_", "rtree_", "sqlite_"}) {
        if (lower.starts_with(reserved)) return "layer_" + result;
    }
    return result;
}

// A text without a standard is known by its name, as a relative reference.
std::string reference(std::string_view name) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string result;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                           (c >= '0' && c <= '9') || c == '-' || c == '.' || c == '_' || c == '~';
        if (plain) {
            result += c;
        } else {
            result += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
        }
    }
    return result;
}

class GeoPackage : public Writer {
  public:
    GeoPackage(const std::string& path, const Options& options)
        : part_(path, Part::Kind::kFile, options.replace),
          database_(part_.path(), part_.target()),
          index_(options.spatialIndex),
          now_(timeOfChange()) {
        makeCore(database_);
        systems_.emplace(database_);
    }

    std::string begin(const Layer& layer) override;
    bool add(int64_t fid, const Geometry& geometry, std::span<const Value> values) override;
    void end() override;
    bool text(const Text& text) override;
    void finish() override;

  private:
    // What is known of the layer that is being written.
    struct Open {
        std::string name;
        std::string description;
        GeometryType geometry;
        int32_t system;
        Box extent;
        std::optional<Rows> rows;
        std::optional<PackedTree> tree;
    };

    void registerContents(const Open& layer);

    Part part_;
    Database database_;
    bool index_;
    std::string now_;
    std::optional<Systems> systems_;
    UniqueNames names_;
    std::optional<Open> layer_;
    int64_t texts_ = 0;
};

std::string GeoPackage::begin(const Layer& layer) {
    std::string name = names_.take(layerName(layer.name));
    const bool table = layer.geometry == GeometryType::kNone;
    std::string columns = "fid INTEGER PRIMARY KEY NOT NULL";
    if (!table) columns += ", geom " + std::string(typeName(layer.geometry));
    const std::vector<std::string> names = columnNames(layer.columns);
    for (std::size_t i = 0; i < names.size(); ++i) {
        columns += ", " + quoted(names[i]) + " " + columnType(layer.columns[i]);
    }
    database_.run("CREATE TABLE " + quoted(name) + " (" + columns + ")");

    Open& open = layer_.emplace();
    open.name = name;
    open.description = layer.description;
    open.geometry = layer.geometry;
    open.system = table ? 0 : systems_->idOf(layer.system);
    open.rows.emplace(database_, name, names.size() + (table ? 1 : 2));
    if (index_ && !table) open.tree.emplace(part_.path(), part_.target());
    return name;
}

bool GeoPackage::add(int64_t fid, const Geometry& geometry, std::span<const Value> values) {
    Open& layer = *layer_;
    Measured found{Outcome::kEmpty, {}};
    layer.rows->add(fid);
    if (layer.geometry != GeometryType::kNone) {
        found = measured(layer.geometry, geometry);
        if (found.outcome == Outcome::kMade) {
            layer.rows->addBlob([&](std::vector<std::byte>& bytes) {
                appendBlob(bytes, layer.geometry, layer.system, geometry, found.box);
            });
            layer.extent.add(found.box);
            if (layer.tree) layer.tree->add(fid, found.box);
        } else {
            layer.rows->add(Value{});
        }
    }
    for (const Value& value : values) layer.rows->add(value);
    return found.outcome != Outcome::kNotFinite;
}

void GeoPackage::end() {
    Open& layer = *layer_;
    layer.rows->end();
    layer.rows.reset();
    registerContents(layer);
    if (layer.tree) {
        const std::string index = "rtree_" + layer.name + "_geom";
        layer.tree->build(database_, index, layer.extent);
        makeIndexTriggers(database_, layer.name, index);
        announce(database_, kSpatialIndex, layer.name, "geom");
    }
    layer_.reset();
}

void GeoPackage::registerContents(const Open& layer) {
    const bool table = layer.geometry == GeometryType::kNone;
    Statement contents(database_,
                       "INSERT INTO gpkg_contents VALUES (?1, ?2, ?1, ?3, ?4, ?5, ?6, ?7, ?8, ?9)");
    contents.bind(1, layer.name);
    contents.bind(2, std::string_view(table ? "attributes" : "features"));
    contents.bind(3, layer.description);
    contents.bind(4, now_);
    if (!layer.extent.empty()) {
        contents.bind(5, layer.extent.minX);
        contents.bind(6, layer.extent.minY);
        contents.bind(7, layer.extent.maxX);
        contents.bind(8, layer.extent.maxY);
    }
    if (!table) contents.bind(9, int64_t{layer.system});
    contents.run();
    if (table) return;

    Statement column(database_, "INSERT INTO gpkg_geometry_columns VALUES (?, 'geom', ?, ?, ?, 0)");
    column.bind(1, layer.name);
    column.bind(2, typeName(layer.geometry));
    column.bind(3, int64_t{layer.system});
    column.bind(4, int64_t{hasZ(layer.geometry)});
    column.run();
}

bool GeoPackage::text(const Text& text) {
    if (texts_++ == 0) makeMetadataTables(database_);
    const std::string standard = text.standard.empty() ? reference(text.name) : text.standard;
    Statement metadata(database_, "INSERT INTO gpkg_metadata VALUES (?, 'dataset', ?, ?, ?)");
    metadata.bind(1, texts_);
    metadata.bind(2, standard);
    metadata.bind(3, text.mimeType);
    metadata.bind(4, text.content);
    metadata.run();

    Statement link(database_,
                   "INSERT INTO gpkg_metadata_reference VALUES (?, ?, NULL, NULL, ?, ?, NULL)");
    link.bind(1, std::string_view(text.layer.empty() ? "geopackage" : "table"));
    if (!text.layer.empty()) link.bind(2, text.layer);
    link.bind(3, now_);
    link.bind(4, texts_);
    link.run();
    return true;
}

void GeoPackage::finish() {
    database_.run("COMMIT");
    database_.close();
    part_.putInPlace();
}

}  // namespace

std::unique_ptr<Writer> Maker::make(const std::string& path, const Options& options) const {
    return std::make_unique<GeoPackage>(path, options);
}

}  // namespace formats::geopackage
