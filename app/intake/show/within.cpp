#include "app/intake/show/within.h"

#include <charconv>
#include <stdexcept>
#include <vector>

#include "app/intake/dump/subclass_walk.h"
#include "app/intake/utf8.h"
#include "host/cpp/call.h"
#include "host/qxfeat.h"

namespace program {

using qx::call;

namespace {

struct FeatureKind {
    const char* className;
    int32_t kind;
    int32_t subclassCode;  // of the files that belong to subclasses, 0 for none
};

constexpr FeatureKind kKinds[] = {
    {"arc", QX_INDEX_ARCS, 0},         {"label", QX_INDEX_POINTS, 0},
    {"polygon", QX_INDEX_POLYGONS, 0}, {"annotation", QX_INDEX_ANNOTATION, 16},
    {"region", QX_INDEX_REGIONS, 90},
};

bool meets(const Box& first, const Box& second) {
    return first[0] <= second[2] && second[0] <= first[2] && first[1] <= second[3] &&
           second[1] <= first[3];
}

// The records that the index names. False if there is none that speaks of all features.
bool askIndex(const Dataset& dataset, int32_t kind, std::string_view subclass, int32_t records,
              const Box& rectangle, std::vector<int32_t>& candidates) {
    int32_t index = 0;
    int32_t status = 0;
    call(spxopn_, index, std::string_view(dataset.path), subclass, kind, status);
    if (status != 0) return false;
    int32_t indexed = 0;
    int32_t nodes = 0;
    int32_t blocks = 0;
    int32_t count = 0;
    Box extent;
    call(spxhdr_, index, indexed, extent, nodes, blocks);
    call(spxask_, index, rectangle, count, status);
    const bool usable = status == 0 && indexed == records;
    for (int32_t record = 0; usable;) {
        call(spxnxt_, index, record, status);
        if (status != 0) break;
        candidates.push_back(record);
    }
    call(spxcls_, index);
    return usable;
}

void search(const Dataset& dataset, const FeatureKind& kind, std::string_view subclass,
            const Box& rectangle, Description& answer) {
    const auto features = openFeatureBoxes(dataset.path, kind.kind, subclass);
    if (!features) return;
    Description records = Description::array();
    Box box{};
    std::vector<int32_t> candidates;
    const bool indexed =
        askIndex(dataset, kind.kind, subclass, features->count(), rectangle, candidates);
    if (indexed) {
        for (const int32_t record : candidates) {
            if (features->go(record) && features->next(box) && meets(box, rectangle)) {
                records.push_back(record);
            }
        }
    } else {
        for (int32_t record = 1; features->next(box); ++record) {
            if (meets(box, rectangle)) records.push_back(record);
        }
    }
    answer.push_back({{"class", kind.className},
                      {"subclass", toUtf8(subclass)},
                      {"found", records.size()},
                      {"by", indexed ? "index" : "scan"},
                      {"records", std::move(records)}});
}

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
        if (kind.subclassCode == 0) {
            search(dataset, kind, "", rectangle, answer);
        } else {
            eachSubclass(dataset.path, kind.subclassCode, [&](std::string_view subclass) {
                search(dataset, kind, subclass, rectangle, answer);
            });
        }
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
