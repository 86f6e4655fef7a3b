// Surfaces for reading, over the member channels.
#include "host/qxbase/tins.h"

#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <string>

#include "companions/qxbase/state.h"
#include "companions/store/file.h"
#include "companions/store/handle_table.h"
#include "companions/store/member_names.h"
#include "companions/store/words.h"
#include "host/cpp/fixed_text.h"
#include "host/qxbase/members.h"

namespace {

constexpr int32_t kFailed = -1;
constexpr int32_t kEnvironmentCode = 75;

struct Member {
    int32_t code;
    int32_t olderCode;
    int32_t recordBytes;
};

constexpr std::array kMembers = {
    Member{kEnvironmentCode, 88, 96},
    Member{QX_TIN_MASK, 87, 4},
    Member{QX_TIN_NODE_XY, 81, 16},
    Member{QX_TIN_NODE_Z, 82, 4},
    Member{QX_TIN_TRIANGLE_NODES, 83, 12},
    Member{QX_TIN_TRIANGLE_EDGES, 84, 12},
    Member{QX_TIN_HULL, 85, 4},
    Member{QX_TIN_NODE_ID, 86, 4},
};

struct Surface {
    std::array<int32_t, kMembers.size()> channels{};

    Surface() = default;
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;
    ~Surface() {
        for (const int32_t channel : channels) MEM_CloseChannel(channel);
    }
    // 0, which is no channel, for a member that is missing or unknown.
    int32_t channel(int32_t code) const {
        for (std::size_t index = 0; index < kMembers.size(); ++index) {
            if (kMembers[index].code == code) return channels[index];
        }
        return 0;
    }
};

store::HandleTable<Surface> surfaces;

int32_t channelOf(const int32_t* handle, int32_t code) {
    const Surface* surface = surfaces.find(*handle);
    return surface ? surface->channel(code) : 0;
}

// A member of the older name goes first, as it does where one is written.
int32_t openMember(std::string_view path, const Member& member) {
    for (const int32_t code : {member.olderCode, member.code}) {
        const int32_t channel = MEM_OpenChannel(store::memberPath(path, code).c_str(),
                                                QX_MEMBER_READ, member.recordBytes);
        if (channel != 0) return channel;
    }
    return 0;
}

}  // namespace

namespace qxbase {

void closeSurfaces() { surfaces.closeAll(); }

}  // namespace qxbase

int32_t tinver_(const int32_t* word) {
    // The bits of an integer that is a version are those of a real next to 0, never of one such as
    // 6.1. Above that range a real has no version that an integer could hold.
    const float real = std::bit_cast<float>(*word);
    if (!(real >= 1.0F && real < 200000.0F)) return *word;
    // Whole part, tenths and hundredths, rounded so that 6.11 is 60101.
    const auto hundredths = static_cast<int64_t>(std::llround(real * 100.0));
    return static_cast<int32_t>(hundredths / 100 * 10000 + hundredths / 10 % 10 * 100 +
                                hundredths % 10);
}

void tinopn_(int32_t* handle, const char* path, int32_t* status, int32_t pathLength) {
    const std::string_view surfacePath = qx::textArgument(path, pathLength);
    *status = kFailed;
    const auto has = [&](int32_t code) {
        return store::exists(store::memberPath(surfacePath, code));
    };
    if (surfacePath.empty() || !(has(kMembers[0].code) || has(kMembers[0].olderCode))) return;
    auto surface = std::make_unique<Surface>();
    for (std::size_t index = 0; index < kMembers.size(); ++index) {
        surface->channels[index] = openMember(surfacePath, kMembers[index]);
    }
    *handle = surfaces.add(std::move(surface));
    *status = 0;
}

void tinenv_(const int32_t* handle, QxTinEnvironment* environment, int32_t* status) {
    std::array<std::byte, sizeof(QxTinEnvironment)> record;
    *status = kFailed;
    if (MEM_Get(channelOf(handle, kEnvironmentCode), 1, 1, record.data()) != 1) return;
    store::WordReader words(record.data());
    QxTinEnvironment& env = *environment;
    words >> env.nodeCount >> env.triangleCount >> env.hullCount >> env.digit;
    words >> env.secondTriangleCount >> env.secondNodeCount >> env.secondHullCount;
    words >> env.lowestZ >> env.highestZ >> env.reserved;
    for (double& value : env.box) words >> value;
    words >> env.fifthReal >> env.sixthReal >> env.version >> env.spare;
    *status = 0;
}

void tincnt_(const int32_t* handle, const int32_t* member, int64_t* count) {
    *count = MEM_Count(channelOf(handle, *member));
}

void tinget_(const int32_t* handle, const int32_t* member, const int64_t* first,
             const int32_t* capacity, void* records, int32_t* count) {
    *count = MEM_Get(channelOf(handle, *member), *first, *capacity, records);
    const auto read = static_cast<std::size_t>(*count);
    for (const Member& each : kMembers) {
        if (each.code != *member) continue;
        if (each.code == QX_TIN_NODE_XY) {
            store::turnAll(static_cast<double*>(records), read * 2);
        } else {
            store::turnAll(static_cast<uint32_t*>(records),
                           read * static_cast<std::size_t>(each.recordBytes) / 4);
        }
    }
}

void tincls_(const int32_t* handle) { surfaces.close(*handle); }
