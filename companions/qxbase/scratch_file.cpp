#include "companions/qxbase/scratch_file.h"

#include <algorithm>
#include <cstring>

#include "companions/qxbase/state.h"
#include "companions/store/handle_table.h"
#include "host/cpp/call.h"
#include "host/qxbase/channels.h"
#include "host/qxbase/scratch.h"

namespace qxbase {

namespace {

constexpr std::size_t kWindowBytes = 256 * 1024;

store::HandleTable<ScratchFile>& scratchFiles() {
    static store::HandleTable<ScratchFile> table;
    return table;
}

}  // namespace

void closeScratchFiles() { scratchFiles().closeAll(); }

store::File openScratch() {
    qx::Name name;
    qx::call(scrnam_, name);
    store::File file =
        store::File::create(std::string(name.view()), store::File::Creation::kMustBeNew);
    // Without a name nothing keeps it.
    if (file.isOpen()) store::dropFile(file.path());
    file.keepNothing();
    return file;
}

std::unique_ptr<ScratchFile> ScratchFile::create() {
    store::File file = openScratch();
    if (!file.isOpen()) return nullptr;
    return std::unique_ptr<ScratchFile>(new ScratchFile(std::move(file)));
}

bool ScratchFile::read(int64_t position, std::span<std::byte> bytes) {
    const auto wanted = static_cast<int64_t>(bytes.size());
    const auto held = static_cast<int64_t>(window_.size());
    if (position < 0 || wanted > size() - position) return false;
    if (position < windowStart_ || position + wanted > windowStart_ + held) {
        appender_.flush();
        if (appender_.failed()) return false;
        window_.resize(static_cast<std::size_t>(
            std::min<int64_t>(std::max<int64_t>(wanted, kWindowBytes), size() - position)));
        windowStart_ = position;
        const int64_t count = appender_.file().readAt(position, window_);
        window_.resize(static_cast<std::size_t>(std::max<int64_t>(count, 0)));
        if (count < wanted) return false;
    }
    std::memcpy(bytes.data(), window_.data() + (position - windowStart_), bytes.size());
    return true;
}

}  // namespace qxbase

void scrgetC(int32_t* file) {
    auto scratch = qxbase::ScratchFile::create();
    *file = scratch ? qxbase::scratchFiles().add(std::move(scratch)) : 0;
}

void scrgivC(const int32_t* file) { qxbase::scratchFiles().close(*file); }

void BwriteC(const int32_t* file, const int32_t* words, const int32_t* data) {
    qxbase::ScratchFile* scratch = qxbase::scratchFiles().find(*file);
    if (!scratch || *words < 1) return;
    scratch->append(std::as_bytes(std::span(data, static_cast<std::size_t>(*words))));
}

void BrewndC(const int32_t* file) {
    if (qxbase::ScratchFile* scratch = qxbase::scratchFiles().find(*file)) scratch->next = 0;
}

void BreadC(const int32_t* file, const int32_t* words, int32_t* data, int32_t* status) {
    *status = -1;
    qxbase::ScratchFile* scratch = qxbase::scratchFiles().find(*file);
    if (!scratch || *words < 1) return;
    const std::span<int32_t> record(data, static_cast<std::size_t>(*words));
    if (!scratch->read(scratch->next, std::as_writable_bytes(record))) return;
    scratch->next += static_cast<int64_t>(record.size_bytes());
    *status = 0;
}
