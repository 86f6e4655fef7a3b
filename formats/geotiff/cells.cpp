#include "formats/geotiff/cells.h"

#include <algorithm>
#include <cstring>
#include <deque>

#include "formats/geotiff/halving.h"

namespace formats::geotiff {

namespace {

std::vector<std::byte> paddingOf(const TileForm& form, std::optional<double> noData) {
    std::vector<std::byte> row(form.rowBytes());
    withCell(form.type, [&](auto cell) {
        using Cell = decltype(cell);
        std::fill_n(reinterpret_cast<Cell*>(row.data()), form.width,
                    static_cast<Cell>(noData.value_or(0)));
    });
    return row;
}

}  // namespace

TileRows::TileRows(const Level& level, const TileForm& form, std::optional<double> noData,
                   InOrder& workers, Take take)
    : level_(level),
      form_(form),
      workers_(workers),
      take_(std::move(take)),
      rowBytes_(static_cast<std::size_t>(level.columns) * bytesOf(form.type)),
      rows_(rowBytes_ * static_cast<std::size_t>(std::min(form.height, level.rows))),
      padding_(paddingOf(form, noData)) {}

std::span<std::byte> TileRows::next() {
    return {rows_.data() + static_cast<std::size_t>(gathered_) * rowBytes_, rowBytes_};
}

void TileRows::added() {
    ++gathered_;
    ++row_;
    if (gathered_ == form_.height || row_ == level_.rows) flush();
}

std::vector<std::byte> TileRows::tileAt(int32_t across, int32_t rows) const {
    std::vector<std::byte> tile(form_.bytes());
    const std::size_t from = static_cast<std::size_t>(across) * form_.rowBytes();
    const std::size_t bytes = std::min(form_.rowBytes(), rowBytes_ - from);
    for (int32_t row = 0; row < form_.height; ++row) {
        std::byte* const to = tile.data() + static_cast<std::size_t>(row) * form_.rowBytes();
        const std::size_t there = row < rows ? bytes : 0;
        if (there != 0) {
            std::memcpy(to, rows_.data() + static_cast<std::size_t>(row) * rowBytes_ + from, there);
        }
        std::memcpy(to + there, padding_.data() + there, form_.rowBytes() - there);
    }
    return tile;
}

void TileRows::flush() {
    const int32_t rows = gathered_;
    // The rows are needed until the last tile is made of them.
    try {
        for (int32_t across = 0; across < level_.across; ++across) {
            workers_.add(
                [this, across, rows] {
                    std::vector<std::byte> tile = tileAt(across, rows);
                    return encoded(form_, tile);
                },
                take_);
        }
        workers_.wait();
    } catch (...) {
        workers_.drop();
        throw;
    }
    gathered_ = 0;
}

Overviews::Overviews(const Raster& raster, const Plan& plan, Scratch& scratch, InOrder& workers)
    : scratch_(scratch), places_(plan.levels.size()) {
    for (std::size_t band = 0; band < raster.bands.size(); ++band) {
        addBand(raster, plan, band, workers);
    }
}

void Overviews::addBand(const Raster& raster, const Plan& plan, std::size_t band,
                        InOrder& workers) {
    // A level that halves what it is given, two rows at a time.
    struct Step {
        TileRows tiles;
        std::vector<std::byte> above;
        bool waits = false;  // the row above is there, the one below is not
    };
    const std::size_t cellBytes = bytesOf(raster.type);
    std::deque<Step> steps;
    for (std::size_t level = 1; level < plan.levels.size(); ++level) {
        const auto keep = [this, level](const std::vector<std::byte>& tile) {
            scratch_.write(end_, tile);
            places_[level].push_back({end_, tile.size()});
            end_ += static_cast<int64_t>(tile.size());
        };
        const auto columns = static_cast<std::size_t>(plan.levels[level - 1].columns);
        steps.push_back({{plan.levels[level], plan.tile, raster.noData, workers, keep},
                         std::vector<std::byte>(columns * cellBytes)});
    }
    // Hands a row to a step and what came of it to the next one. An empty row ends the level.
    const auto give = [&](const auto& self, std::size_t at,
                          std::span<const std::byte> row) -> void {
        if (at == steps.size()) return;
        Step& step = steps[at];
        if (!step.waits && !row.empty()) {
            std::memcpy(step.above.data(), row.data(), row.size());
            step.waits = true;
            return;
        }
        if (step.waits) {
            step.waits = false;
            const std::span<std::byte> half = step.tiles.next();
            halve(raster.type, raster.classes, raster.noData, step.above, row, half);
            // The next level goes first: what is added may be gone.
            self(self, at + 1, half);
            step.tiles.added();
        }
        if (row.empty()) self(self, at + 1, {});
    };
    std::vector<std::byte> row(static_cast<std::size_t>(raster.columns) * cellBytes);
    for (int32_t each = 0; each < raster.rows; ++each) {
        raster.read(band, each, row);
        give(give, 0, row);
    }
    give(give, 0, {});
}

}  // namespace formats::geotiff
