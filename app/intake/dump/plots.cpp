#include <array>

#include "app/intake/dump/dump.h"
#include "app/intake/plots.h"
#include "host/cpp/call.h"
#include "host/qxbase.h"

namespace program {

namespace {

using qx::call;

void datasetLine(Dump& dump, const Dataset& dataset) {
    if (!dump.wants("dataset")) return;
    JsonLine(dump.output(), "dataset").field("kind", dataset.kind).field("name", dataset.name);
}

// One plot; element is its file's name in a map, null for a plot of its own.
void dumpOne(Dump& dump, const std::string& file, const std::string* element) {
    if (dump.wants("plot")) {
        qx::FixedText<QX_PLOT_TITLE> title;
        std::array<float, 4> bounds{};
        int32_t status = 0;
        call(pthdrr_, std::string_view(file), title, status);
        call(ptbndr_, std::string_view(file), bounds[0], bounds[1], bounds[2], bounds[3], status);
        JsonLine line(dump.output(), "plot");
        line.field("title", title.view()).field("bounds", std::span<const float>(bounds));
        if (element) line.field("element", *element);
    }
    int32_t plot = 0;
    int32_t status = 0;
    if (dump.wants("plotRecord")) call(ptopen_, plot, std::string_view(file), status);
    for (int32_t number = 1; plot != 0; ++number) {
        int32_t code = 0;
        std::array<float, 2> reals{};
        std::array<int32_t, 2> integers{};
        qx::FixedText<QX_PLOT_TEXT> text;
        call(ptread_, plot, code, reals, integers, text, status);
        if (status != 0) break;
        JsonLine line(dump.output(), "plotRecord");
        line.field("number", number).field("code", code);
        line.field("r", std::span<const float>(reals));
        line.field("i", std::span<const int32_t>(integers)).field("text", text.view());
        if (element) line.field("element", *element);
    }
    call(ptclos_, plot);
}

}  // namespace

void dumpPlot(Dump& dump, const Dataset& dataset) {
    datasetLine(dump, dataset);
    dumpOne(dump, dataset.path, nullptr);
}

void dumpMap(Dump& dump, const Dataset& dataset) {
    datasetLine(dump, dataset);
    const std::vector<std::string> elements = mapElements(dataset.path);
    if (dump.wants("map")) {
        JsonLine line(dump.output(), "map");
        line.field("elements", std::span<const std::string>(elements));
    }
    for (const std::string& element : elements) {
        dumpOne(dump, elementFile(dataset.path, element), &element);
    }
}

}  // namespace program
