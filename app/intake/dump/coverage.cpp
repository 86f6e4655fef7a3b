#include "datasets/coverage.h"

#include "app/intake/dump/dump.h"
#include "datasets/features.h"
#include "datasets/small_tables.h"

namespace program {

namespace {

using namespace datasets;

// What a record's line says behind its class and, where there is one, its subclass.
void write(JsonLine& line, const Arc& arc) {
    line.field("number", arc.number).field("userId", arc.userId);
    line.field("fromNode", arc.fromNode).field("toNode", arc.toNode);
    line.field("leftPolygon", arc.leftPolygon).field("rightPolygon", arc.rightPolygon);
    line.key("vertices").pairs(coordinates(arc.vertices));
}

void write(JsonLine& line, const Label& label) {
    line.field("number", label.number).field("userId", label.userId);
    line.field("polygon", label.polygon).field("x", label.place.x).field("y", label.place.y);
    line.field("box", std::span<const double>(label.box));
}

void write(JsonLine& line, const Centroid& centroid) {
    line.field("number", centroid.number);
    line.field("x", centroid.place.x).field("y", centroid.place.y).field("labels", centroid.labels);
}

void writePolygon(JsonLine& line, const Polygon& polygon, bool counted) {
    line.field("number", polygon.number).field("box", std::span<const double>(polygon.box));
    if (counted) line.field("arcCount", polygon.arcCount);
    line.key("arcs").beginList();
    for (const RingArc& each : polygon.arcs) {
        line.beginList().value(each.arc).value(each.node).value(each.polygon).endList();
    }
    line.endList();
}

void write(JsonLine& line, const Tolerance& tolerance) {
    line.field("row", tolerance.row).field("column1", tolerance.column1);
    line.field("column2", tolerance.column2).field("value", tolerance.value);
}

void write(JsonLine& line, const Annotation& anno) {
    line.field("number", anno.number);
    line.field("userId", anno.userId).field("groupCode", anno.groupCode);
    line.field("symbolSize", anno.symbolSize).field("textSymbol", anno.textSymbol);
    line.field("pointCount", anno.pointCount).field("lineCount", anno.lineCount);
    line.field("textLength", anno.textLength).field("leaderCount", anno.leaderCount);
    line.field("lineStart", std::span<const int16_t>(anno.lineStart));
    line.field("lineTableB", std::span<const int16_t>(anno.lineTableB));
    line.field("textHeight", anno.textHeight);
    line.field("extraValues", std::span<const double>(anno.extraValues));
    line.field("text", std::string_view(anno.text, sizeof anno.text));
    line.key("leaderPoints").pairs({anno.leaderPoints[0], 2 * QX_ANNO_LEADERS});
    line.field("extraWord1", anno.extraWord1).field("extraWord2", anno.extraWord2);
    line.key("points").pairs(coordinates(anno.points));
}

void write(JsonLine& line, const Link& link) {
    line.field("number", link.number);
    line.field("from", coordinates({&link.from, 1})).field("to", coordinates({&link.to, 1}));
}

void write(JsonLine& line, const AddressText& text) {
    line.field("number", text.number).field("text", text.text).field("value", text.value);
}

void write(JsonLine& line, const AddressIntegers& integers) {
    line.field("number", integers.number).key("entries").beginList();
    for (const auto& entry : integers.entries) line.value(std::span<const int32_t>(entry));
    line.endList();
}

void write(JsonLine& line, const RegionPair& pair) {
    line.field("number", pair.number).field("pair", std::span<const int32_t>(pair.pair));
}

// A feature file: its entry in the counts of the dataset line, where the file exists, and its
// records.
struct FeatureClass {
    const char* className;
    const char* countKey;
    void (*count)(JsonLine& line, const char* key, const std::string& coverage);
    void (*records)(Dump& dump, const char* className, const std::string& coverage);
};

constexpr auto kWrite = [](JsonLine& line, const auto& element) { write(line, element); };

// A file that a coverage has once: open(coverage) is its range.
template <auto open, auto write = kWrite>
constexpr FeatureClass single(const char* className, const char* countKey) {
    return {className, countKey,
            [](JsonLine& line, const char* key, const std::string& coverage) {
                if (const auto features = open(coverage)) line.field(key, features.count());
            },
            [](Dump& dump, const char* name, const std::string& coverage) {
                for (const auto& each : open(coverage)) {
                    JsonLine line(dump.output(), name);
                    write(line, each);
                }
            }};
}

// Files of subclasses: open(coverage, subclass).
template <auto open, Subclassed files, auto write = kWrite>
constexpr FeatureClass parted(const char* className) {
    return {className, className,
            [](JsonLine& line, const char* key, const std::string& coverage) {
                for (const std::string& name : subclasses(coverage, files)) {
                    const auto features = open(coverage, name);
                    if (features) line.field(key + ("/" + name), features.count());
                }
            },
            [](Dump& dump, const char* className, const std::string& coverage) {
                for (const std::string& name : subclasses(coverage, files)) {
                    for (const auto& each : open(coverage, name)) {
                        JsonLine line(dump.output(), className);
                        line.field("subclass", name);
                        write(line, each);
                    }
                }
            }};
}

template <PolygonSource source>
constexpr FeatureClass polygonFile(const char* countKey) {
    return single<[](std::string_view coverage) { return polygons(coverage, source); },
                  [](JsonLine& line, const Polygon& polygon) {
                      writePolygon(line, polygon, true);
                      line.field("source", source == PolygonSource::arcs ? "PAL" : "PFF");
                  }>("polygon", countKey);
}

// One line a feature file; the counts of the dataset line, and the records, in this order.
constexpr FeatureClass kFeatures[] = {
    single<arcs>("arc", "arc"),
    single<labels>("label", "label"),
    single<centroids>("centroid", "centroid"),
    polygonFile<PolygonSource::arcs>("polygon/PAL"),
    polygonFile<PolygonSource::boxes>("polygon/PFF"),
    single<tolerances>("tolerance", "tolerance"),
    parted<annotations, Subclassed::annotation>("annotation"),
    single<links>("link", "link"),
    single<addressTexts>("addressText", "addressText"),
    single<addressIntegers>("addressIntegers", "addressIntegers"),
    parted<regionPairs, Subclassed::regionPairs>("regionPair"),
    parted<regions, Subclassed::regions,
           [](JsonLine& line, const Polygon& region) { writePolygon(line, region, false); }>(
        "region"),
};

}  // namespace

void dumpCoverage(Dump& dump, const Dataset& dataset) {
    if (dump.wants("dataset")) {
        JsonLine line(dump.output(), "dataset");
        line.field("kind", dataset.kind).field("name", dataset.name);
        const bool twofold = precisionOf(dataset.path) == Precision::twofold;
        line.field("precision", twofold ? "double" : "single").key("counts").beginObject();
        for (const FeatureClass& each : kFeatures) each.count(line, each.countKey, dataset.path);
        line.endObject();
    }
    for (const FeatureClass& each : kFeatures) {
        if (dump.wants(each.className)) each.records(dump, each.className, dataset.path);
    }
    dumpSideTexts(dump, dataset.path);
    dumpIndexes(dump, dataset.path);
    dumpTables(dump, dataset.path);
}

}  // namespace program
