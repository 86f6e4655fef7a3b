// PLY: vertices with 64-bit reals and their codes, triangles as faces, hull and break lines as
// edges; binary with the lowest byte first, or as text.
#ifndef FORMATS_PLY_PLY_H
#define FORMATS_PLY_PLY_H

#include "formats/mesh_writer.h"

namespace formats::ply {

const MeshWriter& writer();

}  // namespace formats::ply

#endif
