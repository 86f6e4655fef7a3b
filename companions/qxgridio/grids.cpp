#include "host/qxgridio/grids.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

#include "companions/qxgridio/state.h"
#include "companions/store/member_names.h"
#include "companions/store/words.h"
#include "host/cpp/call.h"
#include "host/qxbase/directories.h"

namespace {

using namespace qxgridio;

constexpr int32_t kFailed = -1;

// Cells between two bounds, 0 if that is no size of a grid.
int32_t cellsBetween(double low, double high, double size) {
    if (!std::isfinite(low) || !std::isfinite(high) || !std::isfinite(size) || !(size > 0)) {
        return 0;
    }
    const double cells = std::round((high - low) / size);
    return cells >= 1 && cells <= QX_MAXIMUM_SIDE ? static_cast<int32_t>(cells) : 0;
}

}  // namespace

int32_t CellLyrCreate(const char* name, int32_t, int32_t, const int32_t* descriptor,
                      const double* cellSize, const double* bounds) {
    constexpr double kNoneYet = std::numeric_limits<double>::infinity();
    RasterHeader header;
    header.kind = QX_GRID;
    header.raster = {cellsBetween(bounds[0], bounds[2], cellSize[0]),
                     cellsBetween(bounds[1], bounds[3], cellSize[1]),
                     0,
                     descriptor[4] == QX_INTEGER_CELLS ? QX_INTEGER_CELLS : QX_FLOATING_CELLS,
                     {bounds[0], bounds[1]},
                     {bounds[2], bounds[3]},
                     {cellSize[0], cellSize[1]},
                     {kNoneYet, -kNoneYet}};
    if (header.raster.columns == 0 || header.raster.rows == 0) return kFailed;
    const std::string path(store::plainPath(name));
    if (store::exists(path)) return kFailed;
    MadeRaster made = makeRaster(path, header);
    if (!made.writer) return kFailed;
    int32_t status = 0;
    qx::call(creift_, std::string_view(path), status);
    if (status == 0) return enterWriter(std::move(made.writer));
    made.writer.reset();
    CellLyrDelete(path.c_str());
    return kFailed;
}

int32_t PrivateWindowSet(int32_t channel, const double* bounds, const double* cellSize,
                         const double* windowBounds) {
    const RasterWriter* grid = findWriter(channel);
    if (!grid) return kFailed;
    const QxRaster& raster = grid->header().raster;
    const double whole[] = {raster.lowerLeft[0], raster.lowerLeft[1], raster.upperRight[0],
                            raster.upperRight[1]};
    const auto same = [](const double* left, const double* right, int count) {
        for (int index = 0; index < count; ++index) {
            if (left[index] != right[index]) return false;
        }
        return true;
    };
    return same(bounds, whole, 4) && same(windowBounds, whole, 4) &&
                   same(cellSize, raster.cellSize, 2)
               ? 0
               : kFailed;
}

int32_t PrivateWindowRows(int32_t channel) {
    const RasterWriter* grid = findWriter(channel);
    return grid ? grid->header().raster.rows : 0;
}

int32_t PrivateWindowCols(int32_t channel) {
    const RasterWriter* grid = findWriter(channel);
    return grid ? grid->header().raster.columns : 0;
}

int32_t PutWindowRow(int32_t channel, int32_t row, const void* cells) {
    RasterWriter* grid = findWriter(channel);
    if (!grid || row < 0 || row >= grid->header().raster.rows || row > grid->rowsWritten()) {
        return kFailed;
    }
    const std::span words(static_cast<const int32_t*>(cells),
                          static_cast<std::size_t>(grid->header().raster.columns));
    grid->gatherRange(words);
    if (row == grid->rowsWritten()) {
        grid->beginRow();
        constexpr std::size_t kInOnePart = 16384;
        for (std::size_t start = 0; start < words.size(); start += kInOnePart) {
            const auto part = words.subspan(start, std::min(words.size() - start, kInOnePart));
            store::putAll(grid->part(part.size_bytes()), part);
        }
        return grid->failed() ? kFailed : 0;
    }
    std::vector<std::byte> bytes(words.size_bytes());
    store::putAll(bytes.data(), words);
    return grid->overwriteRow(row, bytes) ? 0 : kFailed;
}

void CellLyrChannelClose(int32_t channel) {
    if (findWriter(channel)) openRasters().close(channel);
}

void CellLyrDelete(const char* name) {
    const std::string path(store::plainPath(name));
    if (!RasterReader::open(rasterPath(path, QX_GRID), QX_GRID)) return;
    store::dropFile(rasterPath(path, QX_GRID));
    store::dropDirectory(path);
}

void* CAllocate1(int32_t count, int32_t elementBytes) {
    if (count < 0 || elementBytes < 1) return nullptr;
    return std::calloc(static_cast<std::size_t>(count), static_cast<std::size_t>(elementBytes));
}

void* CResize1(void* memory, int32_t count, int32_t elementBytes) {
    if (count < 1 || elementBytes < 1) return nullptr;
    return std::realloc(memory,
                        static_cast<std::size_t>(count) * static_cast<std::size_t>(elementBytes));
}

void CFree1(void* memory) { std::free(memory); }

void grdexi_(const char* path, int32_t* isGrid, int32_t pathLength) {
    const std::string file = rasterPath(qx::textArgument(path, pathLength), QX_GRID);
    *isGrid = RasterReader::open(file, QX_GRID) ? -1 : 0;
}
