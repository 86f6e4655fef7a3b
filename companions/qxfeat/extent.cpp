#include "companions/qxfeat/extent.h"

#include "companions/store/words.h"

namespace qxfeat {

bool Extent::include(std::span<const double> pairs) {
    const Extent before = *this;
    for (std::size_t index = 0; index + 1 < pairs.size(); index += 2) {
        const double x = pairs[index];
        const double y = pairs[index + 1];
        xMin = x < xMin ? x : xMin;
        yMin = y < yMin ? y : yMin;
        xMax = x > xMax ? x : xMax;
        yMax = y > yMax ? y : yMax;
    }
    return xMin < before.xMin || yMin < before.yMin || xMax > before.xMax || yMax > before.yMax;
}

std::array<std::byte, kExtentBytes> extentWords(const Extent& extent, int32_t coordinateBytes) {
    // Rounding keeps the order of numbers, so the corners come out as if the stored coordinates had
    // been looked at.
    const auto kept = [&](double value) {
        return coordinateBytes == 8 ? value : static_cast<double>(static_cast<float>(value));
    };
    std::array<std::byte, kExtentBytes> words;
    store::WordWriter(words.data())
        << kept(extent.xMin) << kept(extent.yMin) << kept(extent.xMax) << kept(extent.yMax);
    return words;
}

bool headerExtent(const store::RecordHeader& header, Extent& extent) {
    if (header.hostBytes != static_cast<int32_t>(kExtentBytes)) return false;
    store::WordReader(header.host.data()) >> extent.xMin >> extent.yMin >> extent.xMax >>
        extent.yMax;
    return true;
}

}  // namespace qxfeat
