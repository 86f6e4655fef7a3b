#include "datasets/indexes.h"

#include "app/intake/dump/dump.h"

namespace program {

namespace {

using datasets::Indexed;

struct IndexKind {
    const char* name;
    Indexed features;
};

constexpr IndexKind kKinds[] = {
    {"POINTS", Indexed::points},     {"ARCS", Indexed::arcs},
    {"POLYGONS", Indexed::polygons}, {"ANNOTATIONS", Indexed::annotation},
    {"REGIONS", Indexed::regions},
};

void dumpHead(JsonLine& line, const datasets::Index& index) {
    line.field("recordCount", index.recordCount());
    line.field("extent", std::span<const double>(index.extent())).key("nodes").beginList();
    for (int32_t node = 1; node <= index.nodeCount(); ++node) {
        line.value(std::span<const int32_t>(index.node(node)));
    }
    line.endList();
}

void dumpBlock(JsonLine& line, const datasets::IndexBlock& block) {
    line.field("number", block.number).key("entries").beginList();
    for (const auto& [box, record] : block.entries) {
        line.beginList().value(static_cast<uint32_t>(box)).value(record).endList();
    }
    line.endList();
}

}  // namespace

void dumpIndexes(Dump& dump, const std::string& coverage) {
    if (!dump.wants("index") && !dump.wants("indexBlock")) return;
    for (const IndexKind& kind : kKinds) {
        datasets::eachPart(coverage, kind.features, [&](std::string_view subclass) {
            datasets::Index index = datasets::indexOf(coverage, kind.features, subclass);
            const auto begin = [&](JsonLine& line) -> JsonLine& {
                return line.field("kind", kind.name).field("subclass", subclass);
            };
            if (index && dump.wants("index")) {
                JsonLine line(dump.output(), "index");
                dumpHead(begin(line), index);
            }
            if (!dump.wants("indexBlock")) return;
            for (const datasets::IndexBlock& block : index) {
                JsonLine line(dump.output(), "indexBlock");
                dumpBlock(begin(line), block);
            }
        });
    }
}

}  // namespace program
