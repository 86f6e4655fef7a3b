// Member channels: records of a member file by number, read through a window of the file.
#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "companions/qxbase/state.h"
#include "companions/store/file.h"
#include "companions/store/handle_table.h"
#include "companions/store/record_file.h"
#include "host/qxbase/members.h"

namespace {

using store::File;
using store::RecordHeader;

constexpr std::size_t kWindowBytes = 64 * 1024;

class MemberChannel {
  public:
    MemberChannel(File file, bool writable, int32_t recordBytes)
        : file_(std::move(file)), writable_(writable), recordBytes_(recordBytes) {
        std::array<std::byte, RecordHeader::kBytes> bytes;
        RecordHeader header;
        const bool headed = file_.readAt(0, bytes) == static_cast<int64_t>(bytes.size()) &&
                            RecordHeader::parse(bytes, header) && header.recordBytes == recordBytes;
        if (headed) start_ = RecordHeader::kBytes;
    }

    int64_t count() const { return std::max<int64_t>(file_.size() - start_, 0) / recordBytes_; }

    int32_t get(int64_t first, int32_t wanted, std::byte* records) {
        const int64_t here = count();
        if (first < 1 || first > here || wanted < 1) return 0;
        const int64_t many = std::min<int64_t>(wanted, here - first + 1);
        const std::size_t bytes = static_cast<std::size_t>(many * recordBytes_);
        const std::byte* found = window(place(first), bytes);
        if (found) {
            std::memcpy(records, found, bytes);
        } else if (file_.readAt(place(first), {records, bytes}) != static_cast<int64_t>(bytes)) {
            return 0;
        }
        return static_cast<int32_t>(many);
    }

    bool put(int64_t first, int32_t many, const std::byte* records) {
        if (!writable_ || first < 1 || many < 0) return false;
        windowUsed_ = 0;
        return file_.writeAt(place(first), {records, static_cast<std::size_t>(many) *
                                                         static_cast<std::size_t>(recordBytes_)});
    }

  private:
    int64_t place(int64_t number) const { return start_ + (number - 1) * recordBytes_; }

    // Bytes of the file that are at hand or fit the window; null for more than that.
    const std::byte* window(int64_t position, std::size_t bytes) {
        if (bytes > kWindowBytes) return nullptr;
        if (position < windowStart_ || position + static_cast<int64_t>(bytes) >
                                           windowStart_ + static_cast<int64_t>(windowUsed_)) {
            window_.resize(kWindowBytes);
            const int64_t read = file_.readAt(position, window_);
            windowStart_ = position;
            windowUsed_ = read < 0 ? 0 : static_cast<std::size_t>(read);
            if (windowUsed_ < bytes) return nullptr;
        }
        return window_.data() + (position - windowStart_);
    }

    File file_;
    bool writable_;
    int64_t recordBytes_;
    int64_t start_ = 0;
    std::vector<std::byte> window_;
    int64_t windowStart_ = 0;
    std::size_t windowUsed_ = 0;
};

store::HandleTable<MemberChannel> channels;

File openMember(const char* path, int32_t mode) {
    switch (mode) {
        case QX_MEMBER_NEW:
            return File::create(path, File::Creation::kAnew);
        case QX_MEMBER_READ:
            return File::read(path);
        case QX_MEMBER_UPDATE:
            return File::readWrite(path);
        case QX_MEMBER_EITHER:
            return File::create(path, File::Creation::kKeep);
        default:
            return {};
    }
}

}  // namespace

namespace qxbase {

void closeMemberChannels() { channels.closeAll(); }

}  // namespace qxbase

int32_t MEM_OpenChannel(const char* path, int32_t mode, int32_t recordBytes) {
    if (recordBytes < 1) return 0;
    File file = openMember(path, mode);
    if (!file.isOpen()) return 0;
    return channels.add(
        std::make_unique<MemberChannel>(std::move(file), mode != QX_MEMBER_READ, recordBytes));
}

int64_t MEM_Count(int32_t channel) {
    const MemberChannel* found = channels.find(channel);
    return found ? found->count() : 0;
}

int32_t MEM_Get(int32_t channel, int64_t first, int32_t count, void* records) {
    MemberChannel* found = channels.find(channel);
    return found ? found->get(first, count, static_cast<std::byte*>(records)) : 0;
}

int32_t MEM_Put(int32_t channel, int64_t first, int32_t count, const void* records) {
    MemberChannel* found = channels.find(channel);
    return found && found->put(first, count, static_cast<const std::byte*>(records)) ? 0 : -1;
}

void MEM_CloseChannel(int32_t channel) { channels.close(channel); }
