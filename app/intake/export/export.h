// intake export: a dataset in a format that other programs open.
#ifndef APP_INTAKE_EXPORT_EXPORT_H
#define APP_INTAKE_EXPORT_EXPORT_H

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/intake/console.h"
#include "datasets/point.h"

namespace program {

// What --type and --compress may say, in the order of formats::CellType and formats::Compression.
inline constexpr const char* kCellTypes[] = {"uint8", "int16",   "uint16",
                                             "int32", "float32", "float64"};
inline constexpr const char* kCompressions[] = {"deflate", "zstd", "lzw", "none"};

struct ExportOptions {
    std::string dataset;
    std::string output;
    std::string kind;                       // as --kind has it
    std::string format;                     // a name of formats.h; empty: by the output's ending
    std::vector<std::string> layers;        // only these; empty: all
    std::optional<datasets::Box> within;    // only features that meet it
    std::string system;                     // a reference system by hand, "EPSG:n"
    std::string encoding = "windows-1252";  // of texts that are not UTF-8
    bool redefined = true;                  // columns that name bytes of other columns once more
    bool replace = false;                   // an output that is there already
    bool asIs = false;                      // coordinates into GeoJSON without turning them
    bool wellKnownText = false;             // geometries into CSV
    bool ascii = false;                     // PLY as text
    std::string cellType;                   // "int16"; empty: the smallest that holds all
    std::string compression = "deflate";    // of rasters
    std::optional<bool> cloud;              // GeoTIFF with overviews; empty: of large rasters
    bool bands = false;                     // a stack as one raster
    bool rastersElsewhere = false;          // what has no place for one loses nothing by it
    bool json = false;                      // the report as one object
    bool quiet = false;                     // errors only
};

// What a format, or any, cannot hold because of what kind of dataset it is.
struct NotForThisKind : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Writes the output and tells, a line a layer, what is in it; gives the exit status.
int exportDataset(const ExportOptions& options, Console& console);

}  // namespace program

#endif
