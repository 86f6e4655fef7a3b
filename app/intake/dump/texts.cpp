#include "datasets/side_texts.h"

#include "app/intake/dump/texts.h"

namespace program {

using datasets::SideText;

void dumpText(Dump& dump, const char* className, datasets::Lines lines, std::string_view table) {
    if (!lines) return;
    JsonLine line(dump.output(), className);
    line.key("lines").beginList();
    for (const std::string& each : lines) line.value(each);
    line.endList();
    if (!table.empty()) line.field("table", table);
}

void dumpSideTexts(Dump& dump, const std::string& dataset) {
    constexpr std::pair<const char*, SideText> kTexts[] = {{"log", SideText::log},
                                                           {"projection", SideText::projection},
                                                           {"metadata", SideText::metadata}};
    for (const auto& [className, which] : kTexts) {
        if (dump.wants(className)) dumpText(dump, className, datasets::sideText(dataset, which));
    }
}

void dumpTextFile(Dump& dump, const Dataset& dataset) {
    dumpDatasetLine(dump, dataset);
    if (dump.wants("textFile")) dumpText(dump, "textFile", datasets::linesOf(dataset.path));
}

}  // namespace program
