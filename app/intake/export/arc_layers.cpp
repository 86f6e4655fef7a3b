// The layers that arcs carry: the arcs, the nodes at their ends, and links.
#include <cmath>
#include <limits>
#include <unordered_map>

#include "app/intake/export/layers.h"
#include "datasets/features.h"

namespace program {

using datasets::Point;
using formats::GeometryType;

ArcSurvey surveyArcs(const std::string& coverage) {
    ArcSurvey survey;
    survey.ownLists = datasets::polygons(coverage).count() > 0;
    survey.polygons = survey.ownLists;
    for (const datasets::ArcFront& arc : datasets::arcFronts(coverage)) {
        ++survey.count;
        survey.highestNode = std::max({survey.highestNode, arc.fromNode, arc.toNode});
        if (arc.leftPolygon != arc.rightPolygon) survey.polygons = true;
    }
    return survey;
}

void exportArcs(Target& target, const std::string& coverage) {
    if (!target.wants("arcs")) return;
    TableColumns table = columnsOf(target, coverage, "AAT");
    target.begin(layerOf(
        "arcs", GeometryType::kLineString, "Arcs of " + nameOf(coverage),
        {"number", "user_id", "from_node", "to_node", "left_polygon", "right_polygon"}, table));
    std::vector<formats::Value> values;
    eachWithin(target, datasets::arcs(coverage), coverage, datasets::Indexed::arcs, {},
               [&](const datasets::Arc& arc, int32_t record) {
                   values.clear();
                   for (const int32_t each : {arc.number, arc.userId, arc.fromNode, arc.toNode,
                                              arc.leftPolygon, arc.rightPolygon}) {
                       values.emplace_back(int64_t{each});
                   }
                   table.append(record, target.decoder(), values);
                   target.addLine(record, arc.vertices, values);
               });
    target.end();
}

namespace {

// The places of nodes by their numbers. Numbers of a sound coverage are dense; for others no more
// memory is taken than there are arcs.
class NodePlaces {
  public:
    explicit NodePlaces(const ArcSurvey& survey) {
        constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
        const int64_t most = 2 * int64_t{survey.count};
        const int64_t dense = std::min<int64_t>(survey.highestNode, most);
        dense_.resize(static_cast<std::size_t>(std::max<int64_t>(dense, 0)), {kNone, kNone});
    }
    // False if the node is known already, or is none.
    bool add(int32_t number, const Point& place) {
        if (number < 1) return false;
        if (static_cast<std::size_t>(number) > dense_.size()) {
            return sparse_.emplace(number, place).second;
        }
        Point& known = dense_[static_cast<std::size_t>(number) - 1];
        if (!std::isnan(known.x)) return false;
        known = place;
        return true;
    }
    template <class Take>
    void each(Take take) const {
        int32_t number = 0;
        for (const Point& place : dense_) {
            ++number;
            if (!std::isnan(place.x)) take(number, place);
        }
        std::vector<int32_t> numbers;
        for (const auto& [sparse, place] : sparse_) numbers.push_back(sparse);
        std::sort(numbers.begin(), numbers.end());
        for (const int32_t sparse : numbers) take(sparse, sparse_.at(sparse));
    }

  private:
    std::vector<Point> dense_;
    std::unordered_map<int32_t, Point> sparse_;
};

}  // namespace

void exportNodes(Target& target, const std::string& coverage, const ArcSurvey& survey) {
    if (survey.highestNode < 1 || !target.wants("nodes")) return;
    NodePlaces places(survey);
    for (const datasets::Arc& arc : datasets::arcs(coverage)) {
        if (arc.vertices.empty()) continue;
        places.add(arc.fromNode, arc.vertices.front());
        places.add(arc.toNode, arc.vertices.back());
    }
    TableColumns table = columnsOf(target, coverage, "NAT");
    target.begin(
        layerOf("nodes", GeometryType::kPoint, "Nodes of " + nameOf(coverage), {"number"}, table));
    std::vector<formats::Value> values;
    places.each([&](int32_t number, const Point& place) {
        if (!isWithin(target, place)) return;
        values.assign(1, int64_t{number});
        table.append(number, target.decoder(), values);
        target.addPoint(number, place, values);
    });
    target.end();
}

void exportLinks(Target& target, const std::string& coverage) {
    datasets::Links links = datasets::links(coverage);
    if (!links || !target.wants("links")) return;
    target.begin(
        layerOf("links", GeometryType::kLineString, "Links of " + nameOf(coverage), {"number"}));
    for (const datasets::Link& link : links) {
        const Point ends[] = {link.from, link.to};
        const datasets::Box box = {
            std::min(link.from.x, link.to.x), std::min(link.from.y, link.to.y),
            std::max(link.from.x, link.to.x), std::max(link.from.y, link.to.y)};
        if (!isWithin(target, box)) continue;
        const formats::Value number[] = {int64_t{link.number}};
        target.addLine(link.number, ends, number);
    }
    target.end();
}

}  // namespace program
