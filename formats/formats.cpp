#include "formats/formats.h"

#include <algorithm>

#include "formats/csv/csv.h"
#include "formats/geojson/geojson.h"
#include "formats/gltf/gltf.h"
#include "formats/names.h"
#include "formats/ply/ply.h"

namespace formats {

std::span<const Format> formats() {
    static const Format table[] = {
        {.name = "geopackage",
         .title = "GeoPackage",
         .endings = ".gpkg",
         .geometries = true,
         .rasters = false,
         .texts = true,
         .manyLayers = true,
         .folders = false,
         .wgs84 = false,
         .maker = nullptr,
         .module = "geopackage"},
        {.name = "geojson",
         .title = "GeoJSON",
         .endings = ".geojson .json",
         .geometries = true,
         .rasters = false,
         .texts = true,
         .manyLayers = true,
         .folders = true,
         .wgs84 = true,
         .maker = &geojson::collections(),
         .module = {}},
        {.name = "geojsonl",
         .title = "GeoJSON, one feature a line",
         .endings = ".geojsonl .ndjson .jsonl",
         .geometries = true,
         .rasters = false,
         .texts = false,
         .manyLayers = true,
         .folders = true,
         .wgs84 = true,
         .maker = &geojson::lines(),
         .module = {}},
        {.name = "csv",
         .title = "CSV",
         .endings = ".csv",
         .geometries = false,
         .rasters = false,
         .texts = true,
         .manyLayers = false,
         .folders = true,
         .wgs84 = false,
         .maker = &csv::tables(),
         .module = {}},
        {.name = "geotiff",
         .title = "GeoTIFF",
         .endings = ".tif .tiff",
         .geometries = false,
         .rasters = true,
         .texts = true,
         .manyLayers = true,
         .folders = true,
         .wgs84 = false,
         .maker = nullptr,
         .module = "geotiff"},
        {.name = "ply",
         .title = "PLY",
         .endings = ".ply",
         .geometries = false,
         .rasters = false,
         .texts = true,
         .manyLayers = true,
         .folders = false,
         .wgs84 = false,
         .maker = nullptr,
         .module = {},
         .meshes = &ply::writer()},
        {.name = "glb",
         .title = "glTF 2.0, binary",
         .endings = ".glb",
         .geometries = false,
         .rasters = false,
         .texts = true,
         .manyLayers = true,
         .folders = false,
         .wgs84 = false,
         .maker = nullptr,
         .module = {},
         .meshes = &gltf::writer()},
    };
    return table;
}

const Format* formatNamed(std::string_view name) {
    const auto found = std::ranges::find(formats(), name, &Format::name);
    return found == formats().end() ? nullptr : &*found;
}

const Format* formatOf(std::string_view path) {
    const auto found = std::ranges::find_if(
        formats(), [path](const Format& format) { return hasEnding(path, format.endings); });
    return found == formats().end() ? nullptr : &*found;
}

}  // namespace formats
