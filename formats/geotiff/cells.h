// The cells of a raster on their way into tiles.
#ifndef FORMATS_GEOTIFF_CELLS_H
#define FORMATS_GEOTIFF_CELLS_H

#include <functional>
#include <vector>

#include "formats/geotiff/in_order.h"
#include "formats/geotiff/plan.h"
#include "formats/scratch.h"

namespace formats::geotiff {

// Takes the rows of one level of a band, gathers those of a row of tiles, and hands on the tiles
// encoded, from left to right and from the top down. Holds one row of tiles, unencoded.
class TileRows {
  public:
    using Take = std::function<void(std::vector<std::byte> tile)>;
    TileRows(const Level& level, const TileForm& form, std::optional<double> noData,
             InOrder& workers, Take take);

    // Where the next row of cells goes; added() tells that it is there.
    std::span<std::byte> next();
    void added();

  private:
    void flush();
    std::vector<std::byte> tileAt(int32_t across, int32_t rows) const;

    Level level_;
    TileForm form_;
    InOrder& workers_;
    Take take_;
    std::size_t rowBytes_;
    std::vector<std::byte> rows_;
    std::vector<std::byte> padding_;  // a row of a tile without data
    int32_t gathered_ = 0;
    int32_t row_ = 0;  // of the level
};

// The tiles of the overviews of all bands, kept in a file until it is their turn.
class Overviews {
  public:
    // Reads all of the raster once.
    Overviews(const Raster& raster, const Plan& plan, Scratch& scratch, InOrder& workers);
    // Calls take for each tile of a level, in the order of a file.
    template <class Take>
    void each(std::size_t level, Take take) const {
        std::vector<std::byte> tile;
        for (const Place& place : places_[level]) {
            tile.resize(place.bytes);
            scratch_.read(place.position, tile);
            take(tile);
        }
    }

  private:
    struct Place {
        int64_t position;
        std::size_t bytes;
    };
    void addBand(const Raster& raster, const Plan& plan, std::size_t band, InOrder& workers);

    Scratch& scratch_;
    int64_t end_ = 0;
    std::vector<std::vector<Place>> places_;  // by level; none for the raster itself
};

}  // namespace formats::geotiff

#endif
