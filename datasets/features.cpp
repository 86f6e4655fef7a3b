#include "datasets/features.h"

#include <algorithm>

#include "host/qxbase/names.h"

namespace datasets {

using qx::call;

namespace {

constexpr int32_t kRegionCode = 90;
constexpr std::size_t kUsualParts = 500;

// Reads a record that has a list, again where the list had no room: read(parts, capacity, wanted)
// gives the operation's status and how many parts the record has.
template <class Part, class Read>
bool readWithList(std::vector<Part>& room, std::span<const Part>& list, Read read) {
    if (room.empty()) room.resize(kUsualParts);
    int32_t wanted = 0;
    int32_t status = 1;
    while ((status = read(room.data(), static_cast<int32_t>(room.size()), wanted)) > 0) {
        room.resize(static_cast<std::size_t>(wanted));
    }
    list = {};
    if (status == 0) list = std::span(room).first(static_cast<std::size_t>(wanted));
    return status == 0;
}

}  // namespace

std::string_view Annotation::characters() const {
    return qx::textArgument(text, std::min(textLength, int32_t{QX_ANNO_CHARACTERS}));
}

bool readFeature(int32_t handle, Arc& arc, std::vector<Point>& room) {
    return readWithList(room, arc.vertices, [&](Point* points, int32_t capacity, int32_t& wanted) {
        QxArc record{};
        int32_t status = 0;
        call(arcrd_, handle, arc.number, record, &points->x, capacity, status);
        arc.userId = record.userId;
        arc.fromNode = record.fromNode;
        arc.toNode = record.toNode;
        arc.leftPolygon = record.leftPolygon;
        arc.rightPolygon = record.rightPolygon;
        wanted = record.vertexCount;
        return status;
    });
}

bool readFeature(int32_t handle, ArcFront& arc, std::vector<Point>&) {
    constexpr int32_t kFrontAlone = -1;
    QxArc record{};
    int32_t status = 0;
    double none = 0;
    call(arcrd_, handle, arc.number, record, &none, kFrontAlone, status);
    arc.fromNode = record.fromNode;
    arc.toNode = record.toNode;
    arc.leftPolygon = record.leftPolygon;
    arc.rightPolygon = record.rightPolygon;
    arc.vertexCount = record.vertexCount;
    return status == 0;
}

bool readFeature(int32_t handle, Label& label, std::vector<Point>&) {
    QxLabel record{};
    int32_t status = 0;
    call(labrd_, handle, label.number, record, status);
    label.userId = record.userId;
    label.polygon = record.polygon;
    label.place = {record.x, record.y};
    std::copy_n(record.box, 4, label.box.begin());
    return status == 0;
}

bool readFeature(int32_t handle, Centroid& centroid, std::vector<int32_t>& room) {
    return readWithList(room, centroid.labels, [&](int32_t* labels, int32_t size, int32_t& wanted) {
        QxCentroid record{};
        int32_t status = 0;
        call(cntrd_, handle, centroid.number, record, labels, size, status);
        centroid.place = {record.x, record.y};
        wanted = record.labelCount;
        return status;
    });
}

bool readFeature(int32_t handle, Polygon& polygon, std::vector<RingArc>& room) {
    constexpr int32_t kAtOnce = 1000;
    QxPolygon record{};
    int32_t status = 0;
    // Without room for arcs the record is read alone; they follow in as many pieces as it takes,
    // for the count of a file of boxes says nothing of them.
    int32_t none = 0;
    call(palrd_, handle, polygon.number, record, &none, 0, status);
    std::copy_n(record.box, 4, polygon.box.begin());
    polygon.arcCount = record.arcCount;
    std::size_t arcs = 0;
    for (int32_t count = status == 0 ? 1 : 0; count != 0; arcs += static_cast<std::size_t>(count)) {
        if (room.size() < arcs + kAtOnce) room.resize(arcs + std::max(arcs, std::size_t{kAtOnce}));
        call(palrdm_, handle, &room[arcs].arc, kAtOnce, count);
    }
    polygon.arcs = std::span(room).first(arcs);
    return status == 0;
}

bool readFeature(int32_t handle, Link& link, std::vector<Point>&) {
    std::array<double, 4> ends{};
    int32_t status = 0;
    call(lnkrd_, handle, link.number, ends, status);
    link.from = {ends[0], ends[1]};
    link.to = {ends[2], ends[3]};
    return status == 0;
}

bool readFeature(int32_t handle, RegionPair& pair, std::vector<Point>&) {
    int32_t status = 0;
    call(rxprd_, handle, pair.number, pair.pair, status);
    return status == 0;
}

bool readFeature(int32_t handle, Annotation& annotation, std::vector<Point>& room) {
    ++annotation.number;
    return readWithList(room, annotation.points,
                        [&](Point* points, int32_t capacity, int32_t& wanted) {
                            AnnoRecord& record = annotation;
                            int32_t status = 0;
                            call(annrd_, handle, record, &points->x, capacity, status);
                            wanted = annotation.pointCount;
                            return status;
                        });
}

Arcs arcs(std::string_view coverage) { return Arcs::opened(arcopn_, coverage); }

ArcFronts arcFronts(std::string_view coverage) { return ArcFronts::opened(arcopn_, coverage); }
Labels labels(std::string_view coverage) { return Labels::opened(labopn_, coverage); }
Centroids centroids(std::string_view coverage) { return Centroids::opened(cntopn_, coverage); }
Links links(std::string_view coverage) { return Links::opened(lnkopn_, coverage); }

Polygons polygons(std::string_view coverage, PolygonSource source) {
    return Polygons::opened(palopn_, coverage, 1, static_cast<int32_t>(source));
}

Polygons regions(std::string_view coverage, std::string_view subclass) {
    qx::Name path;
    call(fname_, coverage, subclass, path, kRegionCode);
    return Polygons::opened(palopn_, path.view(), 1, int32_t{QX_POLYGON_PATH});
}

Annotations annotations(std::string_view coverage, std::string_view subclass) {
    return Annotations::opened(annopn_, coverage, subclass);
}

RegionPairs regionPairs(std::string_view coverage, std::string_view subclass) {
    return RegionPairs::opened(rxpopn_, coverage, subclass);
}

}  // namespace datasets
