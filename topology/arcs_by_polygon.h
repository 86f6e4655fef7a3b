// The lists of arcs of polygons that have none stored, out of the polygons left and right of all
// arcs.
#ifndef TOPOLOGY_ARCS_BY_POLYGON_H
#define TOPOLOGY_ARCS_BY_POLYGON_H

#include <cstdint>
#include <span>
#include <vector>

namespace topology {

class ArcsByPolygon {
  public:
    // Takes memory for so many arcs at once.
    void expect(std::size_t arcs) { sides_.reserve(2 * arcs); }
    // Arcs have numbers from 1; any order will do. An arc with the same polygon on both sides is in
    // no list; neither are polygons with numbers below 1.
    void add(int32_t arc, int32_t left, int32_t right);
    // When all arcs are added. Eight bytes are kept for each arc, and thrice that on the way.
    void finish();

    // The arcs of a polygon as Assembler takes them, in the order in which they were added; empty
    // if it has none.
    std::span<const int32_t> of(int32_t polygon) const;
    // The polygons that have arcs, ascending.
    std::span<const int32_t> polygons() const { return polygons_; }

  private:
    void placeByNumber(std::size_t most);
    void placeSorted();

    struct Side {
        int32_t polygon;
        int32_t arc;
    };
    std::vector<Side> sides_;
    std::vector<int32_t> polygons_;
    std::vector<std::size_t> ends_;
    std::vector<int32_t> arcs_;
};

}  // namespace topology

#endif
