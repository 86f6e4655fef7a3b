// glTF 2.0 binary: one node whose mesh has the triangles, and the hull and break lines as lines.
// Positions are 32-bit reals about a local origin, which the node's extras keep with the units, the
// reference system and the texts. The node is turned so that z points upwards, and scaled to
// metres. The codes of nodes are the attribute _CODE: their low and their high 16 bits.
#ifndef FORMATS_GLTF_GLTF_H
#define FORMATS_GLTF_GLTF_H

#include "formats/mesh_writer.h"

namespace formats::gltf {

const MeshWriter& writer();

}  // namespace formats::gltf

#endif
