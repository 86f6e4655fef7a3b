#include <bit>

#include "companions/qxgridio/raster_file.h"

namespace qxgridio {

RasterWriter::RasterWriter(store::File file, const RasterHeader& header)
    : appender_(std::move(file), static_cast<int64_t>(RasterHeader::kBytes)), header_(header) {}

std::unique_ptr<RasterWriter> RasterWriter::create(const std::string& path,
                                                   const RasterHeader& header) {
    store::File file = store::File::create(path, store::File::Creation::kMustBeNew);
    if (!file.isOpen()) return nullptr;
    std::unique_ptr<RasterWriter> writer(new RasterWriter(std::move(file), header));
    writer->header_.raster.rowsWritten = -1;
    writer->writeHeader();
    return writer;
}

void RasterWriter::setRange(double lowest, double highest) {
    header_.raster.range[0] = lowest;
    header_.raster.range[1] = highest;
}

bool RasterWriter::overwriteRow(int32_t row, std::span<const std::byte> bytes) {
    appender_.flush();
    const int64_t position =
        static_cast<int64_t>(RasterHeader::kBytes) + int64_t{row} * header_.rowBytes();
    return appender_.file().writeAt(position, bytes);
}

void RasterWriter::gatherRange(std::span<const int32_t> words) {
    double lowest = header_.raster.range[0];
    double highest = header_.raster.range[1];
    const int32_t noData = header_.noDataWord();
    const bool integers = header_.raster.cellType == QX_INTEGER_CELLS;
    for (const int32_t word : words) {
        if (word == noData) continue;
        const double value = integers ? word : static_cast<double>(std::bit_cast<float>(word));
        // A cell that is not a number is in no order and changes neither.
        if (value < lowest) lowest = value;
        if (value > highest) highest = value;
    }
    setRange(lowest, highest);
}

void RasterWriter::writeHeader() { appender_.file().writeAt(0, header_.bytes()); }

void RasterWriter::flush() {
    appender_.flush();
    // After a failed write the count is for a reader to find out.
    header_.raster.rowsWritten = appender_.failed() ? -1 : rowsWritten_;
    writeHeader();
    header_.raster.rowsWritten = -1;
}

void RasterWriter::close() {
    if (!appender_.file().isOpen()) return;
    flush();
    appender_.file().close();
}

}  // namespace qxgridio
