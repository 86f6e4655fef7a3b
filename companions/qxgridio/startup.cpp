#include "host/qxgridio/startup.h"

#include "companions/qxgridio/state.h"
#include "companions/store/open_files.h"
#include "host/qxbase/messages.h"
#include "host/qxgridio/grids.h"

namespace qxgridio {

store::HandleTable<OpenRaster>& openRasters() {
    static store::HandleTable<OpenRaster> rasters;
    return rasters;
}

RasterWriter* findWriter(int32_t handle) {
    const OpenRaster* raster = openRasters().find(handle);
    return raster ? raster->writer.get() : nullptr;
}

RasterReader* findReader(int32_t handle) {
    const OpenRaster* raster = openRasters().find(handle);
    return raster ? raster->reader.get() : nullptr;
}

int32_t enterWriter(std::unique_ptr<RasterWriter> writer) {
    return openRasters().add(std::make_unique<OpenRaster>(OpenRaster{std::move(writer), nullptr}));
}

int32_t enterReader(std::unique_ptr<RasterReader> reader) {
    return openRasters().add(std::make_unique<OpenRaster>(OpenRaster{nullptr, std::move(reader)}));
}

void flushOnUnwinding() { onunwC(store::flushAll); }

MadeRaster makeRaster(const std::string& dataset, const RasterHeader& header) {
    flushOnUnwinding();
    MadeRaster made;
    if (dataset.empty()) return made;
    made.madeDirectory = store::makeDirectory(dataset);
    if (!store::isDirectory(dataset)) return made;
    made.writer = RasterWriter::create(rasterPath(dataset, header.kind), header);
    if (!made.writer && made.madeDirectory) store::dropDirectory(dataset);
    return made;
}

}  // namespace qxgridio

void GridIOInit() { qxgridio::flushOnUnwinding(); }

void gridendC() {
    qxgridio::openRasters().closeAll();
    qxgridio::openStacks().closeAll();
}
