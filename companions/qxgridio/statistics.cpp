#include "companions/qxgridio/raster_file.h"
#include "host/cpp/fixed_text.h"
#include "host/qxgridio/grids.h"

namespace {

using namespace qxgridio;

constexpr int32_t kFailed = -1;

std::string gridFile(const char* grid, int32_t length) {
    return rasterPath(qx::textArgument(grid, length), QX_GRID);
}

}  // namespace

void staqtrue_(const char* grid, int32_t* flag, int32_t* status, int32_t gridLength) {
    *flag = 0;
    *status = kFailed;
    const auto reader = RasterReader::open(gridFile(grid, gridLength), QX_GRID);
    if (!reader) return;
    const RasterHeader& header = reader->header();
    const bool known = header.raster.range[0] <= header.raster.range[1];
    *flag = known && header.tableHoldsStatistics == 0 ? -1 : 0;
    *status = 0;
}

void staconv_(const char* grid, const int32_t*, int32_t* status, int32_t gridLength) {
    *status = kFailed;
    const std::string path = gridFile(grid, gridLength);
    const auto reader = RasterReader::open(path, QX_GRID);
    if (!reader) return;
    RasterHeader header = reader->header();
    header.tableHoldsStatistics = 1;
    store::File file = store::File::readWrite(path);
    if (file.isOpen() && file.writeAt(0, header.bytes())) *status = 0;
}
