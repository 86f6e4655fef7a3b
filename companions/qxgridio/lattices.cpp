#include "host/qxgridio/lattices.h"

#include <algorithm>

#include "companions/qxgridio/state.h"
#include "companions/store/member_names.h"
#include "companions/store/words.h"
#include "host/cpp/fixed_text.h"
#include "host/qxgridio/nodata.h"

namespace {

using namespace qxgridio;

constexpr int32_t kFailed = -1;

double lastPoint(double origin, double spacing, int32_t count) {
    return count > 0 ? origin + spacing * (count - 1) : origin;
}

}  // namespace

void latexi_(const char* name, int32_t* exists, int32_t nameLength) {
    const std::string path = rasterPath(qx::textArgument(name, nameLength), QX_LATTICE);
    *exists = store::exists(path) ? -1 : 0;
}

void latcre_(const char* name, int32_t* handle, const int32_t* columns, const int32_t* rows,
             const double* originX, const double* originY, const double* spacingX,
             const double* spacingY, int32_t* status, int32_t nameLength) {
    *status = kFailed;
    if (*columns > QX_MAXIMUM_SIDE || *rows > QX_MAXIMUM_SIDE) return;
    RasterHeader header;
    header.kind = QX_LATTICE;
    header.raster = {
        *columns,
        *rows,
        0,
        QX_FLOATING_CELLS,
        {*originX, *originY},
        {lastPoint(*originX, *spacingX, *columns), lastPoint(*originY, *spacingY, *rows)},
        {*spacingX, *spacingY},
        {0, 0}};
    const std::string path(store::plainPath(qx::textArgument(name, nameLength)));
    MadeRaster made = makeRaster(path, header);
    if (!made.writer) return;
    *handle = enterWriter(std::move(made.writer));
    *status = 0;
}

void latrng_(const int32_t* handle, const float* lowest, const float* highest) {
    RasterWriter* lattice = findWriter(*handle);
    if (lattice) lattice->setRange(*lowest, *highest);
}

void latwt_(const int32_t* handle, int32_t* status, const float* heights, const int32_t* count) {
    *status = kFailed;
    RasterWriter* lattice = findWriter(*handle);
    if (!lattice) return;
    const QxRaster& raster = lattice->header().raster;
    if (raster.columns <= 0 || lattice->rowsWritten() >= raster.rows) return;
    const auto columns = static_cast<std::size_t>(raster.columns);
    const auto given = std::min(columns, static_cast<std::size_t>(std::max(*count, 0)));
    lattice->beginRow();
    constexpr std::size_t kInOnePart = 16384;
    for (std::size_t start = 0; start < columns; start += kInOnePart) {
        const std::size_t end = std::min(start + kInOnePart, columns);
        std::byte* place = lattice->part((end - start) * sizeof(float));
        for (std::size_t column = start; column < end; ++column, place += sizeof(float)) {
            store::put(place, column < given ? heights[column] : MISSINGFLOAT);
        }
    }
    *status = lattice->failed() ? kFailed : 0;
}

void latcls_(const int32_t* handle, int32_t* status) {
    *status = findWriter(*handle) ? 0 : kFailed;
    if (*status == 0) openRasters().close(*handle);
}
