#include "formats/geojson/feature_text.h"

#include <cmath>
#include <utility>

#include "formats/geojson/json_text.h"
#include "formats/names.h"
#include "formats/numbers.h"

namespace formats::geojson {

namespace {

// Appends a list in brackets.
template <class List, class Append>
void appendList(std::string& text, const List& list, Append append) {
    char separator = '[';
    for (const auto& each : list) {
        text += separator;
        append(each);
        separator = ',';
    }
    if (separator == '[') text += '[';
    text += ']';
}

}  // namespace

FeatureText::FeatureText(const Layer& layer, Transform transform, const std::string& layerProperty,
                         bool boundingBoxes)
    : type_(layer.geometry),
      columns_(layer.columns),
      exact_(!transform),
      boundingBoxes_(boundingBoxes),
      places_(layer, std::move(transform)) {
    const bool named = !layerProperty.empty();
    if (named) {
        layerProperty_ = "\"layer\":";
        appendQuoted(layerProperty_, layerProperty);
    }
    for (const std::string& name : columnNames(columns_, named ? "layer" : "")) {
        std::string& key = keys_.emplace_back();
        if (named || keys_.size() > 1) key += ',';
        appendQuoted(key, name);
        key += ':';
    }
}

bool FeatureText::append(std::string& text, int64_t fid, const Geometry& geometry,
                         std::span<const Value> values) {
    text += R"({"type":"Feature","id":)";
    appendInteger(text, fid);
    const bool some = type_ != GeometryType::kNone && !geometry.empty();
    const bool kept = !some || places_.take(geometry);
    if (some && kept && boundingBoxes_) {
        text += ",\"bbox\":";
        appendList(text, places_.bounds(), [&](double bound) { appendNumber(text, bound); });
    }
    text += ",\"geometry\":";
    if (some && kept) {
        appendGeometry(text);
    } else {
        text += "null";
    }
    text += ",\"properties\":{";
    text += layerProperty_;
    for (std::size_t i = 0; i < keys_.size(); ++i) {
        text += keys_[i];
        appendValue(text, values[i], columns_[i]);
    }
    text += "}}";
    return kept;
}

void FeatureText::appendGeometry(std::string& text) const {
    const auto paths = places_.paths();
    const auto polygons = places_.polygons();
    const auto path = [&](const Path& each) { appendPath(text, each); };
    const auto polygon = [&](const Polygon& each) { appendPolygon(text, each); };
    switch (type_) {
        case GeometryType::kNone:
            break;
        case GeometryType::kPoint:
        case GeometryType::kPointZ:
            text += R"({"type":"Point","coordinates":)";
            appendVertex(text, paths.front().front());
            break;
        case GeometryType::kLineString:
        case GeometryType::kLineStringZ:
        case GeometryType::kMultiLineString:
            // A line that was cut is several.
            if (paths.size() == 1 && type_ != GeometryType::kMultiLineString) {
                text += R"({"type":"LineString","coordinates":)";
                appendPath(text, paths.front());
            } else {
                text += R"({"type":"MultiLineString","coordinates":)";
                appendList(text, paths, path);
            }
            break;
        case GeometryType::kPolygon:
        case GeometryType::kPolygonZ:
        case GeometryType::kMultiPolygon:
            if (polygons.size() == 1 && type_ != GeometryType::kMultiPolygon) {
                text += R"({"type":"Polygon","coordinates":)";
                appendPolygon(text, polygons.front());
            } else {
                text += R"({"type":"MultiPolygon","coordinates":)";
                appendList(text, polygons, polygon);
            }
            break;
    }
    text += '}';
}

void FeatureText::appendNumber(std::string& text, double value) const {
    if (exact_) {
        appendShortest(text, value);
    } else {
        appendSevenDecimals(text, value);
    }
}

void FeatureText::appendVertex(std::string& text, const Vertex& vertex) const {
    text += '[';
    appendNumber(text, vertex.x);
    text += ',';
    appendNumber(text, vertex.y);
    if (hasZ(type_)) {
        text += ',';
        appendShortest(text, vertex.z);
    }
    text += ']';
}

void FeatureText::appendPath(std::string& text, const Path& path) const {
    appendList(text, path, [&](const Vertex& vertex) { appendVertex(text, vertex); });
}

void FeatureText::appendPolygon(std::string& text, const Polygon& polygon) const {
    appendList(text, polygon, [&](const Path& ring) { appendPath(text, ring); });
}

void FeatureText::appendValue(std::string& text, const Value& value, const Column& column) const {
    if (const auto* integer = std::get_if<int64_t>(&value)) {
        appendInteger(text, *integer);
    } else if (const auto* real = std::get_if<double>(&value); real && std::isfinite(*real)) {
        appendReal(text, *real, column);
    } else if (const auto* string = std::get_if<std::string_view>(&value)) {
        appendQuoted(text, *string);
    } else if (const auto* date = std::get_if<Date>(&value)) {
        text += '"';
        appendDate(text, *date);
        text += '"';
    } else {
        text += "null";
    }
}

}  // namespace formats::geojson
