// A coverage: its arcs, labels and annotation.
#include <numbers>

#include "app/intake/draw/draw.h"
#include "app/intake/draw/palette.h"
#include "app/intake/dump/subclass_walk.h"
#include "app/intake/utf8.h"
#include "host/cpp/call.h"
#include "host/qxfeat.h"

namespace program {

namespace {

using qx::call;

// Hands the vertices of each arc on, as pairs.
template <class Take>
void eachArc(const std::string& coverage, Take take) {
    int32_t arcs = 0;
    int32_t status = 0;
    call(arcopn_, arcs, std::string_view(coverage), status);
    if (status != 0) return;
    QxArc arc{};
    int32_t number = 0;
    std::vector<double> vertices(1000);
    for (;;) {
        const auto room = static_cast<int32_t>(vertices.size() / 2);
        call(arcrd_, arcs, number, arc, vertices, room, status);
        if (status < 0) break;
        const std::size_t reals = static_cast<std::size_t>(arc.vertexCount) * 2;
        if (status > 0) {
            vertices.resize(reals);
        } else {
            take(std::span<const double>(vertices.data(), reals));
        }
    }
    call(arccls_, arcs);
}

template <class Take>
void eachLabel(const std::string& coverage, Take take) {
    int32_t labels = 0;
    int32_t status = 0;
    call(labopn_, labels, std::string_view(coverage), status);
    if (status != 0) return;
    for (;;) {
        QxLabel label{};
        int32_t number = 0;
        call(labrd_, labels, number, label, status);
        if (status != 0) break;
        take(label);
    }
    call(labcls_, labels);
}

// Hands each annotation on with its points, as pairs.
template <class Take>
void eachAnnotationOf(const std::string& coverage, std::string_view subclass, Take take) {
    int32_t annotation = 0;
    int32_t status = 0;
    call(annopn_, annotation, std::string_view(coverage), subclass, status);
    if (status != 0) return;
    AnnoRecord anno{};
    std::vector<double> points(1000);
    for (;;) {
        const auto room = static_cast<int32_t>(points.size() / 2);
        call(annrd_, annotation, anno, points, room, status);
        if (status < 0) break;
        const std::size_t reals = static_cast<std::size_t>(anno.pointCount) * 2;
        if (status > 0) {
            points.resize(reals);
        } else {
            take(anno, std::span<const double>(points.data(), reals));
        }
    }
    call(anncls_, annotation);
}
template <class Take>
void eachAnnotation(const std::string& coverage, Take take) {
    constexpr int32_t kAnnotationCode = 16;
    eachSubclass(coverage, kAnnotationCode,
                 [&](std::string_view subclass) { eachAnnotationOf(coverage, subclass, take); });
}

// From the first of an annotation's places towards the last, several lines of text as one.
void drawText(Canvas& canvas, const View& view, const AnnoRecord& anno,
              const std::vector<Place>& places) {
    const std::size_t characters =
        static_cast<std::size_t>(std::clamp(anno.textLength, 0, int32_t{QX_ANNO_CHARACTERS}));
    const std::string_view text = qx::trimText({anno.text, characters});
    if (text.empty() || places.empty()) return;
    const Place& first = places.front();
    const Place& last = places.back();
    const double degrees = std::atan2(first.y - last.y, last.x - first.x) * 180 / std::numbers::pi;
    canvas.text(first, view.length(anno.textHeight, kTextPixels), degrees, toUtf8(text),
                lineColour(4));
}

}  // namespace

Picture pictureOfCoverage(const Dataset& dataset) {
    Picture picture;
    const std::string coverage = dataset.path;
    const auto addPairs = [&](std::span<const double> pairs) {
        for (std::size_t index = 0; index + 1 < pairs.size(); index += 2) {
            picture.extent.add(pairs[index], pairs[index + 1]);
        }
    };
    eachArc(coverage, addPairs);
    eachLabel(coverage, [&](const QxLabel& label) { picture.extent.add(label.x, label.y); });
    eachAnnotation(coverage,
                   [&](const AnnoRecord&, std::span<const double> points) { addPairs(points); });
    picture.draw = [coverage](Canvas& canvas, const View& view) {
        eachArc(coverage, [&](std::span<const double> vertices) {
            const std::vector<Place> places = view.places(vertices);
            if (places.size() > 1) canvas.line(places, lineColour(10), 0.8);
        });
        eachLabel(coverage, [&](const QxLabel& label) {
            if (std::isfinite(label.x) && std::isfinite(label.y)) {
                canvas.dot(view.place(label.x, label.y), 1.5, lineColour(2));
            }
        });
        eachAnnotation(coverage, [&](const AnnoRecord& anno, std::span<const double> points) {
            drawText(canvas, view, anno, view.places(points));
        });
    };
    return picture;
}

}  // namespace program
