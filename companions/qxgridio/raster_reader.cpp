#include <algorithm>

#include "companions/qxgridio/raster_file.h"
#include "companions/store/words.h"
#include "host/qxbase/failures.h"

namespace qxgridio {

RasterReader::RasterReader(store::File file, const RasterHeader& header)
    : file_(std::move(file)), header_(header) {
    // A count that the file cannot hold is not believed.
    QxRaster& raster = header_.raster;
    const int64_t rowBytes = header_.rowBytes();
    const int64_t room = file_.size() - static_cast<int64_t>(RasterHeader::kBytes);
    const int64_t whole = rowBytes > 0 ? std::max<int64_t>(room, 0) / rowBytes : 0;
    const int64_t told = raster.rowsWritten < 0 ? whole : raster.rowsWritten;
    const int64_t rows = std::min(told, std::max<int64_t>(raster.rows, 0));
    if (rowBytes > 0 && rows > whole) rdfailC(file_.path().c_str(), 0);
    raster.rowsWritten = static_cast<int32_t>(std::min(whole, rows));
}

std::unique_ptr<RasterReader> RasterReader::open(const std::string& path, int32_t kind) {
    store::File file = store::File::read(path);
    if (!file.isOpen()) return nullptr;
    std::array<std::byte, RasterHeader::kBytes> bytes;
    RasterHeader header;
    if (file.readAt(0, bytes) != static_cast<int64_t>(bytes.size())) return nullptr;
    if (!RasterHeader::parse(bytes, header) || header.kind != kind) return nullptr;
    return std::unique_ptr<RasterReader>(new RasterReader(std::move(file), header));
}

bool RasterReader::read(int32_t row, int32_t column, std::span<int32_t> words) const {
    const QxRaster& raster = header_.raster;
    if (row < 0 || row >= raster.rows || column < 0) return false;
    if (static_cast<int64_t>(words.size()) > int64_t{raster.columns} - column) return false;
    const int64_t position = static_cast<int64_t>(RasterHeader::kBytes) +
                             int64_t{row} * header_.rowBytes() + int64_t{column} * 4;
    const int64_t wanted = static_cast<int64_t>(words.size_bytes());
    if (row < raster.rowsWritten &&
        file_.readAt(position, std::as_writable_bytes(words)) == wanted) {
        store::turnAll(words.data(), words.size());
    } else {
        std::fill(words.begin(), words.end(), header_.noDataWord());
    }
    return true;
}

}  // namespace qxgridio
