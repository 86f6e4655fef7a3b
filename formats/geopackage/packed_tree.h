// An R-tree of SQLite, built from below: boxes are sorted along a curve, packed 51 to a node, and
// the nodes are put straight into the tables that SQLite keeps the tree in.
//
// A node is a blob of 1,228 bytes, big-endian:
//   16 bits  depth of the tree in the root, which is node 1; nothing in the others
//   16 bits  the number of cells
//   cells    of 24 bytes: 64 bits for the row (in a leaf) or the node below, then minx, maxx, miny,
//            maxy as 32-bit reals that were rounded away from the box
#ifndef FORMATS_GEOPACKAGE_PACKED_TREE_H
#define FORMATS_GEOPACKAGE_PACKED_TREE_H

#include <cstdint>
#include <string>

#include "formats/geopackage/database.h"
#include "formats/geopackage/geometry_blob.h"
#include "formats/geopackage/sorter.h"

namespace formats::geopackage {

class PackedTree {
  public:
    // Where a file for sorting would be made, and whose name failures have.
    PackedTree(const std::string& path, const std::string& target);

    // Each row once.
    void add(int64_t row, const Box& box);
    // Makes the virtual table with this name and all that is below it.
    void build(Database& database, const std::string& name, const Box& extent);

    struct Entry {
        int64_t id;
        float minX, maxX, minY, maxY;
    };

  private:
    struct Place {
        int64_t row;
        int64_t node;
    };

    Sorter<Entry> entries_;
    Sorter<Place> places_;
};

}  // namespace formats::geopackage

#endif
