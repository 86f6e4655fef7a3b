#include "datasets/symbol_sets.h"

#include "app/intake/dump/dump.h"

namespace program {

namespace {

using datasets::SetLayout;
using datasets::WordRecord;
using datasets::WordRun;

void symbolLine(Dump& dump, const WordRecord& record, const SetLayout& layout) {
    JsonLine line(dump.output(), "symbol");
    line.field("number", record.number).key("words").beginList();
    std::size_t index = 0;
    std::optional<std::string> name;
    for (const WordRun& run : layout.words) {
        if (run.kind == 'n') {
            name = record.name(index);
            index += datasets::kNameWords;
            continue;
        }
        for (int count = 0; count < run.count; ++count, ++index) {
            run.kind == 'r' ? line.value(record.real(index)) : line.value(record.words[index]);
        }
    }
    line.endList();
    if (name) line.field("name", *name);
}

}  // namespace

void dumpSymbolSet(Dump& dump, const Dataset& dataset) {
    dumpDatasetLine(dump, dataset);
    const SetLayout layout = datasets::layoutOfSet(dataset.path, dataset.kind);
    auto symbols = datasets::symbols(dataset.path, layout);
    if (symbols && dump.wants("symbolSet")) {
        JsonLine(dump.output(), "symbolSet")
            .field("recordBytes", layout.recordBytes)
            .field("recordCount", symbols.count());
    }
    if (!dump.wants("symbol")) return;
    for (const WordRecord& record : symbols) symbolLine(dump, record, layout);
}

void dumpFont(Dump& dump, const Dataset& dataset) {
    dumpDatasetLine(dump, dataset);
    auto records = datasets::fontRecords(datasets::fontFile(dataset.path));
    if (records && dump.wants("font")) {
        JsonLine(dump.output(), "font").field("recordCount", records.count());
    }
    if (!dump.wants("fontRecord")) return;
    for (const WordRecord& record : records) {
        JsonLine line(dump.output(), "fontRecord");
        line.field("number", record.number).key("reals").beginList();
        for (std::size_t each = 0; each < record.words.size(); ++each)
            line.value(record.real(each));
        line.endList();
    }
}

}  // namespace program
