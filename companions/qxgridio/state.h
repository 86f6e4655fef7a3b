// The open rasters and stacks of the library, which it gives up when an import ends.
#ifndef COMPANIONS_QXGRIDIO_STATE_H
#define COMPANIONS_QXGRIDIO_STATE_H

#include <memory>

#include "companions/qxgridio/raster_file.h"
#include "companions/store/handle_table.h"
#include "companions/store/record_file.h"

namespace qxgridio {

struct OpenRaster {
    std::unique_ptr<RasterWriter> writer;
    std::unique_ptr<RasterReader> reader;
};

store::HandleTable<OpenRaster>& openRasters();
store::HandleTable<store::RecordWriter>& openStacks();

// Null for a number that is no raster open in that way.
RasterWriter* findWriter(int32_t handle);
RasterReader* findReader(int32_t handle);
int32_t enterWriter(std::unique_ptr<RasterWriter> writer);
int32_t enterReader(std::unique_ptr<RasterReader> reader);

// Sees to it that an error brings the open rasters to disk before it unwinds.
void flushOnUnwinding();

// A new file for a raster in a dataset's directory, which is made if it is missing.
struct MadeRaster {
    std::unique_ptr<RasterWriter> writer;  // null on failure, and nothing is left behind
    bool madeDirectory = false;
};
MadeRaster makeRaster(const std::string& dataset, const RasterHeader& header);

}  // namespace qxgridio

#endif
