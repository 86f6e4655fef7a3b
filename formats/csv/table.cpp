#include "formats/csv/table.h"

#include "formats/csv/well_known_text.h"
#include "formats/names.h"
#include "formats/numbers.h"

namespace formats::csv {

namespace {

void appendField(std::string& text, std::string_view field) {
    if (!field.empty() && field.find_first_of(",\"\r\n") == std::string_view::npos &&
        field.front() != ' ' && field.back() != ' ') {
        text += field;
        return;
    }
    text += '"';
    for (const char c : field) {
        if (c == '"') text += c;
        text += c;
    }
    text += '"';
}

void appendValue(std::string& text, const Value& value, const Column& column) {
    if (const auto* integer = std::get_if<int64_t>(&value)) {
        appendInteger(text, *integer);
    } else if (const auto* real = std::get_if<double>(&value)) {
        appendReal(text, *real, column);
    } else if (const auto* field = std::get_if<std::string_view>(&value)) {
        appendField(text, *field);
    } else if (const auto* date = std::get_if<Date>(&value)) {
        appendDate(text, *date);
    }
}

}  // namespace

Table::Table(const std::string& path, const std::string& target, const Layer& layer,
             bool wellKnownText)
    : file_(path, target),
      columns_(layer.columns),
      geometry_(wellKnownText ? layer.geometry : GeometryType::kNone) {
    std::string& text = file_.text();
    text += "fid";
    for (const std::string& name : columnNames(columns_)) {
        text += ',';
        appendField(text, name);
    }
    if (geometry_ != GeometryType::kNone) text += ",geom";
    text += "\r\n";
}

bool Table::add(int64_t fid, const Geometry& geometry, std::span<const Value> values) {
    std::string& text = file_.text();
    appendInteger(text, fid);
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        text += ',';
        appendValue(text, values[i], columns_[i]);
    }
    bool kept = true;
    if (geometry_ != GeometryType::kNone) {
        text += ',';
        if (!geometry.empty()) {
            kept = isFinite(geometry);
            if (kept) appendQuotedWellKnownText(text, geometry_, geometry);
        }
    }
    text += "\r\n";
    file_.written();
    return kept;
}

}  // namespace formats::csv
