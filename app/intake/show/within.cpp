#include "app/intake/show/within.h"

#include <charconv>
#include <stdexcept>

#include "app/intake/utf8.h"
#include "datasets/indexes.h"

namespace program {

namespace {

using datasets::Box;
using datasets::Indexed;

struct FeatureKind {
    const char* className;
    Indexed features;
};

constexpr FeatureKind kKinds[] = {
    {"arc", Indexed::arcs},         {"label", Indexed::points},
    {"polygon", Indexed::polygons}, {"annotation", Indexed::annotation},
    {"region", Indexed::regions},
};

}  // namespace

Box parseRectangle(const std::string& text) {
    Box box{};
    const char* place = text.data();
    const char* end = text.data() + text.size();
    for (std::size_t side = 0; side < 4; ++side) {
        const auto [next, error] = std::from_chars(place, end, box[side]);
        const bool separated = side < 3 ? next != end && *next == ',' : next == end;
        if (error != std::errc() || !separated) {
            throw std::runtime_error(text + ": no rectangle of the form XMIN,YMIN,XMAX,YMAX");
        }
        place = side < 3 ? next + 1 : next;
    }
    return box;
}

Description featuresWithin(const Dataset& dataset, const Box& rectangle) {
    if (dataset.kind != "Coverage") {
        throw std::runtime_error(dataset.path + ": a " + dataset.kind + " has no features to find");
    }
    Description answer = Description::array();
    for (const FeatureKind& kind : kKinds) {
        datasets::eachPart(dataset.path, kind.features, [&](std::string_view subclass) {
            const auto found =
                datasets::featuresWithin(dataset.path, kind.features, subclass, rectangle);
            if (!found) return;
            answer.push_back({{"class", kind.className},
                              {"subclass", toUtf8(subclass)},
                              {"found", found->records.size()},
                              {"by", found->byIndex ? "index" : "scan"},
                              {"records", found->records}});
        });
    }
    return answer;
}

Description describeWithin(const std::string& path, const std::string& kind,
                           const std::string& rectangle) {
    const Box box = parseRectangle(rectangle);
    const Dataset dataset = datasets::findDataset(path, kind);
    Description description;
    description["kind"] = dataset.kind;
    description["name"] = dataset.name;
    description["within"] = featuresWithin(dataset, box);
    return description;
}

}  // namespace program
