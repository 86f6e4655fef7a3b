// What a TIFF holds, as libtiff reads it.
#ifndef TESTS_SUPPORT_TIFF_CELLS_H
#define TESTS_SUPPORT_TIFF_CELLS_H

#include <tiffio.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace intake::testing {

struct TiffImage {
    uint32_t columns = 0;
    uint32_t rows = 0;
    uint16_t bits = 0;
    uint16_t format = 0;
    uint16_t bands = 0;
    uint64_t offset = 0;                     // of its directory
    std::vector<std::vector<double>> cells;  // by band, row by row
    std::vector<uint64_t> tiles;             // where they lie

    double at(uint32_t column, uint32_t row, std::size_t band = 0) const {
        return cells[band][std::size_t{row} * columns + column];
    }
};

template <class Cell>
double cellAs(const std::byte* bytes) {
    Cell cell;
    std::memcpy(&cell, bytes, sizeof cell);
    return static_cast<double>(cell);
}

inline double cellOf(const TiffImage& image, const std::byte* bytes) {
    if (image.format == SAMPLEFORMAT_IEEEFP) {
        return image.bits == 32 ? cellAs<float>(bytes) : cellAs<double>(bytes);
    }
    if (image.bits == 8) return cellAs<uint8_t>(bytes);
    if (image.bits == 32) return cellAs<int32_t>(bytes);
    return image.format == SAMPLEFORMAT_INT ? cellAs<int16_t>(bytes) : cellAs<uint16_t>(bytes);
}

inline TiffImage imageOf(TIFF* tiff) {
    TiffImage image;
    uint32_t width = 0, height = 0;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &image.columns);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &image.rows);
    TIFFGetField(tiff, TIFFTAG_BITSPERSAMPLE, &image.bits);
    TIFFGetField(tiff, TIFFTAG_SAMPLEFORMAT, &image.format);
    TIFFGetField(tiff, TIFFTAG_SAMPLESPERPIXEL, &image.bands);
    TIFFGetField(tiff, TIFFTAG_TILEWIDTH, &width);
    TIFFGetField(tiff, TIFFTAG_TILELENGTH, &height);
    image.offset = TIFFCurrentDirOffset(tiff);
    image.cells.resize(image.bands, std::vector<double>(std::size_t{image.columns} * image.rows));
    std::vector<std::byte> tile(static_cast<std::size_t>(TIFFTileSize(tiff)));
    const uint32_t across = (image.columns + width - 1) / width;
    const uint32_t perBand = TIFFNumberOfTiles(tiff) / image.bands;
    for (uint32_t number = 0; number < TIFFNumberOfTiles(tiff); ++number) {
        image.tiles.push_back(TIFFGetStrileOffset(tiff, number));
        if (TIFFReadEncodedTile(tiff, number, tile.data(), -1) < 0) return {};
        const uint32_t left = number % perBand % across * width;
        const uint32_t top = number % perBand / across * height;
        for (uint32_t row = top; row < std::min(top + height, image.rows); ++row) {
            for (uint32_t column = left; column < std::min(left + width, image.columns); ++column) {
                const std::size_t place = (row - top) * std::size_t{width} + column - left;
                image.cells[number / perBand][std::size_t{row} * image.columns + column] =
                    cellOf(image, tile.data() + place * image.bits / 8);
            }
        }
    }
    return image;
}

// The images of a file, the raster first; none if it cannot be read.
inline std::vector<TiffImage> imagesOf(const std::string& path) {
    TIFFSetWarningHandler(nullptr);
    std::vector<TiffImage> images;
    const std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(TIFFOpen(path.c_str(), "r"), TIFFClose);
    if (!tiff) return images;
    do {
        images.push_back(imageOf(tiff.get()));
    } while (TIFFReadDirectory(tiff.get()));
    return images;
}

// The values of a tag of the first image; of one that libtiff knows as a text no count is given.
template <class Value>
std::vector<Value> tagOf(const std::string& path, uint32_t tag) {
    TIFFSetWarningHandler(nullptr);
    const std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(TIFFOpen(path.c_str(), "r"), TIFFClose);
    const TIFFField* const field = tiff ? TIFFFindField(tiff.get(), tag, TIFF_ANY) : nullptr;
    if (!field) return {};
    uint32_t count = 0;
    const Value* values = nullptr;
    if (TIFFFieldPassCount(field) == 0) {
        const char* text = nullptr;
        if (TIFFGetField(tiff.get(), tag, &text) != 1) return {};
        return {text, text + std::strlen(text) + 1};
    }
    if (TIFFGetField(tiff.get(), tag, &count, &values) != 1) return {};
    return {values, values + count};
}
inline std::string textTagOf(const std::string& path, uint32_t tag) {
    const std::vector<char> text = tagOf<char>(path, tag);
    return {text.begin(), text.empty() ? text.end() : text.end() - 1};
}

}  // namespace intake::testing

#endif
