#include <algorithm>
#include <cstring>

#include "companions/store/record_file.h"
#include "companions/store/words.h"

namespace store {

namespace {

constexpr char kMagic[9] = "QXRECORD";
constexpr int32_t kVersion = 1;
constexpr std::size_t kHostOffset = 56;
constexpr std::size_t kLabelOffset = 96;

}  // namespace

std::array<std::byte, RecordHeader::kBytes> RecordHeader::bytes() const {
    std::array<std::byte, kBytes> result{};
    std::memcpy(result.data(), kMagic, 8);
    WordWriter(result.data() + 8) << kVersion << code << kept[0] << kept[1] << kept[2]
                                  << recordBytes << realBytes << static_cast<int32_t>(end >> 32)
                                  << count << hostBytes << static_cast<uint32_t>(end);
    std::memcpy(result.data() + kHostOffset, host.data(), host.size());
    std::memset(result.data() + kLabelOffset, ' ', kLabelBytes);
    std::memcpy(result.data() + kLabelOffset, label.data(), std::min(label.size(), kLabelBytes));
    return result;
}

bool RecordHeader::parse(std::span<const std::byte, kBytes> bytes, RecordHeader& header) {
    if (std::memcmp(bytes.data(), kMagic, 8) != 0) return false;
    int32_t version = 0;
    int32_t endHigh = 0;
    uint32_t endLow = 0;
    WordReader(bytes.data() + 8) >> version >> header.code >> header.kept[0] >> header.kept[1] >>
        header.kept[2] >> header.recordBytes >> header.realBytes >> endHigh >> header.count >>
        header.hostBytes >> endLow;
    header.end = int64_t{endHigh} << 32 | endLow;
    if (version != kVersion || header.recordBytes < 0 || header.count < -1) return false;
    if (header.realBytes != 4 && header.realBytes != 8) return false;
    header.hostBytes = std::clamp(header.hostBytes, 0, static_cast<int32_t>(kHostBytes));
    std::memcpy(header.host.data(), bytes.data() + kHostOffset, kHostBytes);
    header.label.assign(reinterpret_cast<const char*>(bytes.data()) + kLabelOffset, kLabelBytes);
    header.label.erase(header.label.find_last_not_of(' ') + 1);
    return true;
}

}  // namespace store
