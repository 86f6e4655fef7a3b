#include <bitset>

#include "app/intake/dump/dump.h"
#include "datasets/surfaces.h"

namespace program {

namespace {

void dumpEnvironment(Dump& dump, const std::string& surface) {
    const auto environment = datasets::Surface(surface).environment();
    if (!environment) return;
    JsonLine line(dump.output(), "tin");
    line.field("nodeCount", environment->nodeCount);
    line.field("triangleCount", environment->triangleCount);
    line.field("hullCount", environment->hullCount).field("digit", environment->digit);
    line.field("secondTriangleCount", environment->secondTriangleCount);
    line.field("secondNodeCount", environment->secondNodeCount);
    line.field("secondHullCount", environment->secondHullCount);
    line.key("zRange").beginList();
    line.value(environment->lowestZ).value(environment->highestZ).endList();
    line.field("box", std::span<const double>(environment->box));
    line.field("fifthReal", environment->fifthReal).field("sixthReal", environment->sixthReal);
    line.field("version", datasets::versionOf(*environment));
}

void dumpNodes(Dump& dump, const std::string& surface) {
    for (const datasets::Node& node : datasets::nodes(surface)) {
        JsonLine line(dump.output(), "tinNode");
        line.field("number", node.number);
        if (node.place) line.field("x", node.place->x).field("y", node.place->y);
        if (node.height) {
            line.key("z");
            node.hasHeight() ? line.value(*node.height) : line.null();
        }
        if (node.identifier) line.field("id", *node.identifier);
    }
}

void dumpTriangles(Dump& dump, const std::string& surface) {
    for (const datasets::Triangle& triangle : datasets::triangles(surface)) {
        JsonLine line(dump.output(), "tinTriangle");
        line.field("number", triangle.number);
        if (triangle.nodes) line.field("nodes", std::span<const int32_t>(*triangle.nodes));
        if (triangle.edges) line.field("edges", std::span<const int32_t>(*triangle.edges));
    }
}

void dumpHull(Dump& dump, const std::string& surface) {
    int64_t number = 0;
    for (const int32_t value : datasets::hull(surface)) {
        JsonLine(dump.output(), "tinHull").field("number", ++number).field("value", value);
    }
}

// One line; none for a surface whose mask holds no word.
void dumpMask(Dump& dump, const std::string& surface) {
    std::string bits;
    for (const uint32_t word : datasets::mask(surface)) {
        bits += std::bitset<32>(word).to_string();
    }
    if (!bits.empty()) JsonLine(dump.output(), "tinMask").field("bits", bits);
}

struct Part {
    const char* className;
    void (*records)(Dump& dump, const std::string& surface);
};

constexpr Part kParts[] = {
    {"tin", dumpEnvironment}, {"tinNode", dumpNodes}, {"tinTriangle", dumpTriangles},
    {"tinHull", dumpHull},    {"tinMask", dumpMask},
};

}  // namespace

void dumpTin(Dump& dump, const Dataset& dataset) {
    dumpDatasetLine(dump, dataset);
    for (const Part& each : kParts) {
        if (dump.wants(each.className)) each.records(dump, dataset.path);
    }
    dumpSideTexts(dump, dataset.path);
    dumpTables(dump, dataset.path);
}

}  // namespace program
