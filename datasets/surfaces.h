// Triangulated surfaces: their environment, nodes, triangles, hull and mask. A member of a surface
// may be missing, or shorter than the environment says: what is there is shown.
#ifndef DATASETS_SURFACES_H
#define DATASETS_SURFACES_H

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "datasets/point.h"
#include "datasets/range.h"
#include "host/qxbase/tins.h"
#include "host/qxgridio/nodata.h"

namespace datasets {

// Its version as an integer such as 60100.
inline int32_t versionOf(const QxTinEnvironment& environment) {
    return tinver_(&environment.version);
}

// An open surface; false if the path is none.
class Surface {
  public:
    Surface() = default;
    explicit Surface(std::string_view path) : handle_(Handle<tincls_>::opened(tinopn_, path)) {}
    explicit operator bool() const { return bool(handle_); }
    // Counts, range of heights and box as the surface says them; nothing if they are not there.
    std::optional<QxTinEnvironment> environment() const;
    // Reads at most capacity records from a number on; gives how many.
    int32_t read(QxTinMember member, int64_t first, int32_t capacity, void* records) const;

  private:
    Handle<tincls_> handle_;
};

// The records of one member, read in blocks.
template <class Record>
class Member {
  public:
    explicit Member(QxTinMember member) : member_(member) {}
    // The next record; null behind the last.
    const Record* next(const Surface& surface) {
        if (place_ == used_) {
            // A block that was not full is the last.
            if (used_ != static_cast<int32_t>(block_.size())) return nullptr;
            constexpr int32_t kBlock = 1024;
            block_.resize(kBlock);
            first_ += used_;
            used_ = surface.read(member_, first_, kBlock, block_.data());
            place_ = 0;
            if (used_ == 0) return nullptr;
        }
        return &block_[static_cast<std::size_t>(place_++)];
    }

  private:
    QxTinMember member_;
    int64_t first_ = 1;
    int32_t used_ = 0;
    int32_t place_ = 0;
    std::vector<Record> block_;
};

// A node by what its members hold of it: null where one is at its end.
struct Node {
    int64_t number = 0;  // from 1
    const Point* place = nullptr;
    const float* height = nullptr;  // in the surface's own unit, or MISSINGFLOAT
    const int32_t* identifier = nullptr;

    bool hasHeight() const { return height && *height != MISSINGFLOAT; }
};

class NodeCursor {
  public:
    using Element = Node;
    NodeCursor() = default;
    explicit NodeCursor(std::string_view path) : surface_(path) {}
    explicit operator bool() const { return bool(surface_); }
    bool next();
    const Node& current() const { return node_; }

  private:
    Surface surface_;
    Member<Point> places_{QX_TIN_NODE_XY};
    Member<float> heights_{QX_TIN_NODE_Z};
    Member<int32_t> identifiers_{QX_TIN_NODE_ID};
    Node node_;
};

// Nodes, triangle corners and edges count from 1; 0 or a negative edge has no triangle beyond it.
using Triple = std::array<int32_t, 3>;
struct Triangle {
    int64_t number = 0;  // from 1
    const Triple* nodes = nullptr;
    const Triple* edges = nullptr;
};

class TriangleCursor {
  public:
    using Element = Triangle;
    TriangleCursor() = default;
    explicit TriangleCursor(std::string_view path) : surface_(path) {}
    explicit operator bool() const { return bool(surface_); }
    bool next();
    const Triangle& current() const { return triangle_; }

  private:
    Surface surface_;
    Member<Triple> nodes_{QX_TIN_TRIANGLE_NODES};
    Member<Triple> edges_{QX_TIN_TRIANGLE_EDGES};
    Triangle triangle_;
};

// A member of single words.
template <class Word>
class SingleCursor {
  public:
    using Element = Word;
    SingleCursor() = default;
    SingleCursor(std::string_view path, QxTinMember member) : surface_(path), words_(member) {}
    explicit operator bool() const { return bool(surface_); }
    bool next() { return (word_ = words_.next(surface_)) != nullptr; }
    const Word& current() const { return *word_; }

  private:
    Surface surface_;
    Member<Word> words_{QX_TIN_HULL};
    const Word* word_ = nullptr;
};

inline Range<NodeCursor> nodes(std::string_view path) { return NodeCursor(path); }
inline Range<TriangleCursor> triangles(std::string_view path) { return TriangleCursor(path); }
// The hull's numbers in their order.
inline Range<SingleCursor<int32_t>> hull(std::string_view path) { return {path, QX_TIN_HULL}; }
// A bit a triangle in words of 32, the highest bit first; zeros may follow the last.
inline Range<SingleCursor<uint32_t>> mask(std::string_view path) { return {path, QX_TIN_MASK}; }

}  // namespace datasets

#endif
