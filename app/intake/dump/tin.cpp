#include <algorithm>
#include <array>

#include "app/intake/dump/dump.h"
#include "app/intake/dump/side_files.h"
#include "app/intake/dump/tables.h"
#include "host/cpp/call.h"
#include "host/qxbase.h"
#include "host/qxgridio.h"

namespace program {

namespace {

using qx::call;

// A surface that is open for reading.
class Surface {
  public:
    explicit Surface(const std::string& path) {
        int32_t status = 0;
        call(tinopn_, handle_, std::string_view(path), status);
    }
    ~Surface() { call(tincls_, handle_); }
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;
    int32_t handle() const { return handle_; }

  private:
    int32_t handle_ = 0;
};

// A member of a surface, with a block of its records at hand.
template <class Record>
class Member {
  public:
    Member(const Surface& surface, QxTinMember member)
        : surface_(surface), member_(member), records_(kBlock) {
        call(tincnt_, surface.handle(), member_, count_);
    }
    int64_t count() const { return count_; }
    // The record of a number from 1, asked for in order; null where the member has ended.
    const Record* at(int64_t number) {
        if (number > count_) return nullptr;
        if (number >= first_ + used_) {
            first_ = number;
            call(tinget_, surface_.handle(), member_, first_, kBlock, records_, used_);
            if (used_ == 0) return nullptr;
        }
        return &records_[static_cast<std::size_t>(number - first_)];
    }

  private:
    static constexpr int32_t kBlock = 1024;
    const Surface& surface_;
    int32_t member_;
    int64_t count_ = 0;
    int64_t first_ = 1;
    int32_t used_ = 0;
    std::vector<Record> records_;
};

struct Position {
    double x;
    double y;
};
using Triple = std::array<int32_t, 3>;

void dumpEnvironment(Dump& dump, const Surface& surface) {
    QxTinEnvironment environment{};
    int32_t status = 0;
    call(tinenv_, surface.handle(), environment, status);
    if (status != 0) return;
    JsonLine line(dump.output(), "tin");
    line.field("nodeCount", environment.nodeCount);
    line.field("triangleCount", environment.triangleCount);
    line.field("hullCount", environment.hullCount).field("digit", environment.digit);
    line.field("secondTriangleCount", environment.secondTriangleCount);
    line.field("secondNodeCount", environment.secondNodeCount);
    line.field("secondHullCount", environment.secondHullCount);
    line.key("zRange").beginList().value(environment.lowestZ).value(environment.highestZ).endList();
    line.field("box", std::span<const double>(environment.box));
    line.field("fifthReal", environment.fifthReal).field("sixthReal", environment.sixthReal);
    line.field("version", call(tinver_, environment.version));
}

void dumpNodes(Dump& dump, const Surface& surface) {
    Member<Position> positions(surface, QX_TIN_NODE_XY);
    Member<float> heights(surface, QX_TIN_NODE_Z);
    Member<int32_t> identifiers(surface, QX_TIN_NODE_ID);
    float noData = 0;
    call(fltndt_, noData);
    const int64_t count = std::max({positions.count(), heights.count(), identifiers.count()});
    for (int64_t number = 1; number <= count; ++number) {
        JsonLine line(dump.output(), "tinNode");
        line.field("number", number);
        if (const Position* at = positions.at(number)) line.field("x", at->x).field("y", at->y);
        if (const float* z = heights.at(number)) {
            line.key("z");
            *z == noData ? line.null() : line.value(*z);
        }
        if (const int32_t* identifier = identifiers.at(number)) line.field("id", *identifier);
    }
}

void dumpTriangles(Dump& dump, const Surface& surface) {
    Member<Triple> nodes(surface, QX_TIN_TRIANGLE_NODES);
    Member<Triple> edges(surface, QX_TIN_TRIANGLE_EDGES);
    const int64_t count = std::max(nodes.count(), edges.count());
    for (int64_t number = 1; number <= count; ++number) {
        JsonLine line(dump.output(), "tinTriangle");
        line.field("number", number);
        if (const Triple* at = nodes.at(number)) line.field("nodes", std::span<const int32_t>(*at));
        if (const Triple* at = edges.at(number)) line.field("edges", std::span<const int32_t>(*at));
    }
}

void dumpHull(Dump& dump, const Surface& surface) {
    Member<int32_t> hull(surface, QX_TIN_HULL);
    for (int64_t number = 1; const int32_t* value = hull.at(number); ++number) {
        JsonLine line(dump.output(), "tinHull");
        line.field("number", number).field("value", *value);
    }
}

// One line; none for a surface whose mask holds no word.
void dumpMask(Dump& dump, const Surface& surface) {
    constexpr int kBitsInWord = 32;
    Member<uint32_t> mask(surface, QX_TIN_MASK);
    std::string bits;
    for (int64_t number = 1; const uint32_t* word = mask.at(number); ++number) {
        for (int bit = kBitsInWord - 1; bit >= 0; --bit)
            bits += (*word >> bit & 1) != 0 ? '1' : '0';
    }
    if (!bits.empty()) JsonLine(dump.output(), "tinMask").field("bits", bits);
}

struct Part {
    const char* className;
    void (*records)(Dump& dump, const Surface& surface);
};

constexpr Part kParts[] = {
    {"tin", dumpEnvironment}, {"tinNode", dumpNodes}, {"tinTriangle", dumpTriangles},
    {"tinHull", dumpHull},    {"tinMask", dumpMask},
};

}  // namespace

void dumpTin(Dump& dump, const Dataset& dataset) {
    dumpDatasetLine(dump, dataset);
    const Surface surface(dataset.path);
    for (const Part& each : kParts) {
        if (dump.wants(each.className)) each.records(dump, surface);
    }
    dumpSideTexts(dump, dataset.path);
    dumpTables(dump, dataset.path);
}

}  // namespace program
