// The size of a surface, for who shows it.
#ifndef APP_INTAKE_EXPORT_MESH_METRES_H
#define APP_INTAKE_EXPORT_MESH_METRES_H

#include <array>

#include "formats/mesh_writer.h"

namespace program {

// About how many metres a unit of x, y and z has, by the mesh's system.
//
// Heights whose unit is not named are taken for metres above degrees, and else to have that of
// their places. Where no unit is known at all, heights that would tower above their places are
// pressed together.
std::array<double, 3> metresOf(const formats::Mesh& mesh);

}  // namespace program

#endif
