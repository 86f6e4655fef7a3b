// A coverage: its arcs, labels and annotation.
#include <numbers>

#include "app/intake/draw/draw.h"
#include "app/intake/draw/palette.h"
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

}  // namespace

Picture pictureOfCoverage(const Dataset& dataset) {
    Picture picture;
    const std::string coverage = dataset.path;
    picture.extent = extentOfFeatures(coverage);
    picture.draw = [coverage](Canvas& canvas, const View& view) {
        for (const Arc& arc : arcs(coverage)) {
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
