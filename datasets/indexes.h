// The spatial indexes of a coverage, as they are stored and as they answer a rectangle.
#ifndef DATASETS_INDEXES_H
#define DATASETS_INDEXES_H

#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "datasets/coverage.h"
#include "datasets/point.h"
#include "datasets/range.h"
#include "host/qxfeat/index.h"

namespace datasets {

// Features that have an index; annotation and regions have one for each subclass.
enum class Indexed : int32_t {
    points = QX_INDEX_POINTS,
    arcs = QX_INDEX_ARCS,
    polygons = QX_INDEX_POLYGONS,
    annotation = QX_INDEX_ANNOTATION,
    regions = QX_INDEX_REGIONS
};

// Calls visit(subclass) for each part of the features that has an index of its own: once, with "",
// where there are no subclasses.
template <class Visit>
void eachPart(std::string_view coverage, Indexed what, Visit visit) {
    if (what == Indexed::annotation || what == Indexed::regions) {
        const auto files = what == Indexed::regions ? Subclassed::regions : Subclassed::annotation;
        for (const std::string& name : subclasses(coverage, files)) visit(std::string_view(name));
    } else {
        visit(std::string_view());
    }
}

// A block of entries, by its number in the file, from 2.
struct IndexBlock {
    int32_t number = 0;
    // The packed box and the number of a record: one byte a side, xmin, the highest, ymin, xmax and
    // ymax, in 256ths of the extent.
    std::span<const std::array<int32_t, 2>> entries;
};

class IndexCursor {
  public:
    using Element = IndexBlock;
    IndexCursor(std::string_view coverage, Indexed what, std::string_view subclass);
    explicit operator bool() const { return bool(handle_); }
    bool next();
    const IndexBlock& current() const { return block_; }

    int32_t recordCount() const { return recordCount_; }  // of the features
    const Box& extent() const { return extent_; }         // that it was built for
    int32_t nodeCount() const { return nodes_; }
    // A node, from 1: its first block and how many entries it has; zeros for an empty one.
    std::array<int32_t, 2> node(int32_t number) const;
    // The records whose boxes may meet a rectangle, the lowest first; none of those that do is
    // missing. Nothing if a part of the index could not be read.
    std::optional<std::vector<int32_t>> ask(const Box& rectangle) const;

  private:
    Handle<spxcls_> handle_;
    int32_t recordCount_ = 0;
    Box extent_{};
    int32_t nodes_ = 0;
    int32_t blocks_ = 0;
    IndexBlock block_{1, {}};
    std::vector<std::array<int32_t, 2>> entries_;
};

// An index is the range of its blocks; false if there is none that can be read.
using Index = Range<IndexCursor>;
inline Index indexOf(std::string_view coverage, Indexed what, std::string_view subclass = {}) {
    return {coverage, what, subclass};
}

// The features whose box meets a rectangle, by their record numbers, the lowest first; and whether
// the index found them or, where there is none that speaks of all records, a look at each.
struct Found {
    std::vector<int32_t> records;
    bool byIndex = false;
};

// Nothing if the coverage has no such features.
std::optional<Found> featuresWithin(std::string_view coverage, Indexed what,
                                    std::string_view subclass, const Box& rectangle);

}  // namespace datasets

#endif
