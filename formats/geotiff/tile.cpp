#include "formats/geotiff/tile.h"

#include <stdexcept>

namespace formats::geotiff {

namespace {

constexpr uint64_t kHeaderBytes = 8;  // of a TIFF, in front of all else

struct Scheme {
    uint16_t code;
    bool predicts;
    const char* name;
};
constexpr Scheme kSchemes[] = {
    {COMPRESSION_ADOBE_DEFLATE, true, "DEFLATE"},
    {COMPRESSION_ZSTD, true, "Zstandard"},
    {COMPRESSION_LZW, true, "LZW"},
    {COMPRESSION_NONE, false, "none"},
};

}  // namespace

void describeTiles(const Tiff& tiff, const TileForm& form) {
    const Scheme& scheme = kSchemes[static_cast<std::size_t>(form.compression)];
    if (!TIFFIsCODECConfigured(scheme.code)) {
        throw std::runtime_error(std::string("the TIFF library of this system does not know ") +
                                 scheme.name);
    }
    tiff.set(TIFFTAG_BITSPERSAMPLE, static_cast<int>(bytesOf(form.type) * 8));
    const bool isSigned = form.type == CellType::kInt16 || form.type == CellType::kInt32;
    tiff.set(TIFFTAG_SAMPLEFORMAT, isReal(form.type) ? SAMPLEFORMAT_IEEEFP
                                   : isSigned        ? SAMPLEFORMAT_INT
                                                     : SAMPLEFORMAT_UINT);
    tiff.set(TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    tiff.set(TIFFTAG_TILEWIDTH, form.width);
    tiff.set(TIFFTAG_TILELENGTH, form.height);
    tiff.set(TIFFTAG_COMPRESSION, int{scheme.code});
    if (scheme.predicts) {
        tiff.set(TIFFTAG_PREDICTOR,
                 isReal(form.type) ? PREDICTOR_FLOATINGPOINT : PREDICTOR_HORIZONTAL);
    }
}

std::vector<std::byte> encoded(const TileForm& form, std::span<std::byte> cells) {
    // A TIFF of one tile, of which the tile is taken.
    Memory memory;
    memory.bytes().reserve(form.bytes() / 2);
    uint64_t count = 0;
    {
        const Tiff tiff(memory, "w");
        tiff.set(TIFFTAG_IMAGEWIDTH, form.width);
        tiff.set(TIFFTAG_IMAGELENGTH, form.height);
        tiff.set(TIFFTAG_SAMPLESPERPIXEL, 1);
        tiff.set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
        describeTiles(tiff, form);
        const auto size = static_cast<tmsize_t>(cells.size());
        tiff.must(TIFFWriteEncodedTile(tiff, 0, cells.data(), size) == size);
        tiff.must(TIFFGetStrileOffset(tiff, 0) == kHeaderBytes);
        count = TIFFGetStrileByteCount(tiff, 0);
    }
    // A directory of it stands behind.
    const auto start = memory.bytes().begin() + kHeaderBytes;
    return {start, start + static_cast<std::ptrdiff_t>(count)};
}

}  // namespace formats::geotiff
