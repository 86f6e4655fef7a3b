// Opening and closing a surface.
#include <memory>

#include "host/qxbase.h"
#include "stream/types.h"
#include "tin/member_files.h"
#include "tin/surface.h"

namespace intake {

namespace {

constexpr int32_t kNoDirectory = -2;
constexpr int32_t kNoGeneration = 0;

struct Member {
    int32_t code;
    int32_t olderCode;
    int32_t recordBytes;
    const char* failure;
};

constexpr const char* kNoMember = "Can not initialize Tin Environment";

// In the order of opening.
constexpr std::array kMembers = {
    Member{kEnvironmentFile, kOlderEnvironmentFile, sizeof(TINENV), "Cannot open Tin %1%"},
    Member{kMaskFile, 87, 4, "Cannot open Tin MSK file"},
    Member{51, 81, 16, kNoMember},
    Member{52, 82, 4, kNoMember},
    Member{53, 83, 12, kNoMember},
    Member{54, 84, 12, kNoMember},
    Member{55, 85, 4, kNoMember},
};
static_assert(kMembers.size() == std::tuple_size_v<decltype(Tin::channels)>);

std::string memberPath(const std::string& surface, int32_t code) {
    Name path;
    call(aname_, std::string_view(surface), path, code);
    return std::string(path.view());
}

bool exists(const std::string& path) {
    int32_t found = 0;
    call(mexist_, std::string_view(path), found);
    return found != 0;
}

void complain(const char* routine, const char* text, const std::string& path) {
    mesrtnC(routine);
    call(meschr_, std::string_view(path), 0);
    nonftlC(text);
}

void apply(Tin& tin, TinOption option) {
    constexpr std::array<int32_t, 3> kByAccess = {kScratchMode, kReadMode, kEitherMode};
    constexpr std::array<int32_t, 4> kByCreation = {kScratchMode, kEitherMode, kUpdateMode,
                                                    kNewMode};
    const auto value = static_cast<std::size_t>(option.value);
    if (option.code == 0 && value < kByAccess.size()) tin.mode = kByAccess[value];
    if (option.code == 1 && value < kByCreation.size()) {
        tin.mode = kByCreation[value];
        if (tin.mode == kNewMode) tin.isNew = true;
    }
    if (option.code == 6) tin.optionValue = option.value;
}

// The generation of the surface at the path, which a new one gets its directory for.
int32_t generationOf(const std::string& path, int32_t mode) {
    if (mode == kScratchMode) return kNewestGeneration;
    Status noDirectory = kSuccess;
    call(dexist_, std::string_view(path), noDirectory);
    if (mode == kNewMode || (mode == kEitherMode && noDirectory != kSuccess)) {
        return TIN_CreateBattery(path) == 0 ? kNewestGeneration : kNoGeneration;
    }
    if (noDirectory == kSuccess) {
        if (exists(memberPath(path, kEnvironmentFile))) return kNamedGeneration;
        if (exists(memberPath(path, kOlderEnvironmentFile))) return kOldestGeneration;
    }
    complain("TIN_OpenTin", "Tin %1% doesn't exist.", path);
    return kNoGeneration;
}

bool openMembers(Tin& tin, int32_t generation) {
    for (std::size_t index = 0; index < kMembers.size(); ++index) {
        const Member& member = kMembers[index];
        const int32_t code = generation == kOldestGeneration ? member.olderCode : member.code;
        tin.channels[index] =
            MEM_OpenChannel(memberPath(tin.path, code).c_str(), tin.mode, member.recordBytes);
        if (tin.channels[index] == 0) {
            complain("TIN_OpenTin", member.failure, tin.path);
            return false;
        }
    }
    return true;
}

void closeMembers(Tin& tin) {
    for (int32_t& channel : tin.channels) {
        if (channel != 0) MEM_CloseChannel(channel);
        channel = 0;
    }
}

}  // namespace

Tin* TIN_OpenTin(const std::string& path, std::span<const TinOption> options) {
    auto tin = std::make_unique<Tin>();
    for (const TinOption option : options) apply(*tin, option);
    tin->path = memberPath(path, 0);
    const int32_t generation = generationOf(tin->path, tin->mode);
    if (generation == kNoGeneration) return nullptr;
    tin->version = generation;
    if (tin->mode == kScratchMode) return tin.release();
    if (!openMembers(*tin, generation)) {
        closeMembers(*tin);
        return nullptr;
    }
    TINENV record{};
    if (MEM_Get(tin->channels[0], 1, 1, &record) == 1) {
        environmentFromFile(record);
        tin->environment = record;
        tin->version = call(tinver_, record.version);
    }
    return tin.release();
}

int32_t TIN_CreateBattery(const std::string& path) {
    Status missing = kSuccess;
    call(dexist_, std::string_view(path), missing);
    if (missing == kSuccess || dcreatC(path.c_str()) == kSuccess) return 0;
    complain("TIN_CreateBattery", "Unable to create directory %1% ", path);
    return kNoDirectory;
}

void closeTin(Tin* tin) {
    if (tin->channels[0] != 0 && tin->mode != kReadMode) {
        TINENV record = tin->environment;
        record.version = versionWord(tin->version);
        environmentToFile(record);
        MEM_Put(tin->channels[0], 1, 1, &record);
    }
    closeMembers(*tin);
    delete tin;
}

ZRange Tin::zRange() const {
    const auto scaled = [&](float z) { return static_cast<float>(z * zFactor); };
    const ZRange range = {scaled(environment.lowestZ), scaled(environment.highestZ)};
    return zFactor < 0 ? ZRange{range.highest, range.lowest} : range;
}

void Tin::setZRange(ZRange range) {
    if (zFactor < 0) std::swap(range.lowest, range.highest);
    environment.lowestZ = static_cast<float>(range.lowest / zFactor);
    environment.highestZ = static_cast<float>(range.highest / zFactor);
}

}  // namespace intake
