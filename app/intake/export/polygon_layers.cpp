// The layers of areas: polygons, regions, and what of them did not close.
#include <algorithm>
#include <limits>

#include "app/intake/export/coverage_arcs.h"
#include "app/intake/export/layers.h"
#include "datasets/coverage.h"
#include "datasets/features.h"
#include "topology/arcs_by_polygon.h"
#include "topology/assembler.h"

namespace program {

namespace {

using datasets::Box;
using formats::GeometryType;
using formats::Value;
using topology::Shape;

// A shape as a format takes it.
class ShapeGeometry {
  public:
    formats::Geometry of(const Shape& shape) {
        parts_.clear();
        for (std::size_t ring = 0; ring < shape.rings(); ++ring) {
            const auto points = shape.ring(ring);
            parts_.emplace_back(&points.front().x, points.size() * 2);
        }
        return {parts_, shape.ringCounts};
    }

  private:
    std::vector<std::span<const double>> parts_;
};

Box boxOf(const Shape& shape) {
    constexpr double kFar = std::numeric_limits<double>::infinity();
    Box box = {kFar, kFar, -kFar, -kFar};
    for (std::size_t ring = 0; ring < shape.rings(); ++ring) {
        for (const topology::Point& point : shape.ring(ring)) {
            box = {std::min(box[0], point.x), std::min(box[1], point.y), std::max(box[2], point.x),
                   std::max(box[3], point.y)};
        }
    }
    return box;
}

// The areas of one file, written one by one. Those with something left out are kept by number, and
// made once more for the lines of the layer "unclosed".
class Areas {
  public:
    // An arc is around two polygons, and around many regions that overlap: so often may the
    // vertices of all arcs be written, lest a small file of lists makes an output without end.
    Areas(Target& target, const std::string& coverage, std::string layer, std::string noun,
          int64_t timesEach)
        : target_(target),
          coverage_(coverage),
          layer_(std::move(layer)),
          noun_(std::move(noun)),
          wanted_(target.mayWant(layer_)),
          arcs_(coverage),
          assembler_(arcs_),
          verticesLeft_(arcs_.vertexCount() * timesEach + kFreeVertices) {}

    // List is the arcs around the area.
    void add(int32_t number, std::span<const int32_t> list, std::vector<Value>& values,
             TableColumns& table, bool alreadyWithin) {
        const Shape& shape = assembler_.assemble(verticesLeft_ > 0 ? list : list.first(0));
        for (std::size_t ring = 0; ring < shape.rings(); ++ring) take(shape.ring(ring));
        for (std::size_t line = 0; line < shape.lines(); ++line) take(shape.line(line));
        if (!alreadyWithin && target_.options().within && !isWithin(target_, boxOf(shape))) return;
        if (!wanted_) {
            if (shape.lines() != 0) broken_.push_back(number);
            return;
        }
        values.assign(1, int64_t{number});
        table.append(number, target_.decoder(), values);
        target_.add(number, geometry_.of(shape), values);
        if (verticesLeft_ <= 0) {
            target_.incomplete();
            target_.report().loss(layer_, "the arcs are named too often to be written again",
                                  noun_ + ' ' + std::to_string(number));
        }
        if (shape.problems.empty()) return;
        target_.incomplete();
        if (shape.lines() != 0) broken_.push_back(number);
        for (const Shape::Problem& problem : shape.problems) {
            std::string example = noun_ + ' ' + std::to_string(number);
            if (problem.arc != 0) example += ", arc " + std::to_string(problem.arc);
            target_.report().loss(layer_, topology::words(problem.reason), example);
        }
    }

    // listOf(number) gives the list of an area again.
    template <class ListOf>
    void writeBroken(const std::string& name, ListOf listOf) {
        if (broken_.empty() || !target_.wants(name)) return;
        formats::Layer layer = layerOf(
            name, GeometryType::kLineString,
            "Lines of areas that could not be closed, of " + nameOf(coverage_), {"number", "arc"});
        layer.columns.push_back({"reason", formats::ColumnType::kText, 0});
        target_.begin(layer);
        int64_t fid = 0;
        std::vector<datasets::Point> points;
        for (const int32_t number : broken_) {
            const Shape& shape = assembler_.assemble(listOf(number));
            for (const Shape::Problem& problem : shape.problems) {
                const Value values[] = {int64_t{number}, int64_t{problem.arc},
                                        topology::words(problem.reason)};
                for (std::size_t line = 0; line < problem.lines; ++line) {
                    points.clear();
                    for (const auto& each : shape.line(problem.firstLine + line)) {
                        points.push_back({each.x, each.y});
                    }
                    target_.addLine(++fid, points, values);
                }
            }
        }
        target_.end();
    }

  private:
    static constexpr int64_t kFreeVertices = 1'000'000;
    void take(std::span<const topology::Point> points) {
        verticesLeft_ -= static_cast<int64_t>(points.size());
    }

    Target& target_;
    const std::string& coverage_;
    std::string layer_;
    std::string noun_;
    bool wanted_;  // or only what could not be closed
    CoverageArcs arcs_;
    topology::Assembler assembler_;
    int64_t verticesLeft_;
    ShapeGeometry geometry_;
    std::vector<int32_t> broken_;
};

std::span<const int32_t> listOf(const datasets::Polygon& polygon, std::vector<int32_t>& list) {
    list.clear();
    for (const datasets::RingArc& each : polygon.arcs) list.push_back(each.arc);
    return list;
}

// The polygon that lies around all others.
constexpr int32_t kOutside = 1;

// Areas with their lists in a file of their own.
void exportListed(Target& target, const std::string& coverage, const std::string& name,
                  const std::string& unclosed, datasets::Indexed what, std::string_view subclass,
                  TableColumns table) {
    const bool areRegions = what == datasets::Indexed::regions;
    const auto open = [&] {
        return areRegions ? datasets::regions(coverage, subclass) : datasets::polygons(coverage);
    };
    Areas areas(target, coverage, name, areRegions ? "region" : "polygon", areRegions ? 1000 : 16);
    target.begin(layerOf(name, GeometryType::kMultiPolygon,
                         (areRegions ? "Regions of " : "Polygons of ") + nameOf(coverage),
                         {"number"}, table));
    std::vector<Value> values;
    std::vector<int32_t> list;
    eachWithin(target, open(), coverage, what, subclass,
               [&](const datasets::Polygon& polygon, int32_t record) {
                   if (!areRegions && record == kOutside) return;
                   areas.add(record, listOf(polygon, list), values, table, true);
               });
    target.end();
    datasets::Polygons again = open();
    areas.writeBroken(unclosed, [&](int32_t number) {
        const datasets::Polygon* polygon = again.at(number);
        return polygon ? listOf(*polygon, list) : std::span<const int32_t>();
    });
}

// Areas by what lies left and right of the arcs.
void exportBesideArcs(Target& target, const std::string& coverage, TableColumns table) {
    topology::ArcsByPolygon lists;
    datasets::ArcFronts arcs = datasets::arcFronts(coverage);
    lists.expect(static_cast<std::size_t>(arcs.count()));
    for (const datasets::ArcFront& arc : arcs) {
        lists.add(arc.number, arc.leftPolygon, arc.rightPolygon);
    }
    lists.finish();
    Areas areas(target, coverage, "polygons", "polygon", 16);
    target.begin(layerOf("polygons", GeometryType::kMultiPolygon, "Polygons of " + nameOf(coverage),
                         {"number"}, table));
    std::vector<Value> values;
    for (const int32_t polygon : lists.polygons()) {
        if (polygon == kOutside) continue;
        areas.add(polygon, lists.of(polygon), values, table, false);
    }
    target.end();
    areas.writeBroken("unclosed", [&](int32_t number) { return lists.of(number); });
}

// Whether areas are to be made, be it only to find what of them does not close.
bool wantsAreas(Target& target, const std::string& name, const std::string& unclosed) {
    return target.wants(name) || target.mayWant(unclosed);
}

}  // namespace

void exportPolygons(Target& target, const std::string& coverage, const ArcSurvey& survey) {
    if (!survey.polygons || !wantsAreas(target, "polygons", "unclosed")) return;
    TableColumns table = columnsOf(target, coverage, "PAT");
    if (survey.ownLists) {
        exportListed(target, coverage, "polygons", "unclosed", datasets::Indexed::polygons, {},
                     std::move(table));
    } else {
        exportBesideArcs(target, coverage, std::move(table));
    }
}

void exportRegions(Target& target, const std::string& coverage) {
    for (const std::string& subclass :
         datasets::subclasses(coverage, datasets::Subclassed::regions)) {
        const std::string name = nameWith("regions", subclass);
        const std::string unclosed = nameWith("unclosed_regions", subclass);
        if (!wantsAreas(target, name, unclosed)) continue;
        exportListed(target, coverage, name, unclosed, datasets::Indexed::regions, subclass,
                     columnsOf(target, coverage, "PAT" + subclass));
    }
}

void exportBoxes(Target& target, const std::string& coverage) {
    datasets::Polygons boxes = datasets::polygons(coverage, datasets::PolygonSource::boxes);
    if (!boxes || !target.wants("polygon_boxes")) return;
    target.begin(
        layerOf("polygon_boxes", GeometryType::kPolygon,
                "Boxes of polygons that were stored without their arcs, of " + nameOf(coverage),
                {"number"}));
    for (const datasets::Polygon& each : boxes) {
        if (!isWithin(target, each.box)) continue;
        const auto& [xmin, ymin, xmax, ymax] = each.box;
        const datasets::Point ring[] = {
            {xmin, ymin}, {xmax, ymin}, {xmax, ymax}, {xmin, ymax}, {xmin, ymin}};
        const Value number[] = {int64_t{each.number}};
        target.addLine(each.number, ring, number);
    }
    target.end();
}

}  // namespace program
