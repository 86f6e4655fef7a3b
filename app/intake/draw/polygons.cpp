#include "app/intake/draw/polygons.h"

#include "app/intake/export/coverage_arcs.h"
#include "app/intake/export/layers.h"
#include "topology/arcs_by_polygon.h"
#include "topology/assembler.h"

namespace program {

namespace {

// The polygon that lies around all others.
constexpr int32_t kOutside = 1;

}  // namespace

bool hasPolygons(const std::string& coverage) { return surveyArcs(coverage).polygons; }

void eachPolygon(const std::string& coverage,
                 const std::function<void(int32_t, const topology::Shape&)>& take) {
    // As often as exports write the vertices of all arcs.
    constexpr int64_t kTimesEach = 16;
    constexpr int64_t kFreeVertices = 1'000'000;
    const ArcSurvey survey = surveyArcs(coverage);
    if (!survey.polygons) return;
    CoverageArcs arcs(coverage);
    topology::Assembler assembler(arcs);
    int64_t verticesLeft = arcs.vertexCount() * kTimesEach + kFreeVertices;
    const auto assemble = [&](int32_t number, std::span<const int32_t> list) {
        if (number == kOutside || verticesLeft <= 0) return;
        const topology::Shape& shape = assembler.assemble(list);
        for (std::size_t ring = 0; ring < shape.rings(); ++ring) {
            verticesLeft -= static_cast<int64_t>(shape.ring(ring).size());
        }
        take(number, shape);
    };
    if (survey.ownLists) {
        std::vector<int32_t> list;
        for (const datasets::Polygon& polygon : datasets::polygons(coverage)) {
            list.clear();
            for (const datasets::RingArc& each : polygon.arcs) list.push_back(each.arc);
            assemble(polygon.number, list);
        }
        return;
    }
    topology::ArcsByPolygon lists;
    for (const datasets::Arc& arc : datasets::arcs(coverage)) {
        lists.add(arc.number, arc.leftPolygon, arc.rightPolygon);
    }
    lists.finish();
    for (const int32_t number : lists.polygons()) assemble(number, lists.of(number));
}

}  // namespace program
