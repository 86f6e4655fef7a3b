#include <algorithm>
#include <bit>
#include <limits>

#include "companions/qxgridio/raster_file.h"

namespace qxgridio {

namespace {

// Lowest and highest of the cells that are there; the wrong way round if none is.
template <class Cell>
struct Range {
    Cell lowest;
    Cell highest;
};

// Without a jump, and with masks for choices: the compiler then takes several cells at a time.
Range<int32_t> rangeOfIntegers(std::span<const int32_t> cells, int32_t noData) {
    using Limits = std::numeric_limits<int32_t>;
    Range<int32_t> range{Limits::max(), Limits::min()};
    for (const int32_t cell : cells) {
        const int32_t there = -int32_t{cell != noData};
        range.lowest = std::min(range.lowest, (cell & there) | (Limits::max() & ~there));
        range.highest = std::max(range.highest, (cell & there) | (Limits::min() & ~there));
    }
    return range;
}

// One that is not a number is in no order and changes nothing.
Range<float> rangeOfReals(std::span<const int32_t> words, int32_t noData) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    Range<float> range{kInfinity, -kInfinity};
    for (const int32_t word : words) {
        const auto cell = std::bit_cast<float>(word);
        const bool there = word != noData;
        range.lowest = there && cell < range.lowest ? cell : range.lowest;
        range.highest = there && cell > range.highest ? cell : range.highest;
    }
    return range;
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
    const auto widen = [this](const auto& cells) {
        if (cells.lowest > cells.highest) return;
        const auto& range = header_.raster.range;
        setRange(std::min<double>(cells.lowest, range[0]),
                 std::max<double>(cells.highest, range[1]));
    };
    if (header_.raster.cellType == QX_INTEGER_CELLS) {
        widen(rangeOfIntegers(words, header_.noDataWord()));
    } else {
        widen(rangeOfReals(words, header_.noDataWord()));
    }
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
