// A coverage: its polygons, arcs, labels and annotation.
#include <numbers>
#include <stdexcept>

#include "app/intake/draw/classes.h"
#include "app/intake/draw/draw.h"
#include "app/intake/draw/palette.h"
#include "app/intake/draw/polygons.h"
#include "app/intake/interrupts.h"
#include "app/intake/utf8.h"
#include "datasets/annotation_lines.h"
#include "datasets/coverage.h"

namespace program {

namespace {

using namespace datasets;

template <class Take>
void eachAnnotation(const std::string& coverage, Take take) {
    for (const std::string& subclass : subclasses(coverage, Subclassed::annotation)) {
        for (const Annotation& each : annotations(coverage, subclass)) take(each);
    }
}

// Each line from the first of its places towards the last.
void drawText(Canvas& canvas, const View& view, const Annotation& annotation) {
    for (const TextLine& line : placedLines(annotation)) {
        const std::vector<Place> places = view.places(coordinates(line.points));
        if (line.text.empty() || places.empty()) continue;
        const Place& first = places.front();
        const Place& last = places.back();
        const double radians = std::atan2(first.y - last.y, last.x - first.x);
        canvas.text(first, view.length(annotation.textHeight, kTextPixels),
                    radians * 180 / std::numbers::pi, toUtf8(line.text), lineColour(4));
    }
}

Extent extentOfFeatures(const std::string& coverage) {
    Extent extent;
    const auto add = [&](std::span<const Point> points) {
        for (const Point& each : points) extent.add(each.x, each.y);
    };
    for (const Arc& arc : arcs(coverage)) add(arc.vertices);
    for (const Label& label : labels(coverage)) extent.add(label.place.x, label.place.y);
    eachAnnotation(coverage, [&](const Annotation& annotation) { add(annotation.points); });
    return extent;
}

constexpr Colour kArea = {243, 239, 226};

void drawPolygons(Canvas& canvas, const View& view, const std::string& coverage,
                  const Classes* classes) {
    std::vector<std::vector<Place>> rings;
    eachPolygon(coverage, [&](int32_t number, const topology::Shape& shape) {
        throwIfInterrupted();
        rings.clear();
        const auto take = [&](std::span<const topology::Point> points) {
            rings.push_back(view.places({&points.front().x, points.size() * 2}));
        };
        for (std::size_t ring = 0; ring < shape.rings(); ++ring) take(shape.ring(ring));
        // A ring that crosses itself or lies wrong is no polygon, and is seen all the same.
        for (std::size_t line = 0; line < shape.lines(); ++line) {
            const std::span<const topology::Point> points = shape.line(line);
            if (points.size() > 3 && points.front() == points.back()) take(points);
        }
        if (!rings.empty()) canvas.rings(rings, classes ? classes->colour(number) : kArea);
    });
}

// The records of the table are those of the polygons, and the first is of what lies around them.
std::shared_ptr<const Classes> classesOf(const std::string& coverage, const std::string& item) {
    if (item.empty()) return nullptr;
    for (const TablePlace& place : tablesOf(coverage)) {
        if (place.name.ends_with(".PAT") && hasPolygons(coverage)) {
            return std::make_shared<const Classes>(place, item, 2);
        }
    }
    throw std::runtime_error(coverage + ": has no polygons with a table to colour them by");
}

}  // namespace

Picture pictureOfCoverage(const Dataset& dataset, const std::string& colourBy) {
    Picture picture;
    const std::string coverage = dataset.path;
    const std::shared_ptr<const Classes> classes = classesOf(coverage, colourBy);
    if (classes) picture.legend = classes->legend();
    picture.units = unitsOf(coverage);
    picture.extent = extentOfFeatures(coverage);
    picture.draw = [=](Canvas& canvas, const View& view) {
        drawPolygons(canvas, view, coverage, classes.get());
        for (const Arc& arc : arcs(coverage)) {
            throwIfInterrupted();
            const std::vector<Place> places = view.places(coordinates(arc.vertices));
            if (places.size() > 1) canvas.line(places, lineColour(10), 0.8);
        }
        for (const Label& label : labels(coverage)) {
            const std::vector<Place> places = view.places(coordinates({&label.place, 1}));
            if (!places.empty()) canvas.dot(places.front(), 1.5, lineColour(2));
        }
        eachAnnotation(coverage, [&](const Annotation& each) { drawText(canvas, view, each); });
    };
    return picture;
}

}  // namespace program
