// The file of a lattice or grid: a header, then the rows from the top, each as many big-endian
// words as there are columns.
//
// The header's count of rows is -1 while they are being written; it is put right whenever the file
// is flushed or closed, and a reader that finds -1 counts the rows itself.
#ifndef COMPANIONS_QXGRIDIO_RASTER_FILE_H
#define COMPANIONS_QXGRIDIO_RASTER_FILE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "companions/store/appender.h"
#include "companions/store/open_files.h"
#include "host/qxgridio/rasters.h"

namespace qxgridio {

struct RasterHeader {
    static constexpr std::size_t kBytes = 128;

    int32_t kind = QX_GRID;
    // rowsWritten is -1 while the file is being written. A range that is upside down is none yet.
    QxRaster raster{};
    int32_t tableHoldsStatistics = 0;  // 1 once staconv_ was called

    std::array<std::byte, kBytes> bytes() const;
    // False if the bytes are no such header.
    static bool parse(std::span<const std::byte, kBytes> bytes, RasterHeader& header);

    // 0 where there are no columns.
    int64_t rowBytes() const;
    int32_t noDataWord() const;
};

// The path of a dataset's raster of a kind.
std::string rasterPath(std::string_view dataset, int32_t kind);

class RasterWriter : public store::Buffered {
  public:
    // Makes a file that does not exist yet. Null on failure.
    static std::unique_ptr<RasterWriter> create(const std::string& path,
                                                const RasterHeader& header);
    ~RasterWriter() override { close(); }

    const RasterHeader& header() const { return header_; }
    void setRange(double lowest, double highest);
    // Begins the next row. Its words follow in parts, each filled before any other call.
    void beginRow() { ++rowsWritten_; }
    std::byte* part(std::size_t bytes) { return appender_.reserve(bytes); }
    // Overwrites a row that was written before.
    bool overwriteRow(int32_t row, std::span<const std::byte> bytes);
    int32_t rowsWritten() const { return rowsWritten_; }
    bool failed() const { return appender_.failed(); }
    // Widens the range by the cells of a row that have data.
    void gatherRange(std::span<const int32_t> words);
    void flush() override;
    void close();

  private:
    RasterWriter(store::File file, const RasterHeader& header);
    void writeHeader();

    store::Appender appender_;
    RasterHeader header_;
    int32_t rowsWritten_ = 0;
};

class RasterReader {
  public:
    static std::unique_ptr<RasterReader> open(const std::string& path, int32_t kind);

    const RasterHeader& header() const { return header_; }
    // Words of a row from a column on, in the program's order; no data where the file has none.
    // False if they are not inside the raster.
    bool read(int32_t row, int32_t column, std::span<int32_t> words) const;

  private:
    RasterReader(store::File file, const RasterHeader& header);

    store::File file_;
    RasterHeader header_;
};

}  // namespace qxgridio

#endif
