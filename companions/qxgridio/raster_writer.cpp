#include <array>
#include <bit>
#include <limits>

#include "companions/qxgridio/raster_file.h"

namespace qxgridio {

namespace {

// Widens the range to the cells that are there. One that is not a number is in no order and changes
// nothing.
template <class Cell>
void widen(std::span<const int32_t> words, int32_t noData, std::array<double, 2>& range) {
    using Limits = std::numeric_limits<Cell>;
    Cell lowest = Limits::has_infinity ? Limits::infinity() : Limits::max();
    Cell highest = Limits::has_infinity ? -Limits::infinity() : Limits::lowest();
    for (const int32_t word : words) {
        const auto cell = std::bit_cast<Cell>(word);
        const bool there = word != noData;
        lowest = there && cell < lowest ? cell : lowest;
        highest = there && cell > highest ? cell : highest;
    }
    if (lowest > highest) return;
    range[0] = lowest < range[0] ? lowest : range[0];
    range[1] = highest > range[1] ? highest : range[1];
}

}  // namespace

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
    std::array<double, 2> range = {header_.raster.range[0], header_.raster.range[1]};
    if (header_.raster.cellType == QX_INTEGER_CELLS) {
        widen<int32_t>(words, header_.noDataWord(), range);
    } else {
        widen<float>(words, header_.noDataWord(), range);
    }
    setRange(range[0], range[1]);
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
