// A coverage: its arcs, labels and annotation.
#include "app/intake/draw/draw.h"
#include "app/intake/draw/palette.h"
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

}  // namespace

Picture pictureOfCoverage(const Dataset& dataset) {
    Picture picture;
    const std::string coverage = dataset.path;
    eachArc(coverage, [&](std::span<const double> vertices) {
        for (std::size_t index = 0; index + 1 < vertices.size(); index += 2) {
            picture.extent.add(vertices[index], vertices[index + 1]);
        }
    });
    eachLabel(coverage, [&](const QxLabel& label) { picture.extent.add(label.x, label.y); });
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
    };
    return picture;
}

}  // namespace program
