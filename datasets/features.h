// The features of a coverage, a range for each of its files. Coordinates are in coverage units; in
// a coverage of single precision they are 32-bit reals, widened.
//
//     double length = 0;
//     for (const Arc& arc : arcs("workspace/roads")) length += lengthOf(arc.vertices);
//
// number is the number of the record in its file, from 1, where nothing else is said.
#ifndef DATASETS_FEATURES_H
#define DATASETS_FEATURES_H

#include <array>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

#include "datasets/point.h"
#include "datasets/range.h"
#include "host/qxfeat.h"

namespace datasets {

struct Arc {
    int32_t number = 0;  // that it was stored with
    int32_t userId = 0;
    int32_t fromNode = 0;
    int32_t toNode = 0;
    int32_t leftPolygon = 0;
    int32_t rightPolygon = 0;
    std::span<const Point> vertices;
};

// The same without its vertices.
struct ArcFront {
    int32_t number = 0;
    int32_t fromNode = 0;
    int32_t toNode = 0;
    int32_t leftPolygon = 0;
    int32_t rightPolygon = 0;
    int32_t vertexCount = 0;
};

struct Label {
    int32_t number = 0;
    int32_t userId = 0;
    int32_t polygon = 0;
    Point place;
    Box box{};  // as it was stored; no meaning is attached to it
};

struct Centroid {
    int32_t number = 0;
    Point place;
    std::span<const int32_t> labels;  // record numbers of the labels in the polygon
};

// One arc in the ring of a polygon: its number, negative where it is gone along backwards and 0
// where a ring ends and the next begins; the node it begins at; the polygon on its other side. The
// three pass through as they were stored, and may be anything.
struct RingArc {
    int32_t arc = 0;
    int32_t node = 0;
    int32_t polygon = 0;
};

struct Polygon {
    int32_t number = 0;
    Box box{};
    int32_t arcCount = 0;  // as it was stored: for a file of boxes alone it may be any number
    std::span<const RingArc> arcs;
};

struct Link {
    int32_t number = 0;
    Point from;
    Point to;
};

struct RegionPair {
    int32_t number = 0;  // that it was stored with
    std::array<int32_t, 2> pair{};
};

// The fields of an AnnoRecord (host/qxfeat/annotation.h), and the places of its text.
struct Annotation : AnnoRecord {
    int32_t number = 0;
    std::span<const Point> points;
    // The text without trailing blanks.
    std::string_view characters() const;
};

// The next record of an open file of features, its list in the room, which grows as it must. False
// behind the last.
bool readFeature(int32_t handle, Arc& arc, std::vector<Point>& room);
bool readFeature(int32_t handle, ArcFront& arc, std::vector<Point>& room);
bool readFeature(int32_t handle, Label& label, std::vector<Point>& room);
bool readFeature(int32_t handle, Centroid& centroid, std::vector<int32_t>& room);
bool readFeature(int32_t handle, Polygon& polygon, std::vector<RingArc>& room);
bool readFeature(int32_t handle, Link& link, std::vector<Point>& room);
bool readFeature(int32_t handle, RegionPair& pair, std::vector<Point>& room);
bool readFeature(int32_t handle, Annotation& annotation, std::vector<Point>& room);

// An open file of features: what its records are, what is in their list, and the operations that
// count them, go to one (null where there is none) and close the file.
template <class Feature, class Part, auto countOf, auto goTo, auto close>
class FeatureCursor {
  public:
    using Element = Feature;

    // The file that an operation opens, operation(handle, arguments..., status).
    template <class... Arguments>
    static FeatureCursor opened(const Arguments&... arguments) {
        FeatureCursor cursor;
        cursor.handle_ = Handle<close>::opened(arguments...);
        return cursor;
    }
    explicit operator bool() const { return bool(handle_); }
    bool next() { return handle_ && readFeature(handle_.number(), feature_, room_); }
    const Feature& current() const { return feature_; }
    int32_t count() const {
        int32_t records = 0;
        if (handle_) countOf(&handle_.number(), &records);
        return records;
    }
    bool go(int32_t record) {
        static_assert(!std::is_null_pointer_v<decltype(goTo)>,
                      "these records are read in their order alone");
        int32_t status = 1;
        if (handle_) goTo(&handle_.number(), &record, &status);
        if (status == 0) feature_.number = record - 1;
        return status == 0;
    }

  private:
    Handle<close> handle_;
    Feature feature_{};
    std::vector<Part> room_;
};

using Arcs = Range<FeatureCursor<Arc, Point, arcrec_, arcpos_, arccls_>>;
using ArcFronts = Range<FeatureCursor<ArcFront, Point, arcrec_, nullptr, arccls_>>;
using Labels = Range<FeatureCursor<Label, Point, labrec_, labpos_, labcls_>>;
using Centroids = Range<FeatureCursor<Centroid, int32_t, cntrec_, cntpos_, cntcls_>>;
using Polygons = Range<FeatureCursor<Polygon, RingArc, palrec_, palpos_, palcls_>>;
using Links = Range<FeatureCursor<Link, Point, lnkrec_, nullptr, lnkcls_>>;
using RegionPairs = Range<FeatureCursor<RegionPair, Point, rxprec_, nullptr, rxpcls_>>;
using Annotations = Range<FeatureCursor<Annotation, Point, annrec_, annpos_, anncls_>>;

// The files of polygons: those with their arcs, and those that were stored as boxes alone.
enum class PolygonSource : int32_t { arcs = QX_POLYGON_ARCS, boxes = QX_POLYGON_BOXES };

// The features of the coverage at a path, and of one of its subclasses ("" is the one without a
// name). A range is false where the coverage has no such file.
Arcs arcs(std::string_view coverage);
// Arcs without their vertices: what they name is read faster.
ArcFronts arcFronts(std::string_view coverage);
Labels labels(std::string_view coverage);
Centroids centroids(std::string_view coverage);
Polygons polygons(std::string_view coverage, PolygonSource source = PolygonSource::arcs);
Links links(std::string_view coverage);
Annotations annotations(std::string_view coverage, std::string_view subclass);
Polygons regions(std::string_view coverage, std::string_view subclass);
RegionPairs regionPairs(std::string_view coverage, std::string_view subclass);

}  // namespace datasets

#endif
