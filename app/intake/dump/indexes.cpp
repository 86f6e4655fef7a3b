#include "app/intake/dump/features.h"
#include "app/intake/dump/subclass_walk.h"
#include "host/cpp/call.h"
#include "host/qxfeat.h"

namespace program {

using qx::call;

namespace {

struct IndexKind {
    const char* name;
    int32_t kind;
    int32_t subclassCode;  // of the files whose subclasses have an index each, 0 for none
};

constexpr IndexKind kKinds[] = {
    {"POINTS", QX_INDEX_POINTS, 0},     {"ARCS", QX_INDEX_ARCS, 0},
    {"POLYGONS", QX_INDEX_POLYGONS, 0}, {"ANNOTATIONS", QX_INDEX_ANNOTATION, 16},
    {"REGIONS", QX_INDEX_REGIONS, 90},
};

int32_t dumpHead(Dump& dump, const IndexKind& kind, std::string_view subclass, int32_t index) {
    int32_t recordCount = 0;
    int32_t nodes = 0;
    int32_t blocks = 0;
    std::array<double, 4> extent;
    call(spxhdr_, index, recordCount, extent, nodes, blocks);
    if (!dump.wants("index")) return blocks;
    JsonLine line(dump.output(), "index");
    line.field("kind", kind.name).field("subclass", subclass).field("recordCount", recordCount);
    line.field("extent", std::span<const double>(extent));
    line.key("nodes").beginList();
    for (int32_t node = 1; node <= nodes; ++node) {
        std::array<int32_t, 2> entry;
        call(spxnod_, index, node, entry[0], entry[1]);
        line.value(std::span<const int32_t>(entry));
    }
    line.endList();
    return blocks;
}

void dumpBlocks(Dump& dump, const IndexKind& kind, std::string_view subclass, int32_t index,
                int32_t blocks) {
    constexpr int32_t kFirstBlock = 2;
    std::array<int32_t, 200> entries;
    for (int32_t block = kFirstBlock; block < kFirstBlock + blocks; ++block) {
        int32_t count = 0;
        int32_t status = 0;
        call(spxblk_, index, block, entries, count, status);
        if (status != 0) break;
        JsonLine line(dump.output(), "indexBlock");
        line.field("kind", kind.name).field("subclass", subclass).field("number", block);
        line.key("entries").beginList();
        for (std::size_t at = 0; at < static_cast<std::size_t>(count) * 2; at += 2) {
            line.beginList().value(static_cast<uint32_t>(entries[at])).value(entries[at + 1]);
            line.endList();
        }
        line.endList();
    }
}

void dumpIndex(Dump& dump, const Dataset& dataset, const IndexKind& kind,
               std::string_view subclass) {
    int32_t index = 0;
    int32_t status = 0;
    call(spxopn_, index, std::string_view(dataset.path), subclass, kind.kind, status);
    if (status != 0) return;
    const int32_t blocks = dumpHead(dump, kind, subclass, index);
    if (dump.wants("indexBlock")) dumpBlocks(dump, kind, subclass, index, blocks);
    call(spxcls_, index);
}

}  // namespace

void dumpIndexes(Dump& dump, const Dataset& dataset) {
    if (!dump.wants("index") && !dump.wants("indexBlock")) return;
    for (const IndexKind& kind : kKinds) {
        if (kind.subclassCode == 0) {
            dumpIndex(dump, dataset, kind, "");
        } else {
            eachSubclass(dataset.path, kind.subclassCode, [&](std::string_view subclass) {
                dumpIndex(dump, dataset, kind, subclass);
            });
        }
    }
}

}  // namespace program
