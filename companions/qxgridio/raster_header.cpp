#include <bit>
#include <cstring>
#include <limits>

#include "companions/qxgridio/raster_file.h"
#include "companions/store/member_names.h"
#include "companions/store/words.h"
#include "host/qxgridio/nodata.h"

namespace qxgridio {

namespace {

constexpr char kMagic[9] = "QXRASTER";
constexpr int32_t kVersion = 1;

bool sideFits(int32_t cells) { return cells <= QX_MAXIMUM_SIDE; }

}  // namespace

std::array<std::byte, RasterHeader::kBytes> RasterHeader::bytes() const {
    std::array<std::byte, kBytes> result{};
    std::memcpy(result.data(), kMagic, 8);
    store::WordWriter(result.data() + 8)
        << kVersion << kind << raster.columns << raster.rows << raster.rowsWritten
        << raster.cellType << noDataWord() << tableHoldsStatistics << raster.lowerLeft[0]
        << raster.lowerLeft[1] << raster.upperRight[0] << raster.upperRight[1] << raster.cellSize[0]
        << raster.cellSize[1] << raster.range[0] << raster.range[1];
    return result;
}

bool RasterHeader::parse(std::span<const std::byte, kBytes> bytes, RasterHeader& header) {
    if (std::memcmp(bytes.data(), kMagic, 8) != 0) return false;
    int32_t version = 0;
    int32_t noData = 0;
    QxRaster& raster = header.raster;
    store::WordReader(bytes.data() + 8) >> version >> header.kind >> raster.columns >>
        raster.rows >> raster.rowsWritten >> raster.cellType >> noData >>
        header.tableHoldsStatistics >> raster.lowerLeft[0] >> raster.lowerLeft[1] >>
        raster.upperRight[0] >> raster.upperRight[1] >> raster.cellSize[0] >> raster.cellSize[1] >>
        raster.range[0] >> raster.range[1];
    if (version != kVersion || !sideFits(raster.columns) || !sideFits(raster.rows)) return false;
    return raster.cellType == QX_INTEGER_CELLS || raster.cellType == QX_FLOATING_CELLS;
}

int64_t RasterHeader::rowBytes() const {
    return raster.columns > 0 ? int64_t{raster.columns} * 4 : 0;
}

int32_t RasterHeader::noDataWord() const {
    return raster.cellType == QX_INTEGER_CELLS ? QX_MISSING_INTEGER
                                               : std::bit_cast<int32_t>(MISSINGFLOAT);
}

std::string rasterPath(std::string_view dataset, int32_t kind) {
    const std::string_view name = kind == QX_LATTICE ? "lattice" : "grid";
    return store::joinPath(store::plainPath(dataset), name);
}

}  // namespace qxgridio

const float MISSINGFLOAT = std::numeric_limits<float>::lowest();

void fltndt_(float* noData) { *noData = MISSINGFLOAT; }
void latndf_(float* noData) { *noData = MISSINGFLOAT; }
