// A triangulated surface in a format of surfaces.
#ifndef APP_INTAKE_EXPORT_MESH_H
#define APP_INTAKE_EXPORT_MESH_H

#include "app/intake/export/export.h"
#include "app/intake/export/report.h"
#include "datasets/workspace.h"
#include "formats/mesh_writer.h"

namespace program {

// Nodes without a height, triangles that touch them and triangles that the mask hides are left out.
// Throws a std::runtime_error if the dataset is no surface.
formats::Mesh meshOf(const datasets::Dataset& dataset, const crs::ReferenceSystem& system,
                     const ExportOptions& options, ExportReport& report);

}  // namespace program

#endif
