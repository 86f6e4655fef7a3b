#include "app/intake/dump/dump.h"
#include "app/intake/dump/features.h"
#include "app/intake/dump/side_files.h"
#include "app/intake/dump/tables.h"
#include "host/cpp/call.h"
#include "host/qxfeat.h"

namespace program {

namespace {

constexpr int32_t kDoubleType = 2;

// One line a feature file; the counts of the dataset line, and the records, in this order.
struct FeatureClass {
    const char* className;
    void (*counts)(const Dataset& dataset, JsonLine& line);
    void (*records)(Dump& dump, const Dataset& dataset);
};

constexpr FeatureClass kFeatures[] = {
    {"arc", countArcs, dumpArcs},
    {"label", countLabels, dumpLabels},
    {"centroid", countCentroids, dumpCentroids},
    {"polygon", countPolygons, dumpPolygons},
    {"tolerance", countTolerances, dumpTolerances},
    {"annotation", countAnnotation, dumpAnnotation},
    {"link", countLinks, dumpLinks},
    {"addressText", countAddressTexts, dumpAddressTexts},
    {"addressIntegers", countAddressIntegers, dumpAddressIntegers},
    {"regionPair", countRegionPairs, dumpRegionPairs},
    {"region", countRegions, dumpRegions},
};

}  // namespace

void dumpCoverage(Dump& dump, const Dataset& dataset) {
    if (dump.wants("dataset")) {
        int32_t type = 0;
        qx::call(ctype_, std::string_view(dataset.path), type);
        JsonLine line(dump.output(), "dataset");
        line.field("kind", dataset.kind).field("name", dataset.name);
        line.field("precision", type == kDoubleType ? "double" : "single");
        line.key("counts").beginObject();
        for (const FeatureClass& each : kFeatures) each.counts(dataset, line);
        line.endObject();
    }
    for (const FeatureClass& each : kFeatures) {
        if (dump.wants(each.className)) each.records(dump, dataset);
    }
    dumpSideTexts(dump, dataset.path);
    dumpIndexes(dump, dataset);
    dumpTables(dump, dataset.path);
}

}  // namespace program
