#include <algorithm>
#include <cstring>

#include "companions/store/record_file.h"
#include "companions/store/words.h"
#include "host/qxbase/failures.h"

namespace store {

namespace {

constexpr std::size_t kWindowBytes = 256 * 1024;

}  // namespace

RecordReader::RecordReader(File file, RecordHeader header)
    : file_(std::move(file)),
      header_(std::move(header)),
      size_(file_.sizeWhenOpened()),
      failed_(size_ < 0) {}

std::unique_ptr<RecordReader> RecordReader::open(const std::string& path) {
    File file = File::read(path);
    if (!file.isOpen()) return nullptr;
    std::array<std::byte, RecordHeader::kBytes> bytes;
    RecordHeader header;
    if (file.readAt(0, bytes) != static_cast<int64_t>(bytes.size())) return nullptr;
    if (!RecordHeader::parse(bytes, header)) return nullptr;
    return std::unique_ptr<RecordReader>(new RecordReader(std::move(file), header));
}

std::span<const std::byte> RecordReader::window(int64_t position, std::size_t bytes) {
    if (size_ - position < static_cast<int64_t>(bytes)) return {};
    if (!windows_.front().holds(position, bytes) && !turnTo(position, bytes)) return {};
    const Window& window = windows_.front();
    return {window.bytes.data() + (position - window.start), bytes};
}

// Puts the window that holds the bytes to the front, if need be by reading them.
bool RecordReader::turnTo(int64_t position, std::size_t bytes) {
    if (jumps_) {
        auto found = windows_.begin() + 1;
        while (found != windows_.end() - 1 && !found->holds(position, bytes)) ++found;
        // The last one was not looked at for longest, if it is not the one.
        std::rotate(windows_.begin(), found, found + 1);
    }
    Window& window = windows_.front();
    if (window.holds(position, bytes)) return true;
    const auto wanted = static_cast<int64_t>(std::max(bytes, kWindowBytes));
    const auto fill = static_cast<std::size_t>(std::min(size_ - position, wanted));
    // What the others held is not needed any more, and need not be there beside something large.
    if (fill > kWindowBytes) std::fill(windows_.begin() + 1, windows_.end(), Window{});
    if (window.bytes.size() < fill) {
        window = {};
        window.bytes.resize(fill);
    }
    const int64_t count = file_.readAt(position, {window.bytes.data(), fill});
    failed_ |= count < 0;
    window.start = position;
    window.used = count < 0 ? 0 : static_cast<std::size_t>(count);
    return window.used >= bytes;
}

void RecordReader::noteDamage() const { rdfailC(file_.path().c_str(), 0); }

bool RecordReader::next(std::span<const std::byte>& record) {
    if (header_.count >= 0 && number_ >= header_.count) return false;
    if (readNext(record)) return true;
    // Without a count the file was cut off while it was written, and ends where it ends.
    if (header_.count >= 0 && !counted_) noteDamage();
    return false;
}

bool RecordReader::readNext(std::span<const std::byte>& record) {
    std::size_t bytes = static_cast<std::size_t>(header_.recordBytes);
    int64_t place = position_;
    if (bytes == 0) {
        const auto length = window(place, 4);
        if (length.empty()) return false;
        const auto value = get<int32_t>(length.data());
        if (value < 0) return false;
        bytes = static_cast<std::size_t>(value);
        place += 4;
    }
    if (size_ - place < static_cast<int64_t>(bytes)) return false;
    record = bytes == 0 ? std::span<const std::byte>() : window(place, bytes);
    if (record.size() != bytes) return false;
    if (keepsPlaces_ && static_cast<int64_t>(places_.size()) == number_) {
        places_.push_back(position_);
    }
    lastPosition_ = position_;
    position_ = place + static_cast<int64_t>(bytes);
    ++number_;
    return true;
}

int64_t RecordReader::count() {
    if (knowsCount_) return header_.count;
    knowsCount_ = true;
    if (header_.count >= 0) {
        // A count that the file cannot hold is not believed.
        const int64_t least = header_.recordBytes != 0 ? header_.recordBytes : 4;
        const int64_t room = (size_ - static_cast<int64_t>(RecordHeader::kBytes)) / least;
        if (header_.count > room) noteDamage();
        header_.count = std::min(header_.count, std::max<int64_t>(room, 0));
        return header_.count;
    }
    if (header_.recordBytes != 0) {
        header_.count = (size_ - static_cast<int64_t>(RecordHeader::kBytes)) / header_.recordBytes;
    } else {
        findRecords();
        header_.count = static_cast<int64_t>(places_.size());
    }
    counted_ = true;
    return header_.count;
}

void RecordReader::beginPlaces() {
    constexpr int64_t kShortRecord = 32;  // a count is not believed at eight bytes for four
    keepsPlaces_ = true;
    if (header_.count < 0) return;
    places_.reserve(static_cast<std::size_t>(std::min(count(), size_ / kShortRecord)));
}

void RecordReader::findRecords() {
    int64_t place = RecordHeader::kBytes;
    places_.clear();
    hasAllPlaces_ = true;
    while (header_.count < 0 || static_cast<int64_t>(places_.size()) < header_.count) {
        const auto length = window(place, 4);
        if (length.empty()) return;
        const auto bytes = get<int32_t>(length.data());
        if (bytes < 0 || size_ - place - 4 < bytes) return;
        places_.push_back(place);
        place += 4 + static_cast<int64_t>(bytes);
    }
}

void RecordReader::again() {
    if (position_ == lastPosition_) return;
    position_ = lastPosition_;
    --number_;
}

bool RecordReader::seek(int64_t number) {
    if (number < 1 || number > count()) return false;
    jumps_ |= number != number_ + 1;
    if (header_.recordBytes != 0) {
        position_ = static_cast<int64_t>(RecordHeader::kBytes) +
                    (number - 1) * static_cast<int64_t>(header_.recordBytes);
    } else if (number != number_ + 1) {
        if (number > static_cast<int64_t>(places_.size()) && !hasAllPlaces_) findRecords();
        if (number > static_cast<int64_t>(places_.size())) return false;
        position_ = places_[static_cast<std::size_t>(number - 1)];
    }
    lastPosition_ = position_;
    number_ = number - 1;
    return true;
}

}  // namespace store
