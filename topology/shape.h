// What an area is made into: polygons of rings, and the lines that no ring could be made of.
#ifndef TOPOLOGY_SHAPE_H
#define TOPOLOGY_SHAPE_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "topology/arc_source.h"

namespace topology {

enum class Reason {
    MissingArc,      // the list names an arc that is not there
    RepeatedArc,     // the list has an arc more than once in one direction; it is taken once
    BadCoordinates,  // an arc has a coordinate that is no finite number, or fewer than two vertices
    Unclosed,        // lines that end where nothing goes on
    NoArea,          // a ring that encloses nothing
    CrossesItself,   // a ring with two edges that cross, as far as they are looked for
    Misplaced,       // a hole outside all outer rings, or a ring directly inside one of its kind
};

// "names an arc that is not there", to follow "polygon 12 ".
std::string_view words(Reason reason);

class Shape {
  public:
    // How many rings each polygon has: its outer one, and its holes behind it.
    std::vector<uint32_t> ringCounts;

    std::size_t rings() const { return ringEnds_.size(); }
    // A ring ends where it begins, bit for bit. Outer rings go counter-clockwise, holes clockwise.
    std::span<const Point> ring(std::size_t index) const {
        return piece(points_, ringEnds_, index);
    }

    // What was left out of the rings, in the order in which it was found.
    struct Problem {
        Reason reason{};
        int32_t arc = 0;  // the one that it is about; 0 if it is about several
        // First of its lines, and how many there are: none of an arc that is not there or has been
        // taken all the same.
        std::size_t firstLine = 0;
        std::size_t lines = 0;
    };
    std::vector<Problem> problems;
    std::size_t lines() const { return lineEnds_.size(); }
    std::span<const Point> line(std::size_t index) const {
        return piece(linePoints_, lineEnds_, index);
    }

    bool empty() const { return ringCounts.empty() && problems.empty(); }
    // Empties it and keeps its room.
    void clear();

    // To fill it: points of a ring or a line, then its end.
    std::vector<Point>& points() { return points_; }
    void endRing() { ringEnds_.push_back(points_.size()); }
    std::vector<Point>& linePoints() { return linePoints_; }
    void endLine() { lineEnds_.push_back(linePoints_.size()); }

  private:
    static std::span<const Point> piece(const std::vector<Point>& points,
                                        const std::vector<std::size_t>& ends, std::size_t index) {
        const std::size_t begin = index == 0 ? 0 : ends[index - 1];
        return std::span(points).subspan(begin, ends[index] - begin);
    }

    std::vector<Point> points_;
    std::vector<std::size_t> ringEnds_;
    std::vector<Point> linePoints_;
    std::vector<std::size_t> lineEnds_;
};

}  // namespace topology

#endif
