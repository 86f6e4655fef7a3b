#include "datasets/plots.h"

#include "app/intake/dump/dump.h"

namespace program {

namespace {

// One plot; element is its file's name in a map, null for a plot of its own.
void dumpOne(Dump& dump, const std::string& file, const std::string* element) {
    if (dump.wants("plot")) {
        const datasets::PlotHead head = datasets::plotHead(file);
        JsonLine line(dump.output(), "plot");
        line.field("title", head.title.view());
        line.field("bounds", std::span<const float>(head.bounds));
        if (element) line.field("element", *element);
    }
    if (!dump.wants("plotRecord")) return;
    int32_t number = 0;
    for (const datasets::PlotRecord& record : datasets::plotRecords(file)) {
        JsonLine line(dump.output(), "plotRecord");
        line.field("number", ++number).field("code", record.code);
        line.field("r", std::span<const float>(record.reals));
        line.field("i", std::span<const int32_t>(record.integers));
        line.field("text", record.text.view());
        if (element) line.field("element", *element);
    }
}

}  // namespace

void dumpPlot(Dump& dump, const Dataset& dataset) {
    dumpDatasetLine(dump, dataset);
    dumpOne(dump, dataset.path, nullptr);
}

void dumpMap(Dump& dump, const Dataset& dataset) {
    dumpDatasetLine(dump, dataset);
    const std::vector<std::string> elements = datasets::mapElements(dataset.path);
    if (dump.wants("map")) {
        JsonLine line(dump.output(), "map");
        line.field("elements", std::span<const std::string>(elements));
    }
    for (const std::string& element : elements) {
        dumpOne(dump, datasets::elementFile(dataset.path, element), &element);
    }
}

}  // namespace program
