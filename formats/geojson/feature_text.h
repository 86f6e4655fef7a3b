// One feature as JSON text.
#ifndef FORMATS_GEOJSON_FEATURE_TEXT_H
#define FORMATS_GEOJSON_FEATURE_TEXT_H

#include <span>
#include <string>
#include <vector>

#include "formats/geojson/places.h"
#include "formats/writer.h"

namespace formats::geojson {

class FeatureText {
  public:
    // Features of a layer; its name is the property "layer" of each unless that is empty.
    FeatureText(const Layer& layer, Transform transform, const std::string& layerProperty,
                bool boundingBoxes);

    // False if the geometry was left out.
    bool append(std::string& text, int64_t fid, const Geometry& geometry,
                std::span<const Value> values);

  private:
    void appendGeometry(std::string& text) const;
    void appendNumber(std::string& text, double value) const;
    void appendVertex(std::string& text, const Vertex& vertex) const;
    void appendPath(std::string& text, const Path& path) const;
    void appendPolygon(std::string& text, const Polygon& polygon) const;
    void appendValue(std::string& text, const Value& value, const Column& column) const;

    GeometryType type_;
    std::vector<Column> columns_;
    std::vector<std::string> keys_;  // ,"NAME":
    std::string layerProperty_;      // "layer":"NAME"
    bool exact_;
    bool boundingBoxes_;
    Places places_;
};

}  // namespace formats::geojson

#endif
