// Features in a rectangle: through the index, or by a look at the box of each.
#include <algorithm>

#include "datasets/features.h"
#include "datasets/indexes.h"

namespace datasets {

namespace {

Box boxOf(const Label& label) {
    return {label.place.x, label.place.y, label.place.x, label.place.y};
}

Box boxOf(const Polygon& polygon) { return polygon.box; }

Box boxOf(const Arc& arc) {
    Box box{};
    qx::call(boxfd2_, coordinates(arc.vertices), static_cast<int32_t>(arc.vertices.size()), box);
    return box;
}

// The boxes of the records of a range.
template <class Features>
class Boxes {
  public:
    explicit Boxes(Features features) : features_(std::move(features)) {}
    explicit operator bool() const { return bool(features_); }
    int32_t count() const { return features_.count(); }
    bool go(int32_t record) { return features_.go(record); }
    // The box of the next record; null behind the last.
    const Box* next() {
        if (!features_.next()) return nullptr;
        box_ = boxOf(features_.current());
        return &box_;
    }

  private:
    Features features_;
    Box box_{};
};

// An annotation without points lies where the one before it does.
template <>
class Boxes<Annotations> {
  public:
    explicit Boxes(Annotations features) : features_(std::move(features)) {}
    explicit operator bool() const { return bool(features_); }
    int32_t count() const { return features_.count(); }
    bool go(int32_t record) {
        int32_t first = record;
        bool placed = false;
        while (first > known_ + 1 && !placed) {
            const Annotation* before = features_.at(--first);
            if (!before) return false;
            placed = before->pointCount != 0;
        }
        if (first <= 1) box_ = {};
        if (!features_.go(first)) return false;
        for (; first < record; ++first) {
            if (!next()) return false;
        }
        known_ = record - 1;
        return true;
    }
    const Box* next() {
        if (!features_.next()) return nullptr;
        const Annotation& annotation = features_.current();
        const AnnoRecord& record = annotation;
        qx::call(annbox_, record, coordinates(annotation.points), box_);
        known_ = annotation.number;
        return &box_;
    }

  private:
    Annotations features_;
    Box box_{};
    int32_t known_ = 0;  // the record whose box is at hand
};

template <class Features, class OpenIndex>
std::optional<Found> search(Features features, OpenIndex openIndex, const Box& rectangle) {
    Boxes boxes(std::move(features));
    if (!boxes) return std::nullopt;
    Found found;
    const int32_t records = boxes.count();
    const Index index = openIndex();
    const auto candidates = index.ask(rectangle);
    found.byIndex = candidates && index.recordCount() == records;
    if (found.byIndex) {
        for (const int32_t record : *candidates) {
            const Box* box = boxes.go(record) ? boxes.next() : nullptr;
            if (box && meets(*box, rectangle)) found.records.push_back(record);
        }
    } else {
        int32_t record = 1;
        for (const Box* box; (box = boxes.next()) != nullptr; ++record) {
            if (meets(*box, rectangle)) found.records.push_back(record);
        }
    }
    return found;
}

}  // namespace

std::optional<Found> featuresWithin(std::string_view coverage, Indexed what,
                                    std::string_view subclass, const Box& rectangle) {
    const auto index = [&] { return indexOf(coverage, what, subclass); };
    switch (what) {
        case Indexed::points:
            return search(labels(coverage), index, rectangle);
        case Indexed::arcs:
            return search(arcs(coverage), index, rectangle);
        case Indexed::polygons:
            return search(polygons(coverage), index, rectangle);
        case Indexed::annotation:
            return search(annotations(coverage, subclass), index, rectangle);
        default:
            return search(regions(coverage, subclass), index, rectangle);
    }
}

}  // namespace datasets
