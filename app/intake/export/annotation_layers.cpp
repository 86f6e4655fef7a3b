// The layers of the texts that a coverage has placed on it.
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

#include "app/intake/export/layers.h"
#include "app/intake/utf8.h"
#include "datasets/coverage.h"
#include "datasets/features.h"

namespace program {

namespace {

using datasets::Annotation;
using datasets::Annotations;
using datasets::Point;
using formats::GeometryType;
using formats::Value;

// Of the text's first stretch, counter-clockwise from east; nothing for a single point.
Value angleOf(std::span<const Point> points) {
    for (std::size_t at = 1; at < points.size(); ++at) {
        const double east = points[at].x - points[0].x;
        const double north = points[at].y - points[0].y;
        if (east != 0 || north != 0) return std::atan2(north, east) * 180 / std::numbers::pi;
    }
    return {};
}

// A table of lines: its numbers up to the last that is not 0.
std::string numbersOf(std::span<const int16_t, QX_ANNO_LINES> table) {
    std::string text, behind;
    for (const int16_t number : table) {
        behind += (behind.empty() && text.empty() ? "" : " ") + std::to_string(number);
        if (number != 0) text += std::exchange(behind, {});
    }
    return text;
}

// What an annotation says that is seldom asked for, kept all the same.
const formats::Column kFurtherColumns[] = {
    {"end_x", formats::ColumnType::kReal, 8},
    {"end_y", formats::ColumnType::kReal, 8},
    {"leader_count", formats::ColumnType::kInteger, 4},
    {"line_starts", formats::ColumnType::kText, 0},
    {"line_table_b", formats::ColumnType::kText, 0},
    {"extra_value1", formats::ColumnType::kReal, 8},
    {"extra_value2", formats::ColumnType::kReal, 8},
    {"extra_word1", formats::ColumnType::kInteger, 4},
    {"extra_word2", formats::ColumnType::kInteger, 4},
};

// The texts are valid until the next call.
void appendFurther(const Annotation& each, std::array<std::string, 2>& rooms,
                   std::vector<Value>& values) {
    rooms = {numbersOf(each.lineStart), numbersOf(each.lineTableB)};
    const bool ends = each.points.size() > 1;
    values.push_back(ends ? Value(each.points.back().x) : Value());
    values.push_back(ends ? Value(each.points.back().y) : Value());
    values.insert(values.end(),
                  {int64_t{each.leaderCount}, std::string_view(rooms[0]),
                   std::string_view(rooms[1]), each.extraValues[0], each.extraValues[1],
                   int64_t{each.extraWord1}, int64_t{each.extraWord2}});
}

bool allUtf8(Annotations annotations) {
    for (const Annotation& each : annotations) {
        if (!isUtf8(each.characters())) return false;
    }
    return true;
}

struct Part {
    const char* name;
    const char* title;
    // The line of an annotation that is in this layer; empty for none.
    std::span<const Point> (*lineOf)(const Annotation& annotation);
};

std::span<const Point> placementOf(const Annotation& annotation) {
    return annotation.points.size() > 2 ? annotation.points : std::span<const Point>();
}

std::span<const Point> leaderOf(const Annotation& annotation) {
    const int64_t count =
        std::min<int64_t>(std::abs(int64_t{annotation.leaderCount}), QX_ANNO_LEADERS);
    return {reinterpret_cast<const Point*>(annotation.leaderPoints),
            count > 1 ? static_cast<std::size_t>(count) : 0};
}

constexpr Part kParts[] = {
    {"annotation_lines", "Lines along which annotation is placed", placementOf},
    {"annotation_leaders", "Leader lines of annotation", leaderOf},
};

template <class Take>
void eachOf(Target& target, const std::string& coverage, std::string_view subclass, Take take) {
    eachWithin(target, datasets::annotations(coverage, subclass), coverage,
               datasets::Indexed::annotation, subclass, take);
}

void exportLines(Target& target, const std::string& coverage, std::string_view subclass,
                 const Part& part) {
    const std::string name = nameWith(part.name, subclass);
    bool any = false;
    for (const Annotation& each : datasets::annotations(coverage, subclass)) {
        any = any || !part.lineOf(each).empty();
    }
    if (!any || !target.wants(name)) return;
    target.begin(layerOf(name, GeometryType::kLineString,
                         std::string(part.title) + " of " + nameOf(coverage), {"number"}));
    eachOf(target, coverage, subclass, [&](const Annotation& annotation, int32_t record) {
        const std::span<const Point> line = part.lineOf(annotation);
        const Value number[] = {int64_t{record}};
        if (!line.empty()) target.addLine(record, line, number);
    });
    target.end();
}

void exportSubclass(Target& target, const std::string& coverage, std::string_view subclass) {
    const std::string name = nameWith("annotation", subclass);
    if (target.wants(name)) {
        TableColumns table = columnsOf(target, coverage, "TAT" + std::string(subclass));
        formats::Layer layer = layerOf(name, GeometryType::kPoint,
                                       "Annotation of " + nameOf(coverage), {"number", "user_id"});
        layer.columns.push_back({"text", formats::ColumnType::kText, QX_ANNO_CHARACTERS});
        layer.columns.push_back({"height", formats::ColumnType::kReal, 8});
        layer.columns.push_back({"angle", formats::ColumnType::kReal, 8});
        layer.columns.push_back({"symbol", formats::ColumnType::kInteger, 4});
        layer.columns.push_back({"symbol_size", formats::ColumnType::kReal, 4});
        layer.columns.push_back({"level", formats::ColumnType::kInteger, 4});
        layer.columns.push_back({"line_count", formats::ColumnType::kInteger, 4});
        layer.columns.insert(layer.columns.end(), std::begin(kFurtherColumns),
                             std::end(kFurtherColumns));
        table.define(layer.columns);
        const bool utf8 = allUtf8(datasets::annotations(coverage, subclass));
        target.begin(layer);
        std::string room;
        std::array<std::string, 2> further;
        std::vector<Value> values;
        eachOf(target, coverage, subclass, [&](const Annotation& each, int32_t record) {
            values = {int64_t{record},
                      int64_t{each.userId},
                      target.decoder().decode(each.characters(), utf8, room),
                      each.textHeight,
                      angleOf(each.points),
                      int64_t{each.textSymbol},
                      double{each.symbolSize},
                      int64_t{each.groupCode},
                      int64_t{each.lineCount}};
            appendFurther(each, further, values);
            table.append(record, target.decoder(), values);
            target.addLine(record, each.points.first(std::min<std::size_t>(each.points.size(), 1)),
                           values);
        });
        target.end();
    }
    for (const Part& part : kParts) exportLines(target, coverage, subclass, part);
}

}  // namespace

void exportAnnotation(Target& target, const std::string& coverage) {
    for (const std::string& subclass :
         datasets::subclasses(coverage, datasets::Subclassed::annotation)) {
        exportSubclass(target, coverage, subclass);
    }
}

}  // namespace program
