// Makes the area of a list of arcs. One assembler serves any number of lists, one after the other,
// and needs memory for the largest of them, and a megabyte for arcs that may come again.
//
// A list names the arcs around an area, each in the direction in which the area lies to its right:
// the number of an arc for its stored direction, minus the number for the other. The order does not
// matter, and neither do zeros, which part the rings in stored lists. An arc that is named in both
// directions has the area on both sides; it drops out. So the lists of several polygons, one behind
// the other, make their union, as a region has it.
//
// Arcs join where their ends have the same coordinates. Rings turn at each joint as the area does,
// and touch each other, never themselves, at joints.
#ifndef TOPOLOGY_ASSEMBLER_H
#define TOPOLOGY_ASSEMBLER_H

#include <cstdint>
#include <memory>
#include <span>

#include "topology/arc_source.h"
#include "topology/shape.h"

namespace topology {

class Assembler {
  public:
    // The source has to outlive the assembler, and its arcs stay what they are meanwhile.
    explicit Assembler(ArcSource& arcs);
    ~Assembler();
    Assembler(const Assembler&) = delete;
    Assembler& operator=(const Assembler&) = delete;

    // The shape is replaced; it stays as it is until the next call. Never fails but for want of
    // memory. Time goes with the number of vertices, times the logarithm of the number of arcs and
    // rings. A list whose rings all go the wrong way round is taken the other way round.
    const Shape& assemble(std::span<const int32_t> list);

  private:
    struct Work;
    std::unique_ptr<Work> work_;
};

}  // namespace topology

#endif
