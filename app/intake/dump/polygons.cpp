#include "app/intake/dump/features.h"
#include "app/intake/dump/subclass_walk.h"
#include "host/cpp/call.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"

namespace program {

namespace {

using qx::call;

constexpr int32_t kRegionCode = 90;
constexpr int32_t kTripletsAtOnce = 1000;

bool openPolygons(std::string_view coverageOrPath, int32_t kind, int32_t& polygons) {
    int32_t status = 0;
    call(palopn_, polygons, coverageOrPath, 1, kind, status);
    return status == 0;
}

bool openRegions(const Dataset& dataset, std::string_view subclass, int32_t& regions) {
    qx::Name path;
    call(fname_, std::string_view(dataset.path), subclass, path, kRegionCode);
    return openPolygons(path.view(), QX_POLYGON_PATH, regions);
}

void countFile(int32_t polygons, const std::string& key, JsonLine& line) {
    int32_t count = 0;
    call(palrec_, polygons, count);
    line.field(key, count);
    call(palcls_, polygons);
}

void writeTriplets(std::span<const int32_t> arcs, JsonLine& line) {
    for (std::size_t index = 0; index < arcs.size(); index += 3) {
        line.value(arcs.subspan(index, 3));
    }
}

// The records of one file; begin makes a line's own first fields, end its last ones.
template <class Begin, class End>
void dumpFile(Dump& dump, const char* className, int32_t polygons, Begin&& begin, End&& end) {
    std::vector<int32_t> arcs(static_cast<std::size_t>(kTripletsAtOnce) * 3);
    QxPolygon polygon{};
    int32_t number = 0;
    int32_t status = 0;
    for (;;) {
        // Without room for arcs the record is read alone; they follow in as many pieces as it
        // takes.
        call(palrd_, polygons, number, polygon, arcs, 0, status);
        if (status != 0) break;
        JsonLine line(dump.output(), className);
        begin(line);
        line.field("number", number);
        line.field("box", std::span<const double>(polygon.box));
        if (std::string_view(className) == "polygon") {
            line.field("arcCount", int32_t{polygon.arcCount});
        }
        line.key("arcs").beginList();
        for (;;) {
            int32_t count = 0;
            call(palrdm_, polygons, arcs, kTripletsAtOnce, count);
            if (count == 0) break;
            writeTriplets({arcs.data(), static_cast<std::size_t>(count) * 3}, line);
        }
        line.endList();
        end(line);
    }
    call(palcls_, polygons);
}

struct Source {
    int32_t kind;
    const char* label;
};
constexpr Source kSources[] = {{QX_POLYGON_ARCS, "PAL"}, {QX_POLYGON_BOXES, "PFF"}};

}  // namespace

void countPolygons(const Dataset& dataset, JsonLine& line) {
    for (const Source& source : kSources) {
        int32_t polygons = 0;
        if (!openPolygons(dataset.path, source.kind, polygons)) continue;
        countFile(polygons, std::string("polygon/") + source.label, line);
    }
}

void dumpPolygons(Dump& dump, const Dataset& dataset) {
    for (const Source& source : kSources) {
        int32_t polygons = 0;
        if (!openPolygons(dataset.path, source.kind, polygons)) continue;
        dumpFile(
            dump, "polygon", polygons, [](JsonLine&) {},
            [&](JsonLine& line) { line.field("source", source.label); });
    }
}

void countRegions(const Dataset& dataset, JsonLine& line) {
    eachSubclass(dataset.path, kRegionCode, [&](std::string_view subclass) {
        int32_t regions = 0;
        if (!openRegions(dataset, subclass, regions)) return;
        countFile(regions, std::string("region/").append(subclass), line);
    });
}

void dumpRegions(Dump& dump, const Dataset& dataset) {
    eachSubclass(dataset.path, kRegionCode, [&](std::string_view subclass) {
        int32_t regions = 0;
        if (!openRegions(dataset, subclass, regions)) return;
        dumpFile(
            dump, "region", regions, [&](JsonLine& line) { line.field("subclass", subclass); },
            [](JsonLine&) {});
    });
}

}  // namespace program
