// A raster as writers take it: what its cells are, where they lie, and who gives them.
#ifndef FORMATS_RASTER_H
#define FORMATS_RASTER_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "crs/reference_system.h"

namespace formats {

enum class CellType { kUInt8, kInt16, kUInt16, kInt32, kFloat32, kFloat64 };

constexpr std::size_t bytesOf(CellType type) {
    constexpr std::array<std::size_t, 6> kBytes = {1, 2, 2, 4, 4, 8};
    return kBytes[static_cast<std::size_t>(type)];
}
constexpr bool isReal(CellType type) { return type >= CellType::kFloat32; }

// Calls take with a value of the type of the cells.
template <class Take>
decltype(auto) withCell(CellType type, Take take) {
    switch (type) {
        case CellType::kUInt8:
            return take(uint8_t{});
        case CellType::kInt16:
            return take(int16_t{});
        case CellType::kUInt16:
            return take(uint16_t{});
        case CellType::kInt32:
            return take(int32_t{});
        case CellType::kFloat32:
            return take(float{});
        default:
            return take(double{});
    }
}

struct Raster {
    std::string name;
    std::string description;

    int32_t columns = 0;  // from 1
    int32_t rows = 0;     // from 1
    CellType type = CellType::kInt32;
    std::optional<double> noData;  // what cells without data hold
    bool classes = false;          // nothing lies between two values

    // Values hold at points of a mesh, and the place is that of the first one. Otherwise they hold
    // for areas, and the place is the upper left corner of the first one.
    bool points = false;
    std::array<double, 2> place{};
    std::array<double, 2> cellSize{};  // width, height
    crs::ReferenceSystem system;

    struct Band {
        std::string name;
        std::optional<std::array<double, 2>> range;  // lowest and highest value
    };
    std::vector<Band> bands;

    // Gives a row, from 0 at the top, of a band from 0: as many cells as there are columns. Rows
    // are asked for from the top down, those of a band at least once and at most twice.
    std::function<void(std::size_t band, int32_t row, std::span<std::byte> cells)> read;
    // Told what a format keeps in a way that programs do not understand; may be empty.
    std::function<void(const std::string& what)> tell;
};

// How the bytes of cells are made fewer.
enum class Compression { kDeflate, kZstd, kLzw, kNone };

struct RasterOptions {
    Compression compression = Compression::kDeflate;
    // GeoTIFF: laid out for readers over HTTP, with overviews. Where nothing is said, from 2048
    // cells a side up.
    std::optional<bool> cloud;
    // How many threads compress; 0 for as many as there are processors. The output is the same.
    std::size_t workers = 0;
};

}  // namespace formats

#endif
