// Transfers: a member file written from its start in one go.
#include <algorithm>
#include <limits>
#include <memory>

#include "companions/qxbase/state.h"
#include "companions/store/appender.h"
#include "companions/store/handle_table.h"
#include "companions/store/member_names.h"
#include "companions/store/open_files.h"
#include "host/cpp/fixed_text.h"
#include "host/qxbase/members.h"
#include "host/qxbase/tins.h"

namespace {

constexpr int32_t kFailed = 1;
constexpr int32_t kEnvironmentCode = 75;
constexpr int32_t kOlderEnvironmentCode = 88;

class Transfer : public store::Buffered {
  public:
    Transfer(store::File file, int64_t limit) : appender_(std::move(file), 0), limit_(limit) {}
    ~Transfer() override { flush(); }

    void write(std::span<const std::byte> bytes) {
        const int64_t room = limit_ - appender_.end();
        appender_.append(bytes.first(static_cast<std::size_t>(
            std::min(static_cast<int64_t>(bytes.size()), std::max<int64_t>(room, 0)))));
    }
    void flush() override { appender_.flush(); }

  private:
    store::Appender appender_;
    int64_t limit_;
};

store::HandleTable<Transfer> transfers;

int64_t limitOf(std::string_view path) {
    const std::string_view name = store::namePart(path);
    const bool environment = name == store::memberName(kEnvironmentCode) ||
                             name == store::memberName(kOlderEnvironmentCode);
    return environment ? static_cast<int64_t>(sizeof(QxTinEnvironment))
                       : std::numeric_limits<int64_t>::max();
}

}  // namespace

namespace qxbase {

void closeTransfers() { transfers.closeAll(); }

}  // namespace qxbase

void mexist_(const char* name, int32_t* exists, int32_t nameLength) {
    *exists = store::exists(std::string(qx::textArgument(name, nameLength))) ? 1 : 0;
}

void mcreat_(int32_t* channel, const char* name, int32_t* status, int32_t nameLength) {
    const std::string path(qx::textArgument(name, nameLength));
    store::File file = store::File::create(path, store::File::Creation::kAnew);
    if (!file.isOpen()) {
        *status = kFailed;
        return;
    }
    *channel = transfers.add(std::make_unique<Transfer>(std::move(file), limitOf(path)));
    *status = 0;
}

void mxfer_(const int32_t* channel, const int32_t* count, const void* bytes) {
    constexpr std::size_t kUnitBytes = 2;
    Transfer* found = transfers.find(*channel);
    if (!found || *count <= 0) return;
    found->write(
        {static_cast<const std::byte*>(bytes), static_cast<std::size_t>(*count) * kUnitBytes});
}

void mclose_(const int32_t* channel) { transfers.close(*channel); }
