#include "host/qxgridio/rasters.h"

#include "companions/qxgridio/state.h"
#include "host/cpp/fixed_text.h"

namespace {

using namespace qxgridio;

constexpr int32_t kFailed = -1;

}  // namespace

void rasopn_(int32_t* handle, const char* path, const int32_t* kind, int32_t* status,
             int32_t pathLength) {
    *status = kFailed;
    auto reader = RasterReader::open(rasterPath(qx::textArgument(path, pathLength), *kind), *kind);
    if (!reader) return;
    *handle = enterReader(std::move(reader));
    *status = 0;
}

void rasdes_(const int32_t* handle, QxRaster* raster, int32_t* status) {
    const RasterReader* reader = findReader(*handle);
    *status = reader ? 0 : kFailed;
    if (!reader) return;
    *raster = reader->header().raster;
    // No cell has widened the range of a grid yet.
    if (raster->range[0] > raster->range[1] && reader->header().kind == QX_GRID) {
        raster->range[0] = raster->range[1] = 0;
    }
}

void rasrd_(const int32_t* handle, const int32_t* row, const int32_t* column, const int32_t* count,
            void* cells, int32_t* status) {
    const RasterReader* reader = findReader(*handle);
    *status = kFailed;
    if (!reader || *count < 0) return;
    const std::span words(static_cast<int32_t*>(cells), static_cast<std::size_t>(*count));
    if (reader->read(*row, *column, words)) *status = 0;
}

void rascls_(const int32_t* handle) {
    if (findReader(*handle)) openRasters().close(*handle);
}
