// The spatial index of a million arcs, beside a sort of their boxes in memory; and how much memory
// the build takes at its height.
#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "bench/measure.h"
#include "bench/memory.h"
#include "bench/workspace.h"
#include "coverage/index_requests.h"
#include "coverage/sections.h"
#include "host/cpp/call.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"

namespace bench {

namespace {

constexpr int32_t kArcs = 1000000;
// Number, six integers and two vertices to an arc, and its length.
constexpr std::size_t kArcBytes = 4 + 7 * 4 + 4 * 8;
constexpr std::size_t kArcKind = 1;

struct Segment {
    QxArc arc;
    double x[4];
};

// Short arcs all over the place, and a long one now and then.
Segment segment(int32_t number) {
    const double x = static_cast<double>(number * 7919L % 360007) / 1000;
    const double y = static_cast<double>(number * 104729L % 180001) / 1000;
    const double length = number % 1000 == 0 ? 20 : 0.05;
    return {{number, 1, 2, 3, 4, 2}, {x, y, x + length, y - length}};
}

const intake::Name& coverage() {
    static intake::Name path;
    if (!path.blank()) return path;
    featinitC();
    path.assign((folder() / "INDEXED").string());
    int32_t status = 0;
    int32_t arcs = 0;
    qx::call(ccreat_, path, status);
    require(status == 0, "a coverage to index");
    qx::call(arccre_, arcs, path, 1, 1, status);
    for (int32_t number = 1; number <= kArcs; ++number) {
        const Segment each = segment(number);
        arcwt_(&arcs, &number, &each);
    }
    qx::call(arccls_, arcs);
    return path;
}

void build() {
    intake::Status status = 0;
    intake::indexRequests = {};
    intake::indexRequests.any = intake::indexRequests.kinds[kArcKind] = true;
    intake::IMPSPX(coverage(), status);
    require(status == 0, "the index is built");
}

// Reads the arcs as the index does, sorts cells and numbers at once, and writes them.
void buildPlainly() {
    int32_t arcs = 0;
    int32_t status = 0;
    int32_t number = 0;
    QxArc arc{};
    std::array<double, 4> points;
    std::vector<std::array<int32_t, 3>> entries;
    qx::call(arcopn_, arcs, coverage(), status);
    for (;;) {
        qx::call(arcrd_, arcs, number, arc, points, 2, status);
        if (status != 0) break;
        const auto x = static_cast<int32_t>(std::min(points[0], points[2]) / 1.5);
        const auto y = static_cast<int32_t>(std::min(points[1], points[3]) / 0.75);
        entries.push_back({x << 8 | (y & 255), x, number});
    }
    qx::call(arccls_, arcs);
    require(entries.size() == kArcs, "all arcs are read");
    std::sort(entries.begin(), entries.end());
    std::FILE* out = std::fopen((folder() / "plain").c_str(), "w");
    require(out != nullptr, "a file for the plain index");
    for (const auto& entry : entries) std::fwrite(&entry[1], 8, 1, out);
    std::fclose(out);
}

// Every arc is in the index, and a small rectangle finds few but the right ones.
void check() {
    int32_t index = 0;
    int32_t status = 0;
    int32_t count = 0;
    int32_t nodes = 0;
    int32_t blocks = 0;
    std::array<double, 4> extent;
    qx::call(spxopn_, index, coverage(), "", int32_t{QX_INDEX_ARCS}, status);
    require(status == 0, "the index opens");
    qx::call(spxhdr_, index, count, extent, nodes, blocks);
    require(count == kArcs, "all arcs are indexed");
    qx::call(spxask_, index, extent, count, status);
    require(status == 0 && count == kArcs, "the extent finds all arcs");
    constexpr int32_t kWanted = 123456;
    const Segment wanted = segment(kWanted);
    const std::array<double, 4> box = {wanted.x[0], wanted.x[3], wanted.x[2], wanted.x[1]};
    qx::call(spxask_, index, box, count, status);
    require(status == 0 && count < kArcs / 100, "a small rectangle finds few arcs");
    bool found = false;
    for (int32_t record = 0; status == 0; qx::call(spxnxt_, index, record, status)) {
        found |= record == kWanted;
    }
    qx::call(spxcls_, index);
    require(found, "a small rectangle finds its arc");
}

// The count table, the area of the sort and buffers, however many arcs there are.
void prepare() {
    constexpr long kMostKilobytes = 8 * 1024;
    static bool checked = false;
    coverage();
    if (checked) return;
    requireWithin(kMostKilobytes, build);
    check();
    checked = true;
}

}  // namespace

void registerIndex() {
    Comparison comparison("index", kArcs * kArcBytes);
    comparison.add("plain", buildPlainly, prepare);
    comparison.add("build", build, prepare).rounds(3).run();
}

}  // namespace bench
