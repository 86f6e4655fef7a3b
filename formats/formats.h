// The formats that there are, one row each.
#ifndef FORMATS_FORMATS_H
#define FORMATS_FORMATS_H

#include <span>
#include <string_view>

#include "formats/mesh_writer.h"
#include "formats/writer.h"

namespace formats {

struct Format {
    std::string_view name;     // as --format has it
    std::string_view title;    // for people
    std::string_view endings;  // of file names, the usual one first, between blanks

    // What it can hold.
    bool geometries;
    bool rasters;
    bool texts;
    bool manyLayers;  // in one file
    bool folders;     // Options::folder: one file a layer
    // Coordinates have to be longitude and latitude.
    bool wgs84;

    // How it is made: by a maker at hand, or else by a module of this name.
    const WriterMaker* maker;
    std::string_view module;
    // A format of surfaces has this instead, and no layers.
    const MeshWriter* meshes = nullptr;
};

std::span<const Format> formats();
// Null if there is no such format.
const Format* formatNamed(std::string_view name);
// By the ending of a path, regardless of case. Null if no format has it.
const Format* formatOf(std::string_view path);

}  // namespace formats

#endif
