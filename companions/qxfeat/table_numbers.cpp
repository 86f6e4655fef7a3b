#include "companions/qxfeat/table_numbers.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <cstring>

namespace qxfeat {

namespace {

constexpr std::size_t kFewestSlots = 64;
// Characters of erased names that are kept beside as many of others.
constexpr std::size_t kErasedBytes = 64 * 1024;

// Not known to whoever makes names that are to meet.
uint64_t secret() {
    static const uint64_t value = [] {
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        const auto address = reinterpret_cast<uintptr_t>(&now);
        return (static_cast<uint64_t>(now) ^ address) * 0x9E3779B97F4A7C15U;
    }();
    return value;
}

uint32_t hashOf(std::string_view name) {
    const auto mix = [](uint64_t hash) {
        hash *= 0xD6E8FEB86659FD93U;
        return hash ^ hash >> 32;
    };
    uint64_t hash = secret() ^ name.size();
    for (; name.size() >= sizeof hash; name.remove_prefix(sizeof hash)) {
        uint64_t word;
        std::memcpy(&word, name.data(), sizeof word);
        hash = mix(hash ^ word);
    }
    uint64_t rest = 0;
    for (const char character : name) rest = rest << 8 | static_cast<unsigned char>(character);
    return static_cast<uint32_t>(mix(mix(hash ^ rest)));
}

}  // namespace

std::size_t TableNumbers::slotOf(std::string_view name, uint32_t hash) const {
    const std::size_t last = slots_.size() - 1;
    std::size_t slot = hash & last;
    while (slots_[slot] != 0) {
        const Place& place = places_[slots_[slot] - 1];
        if (place.hash == hash && nameOf(place) == name) break;
        slot = (slot + 1) & last;
    }
    return slot;
}

int32_t TableNumbers::find(std::string_view name) const {
    if (slots_.empty()) return 0;
    const uint32_t place = slots_[slotOf(name, hashOf(name))];
    return place == 0 ? 0 : places_[place - 1].number;
}

void TableNumbers::set(std::string_view name, int32_t number) {
    makeRoom(name.size());
    const uint32_t hash = hashOf(name);
    const std::size_t slot = slotOf(name, hash);
    if (slots_[slot] == 0) {
        places_.push_back(
            {0, static_cast<uint32_t>(names_.size()), static_cast<uint32_t>(name.size()), hash});
        names_ += name;
        slots_[slot] = static_cast<uint32_t>(places_.size());
    }
    Place& place = places_[slots_[slot] - 1];
    if (place.number == 0) {
        ++size_;
        nameBytes_ += name.size();
    }
    place.number = number;
}

void TableNumbers::erase(std::string_view name) {
    if (find(name) == 0) return;
    places_[slots_[slotOf(name, hashOf(name))] - 1].number = 0;
    --size_;
    nameBytes_ -= name.size();
}

void TableNumbers::reserve(std::size_t names, std::size_t bytes) {
    if (!places_.empty()) return;
    slots_.resize(std::bit_ceil(2 * names));
    places_.reserve(slots_.size() / 2);
    names_.reserve(bytes);
}

// Room for one more name. Memory that is not there leaves everything as it was.
void TableNumbers::makeRoom(std::size_t bytes) {
    const bool fits = places_.size() < slots_.size() / 2 &&
                      names_.size() + bytes <= 2 * nameBytes_ + kErasedBytes;
    if (fits) {
        if (names_.capacity() < names_.size() + bytes) names_.reserve(2 * names_.size() + bytes);
        return;
    }
    TableNumbers fresh;
    fresh.reserve(std::max(kFewestSlots / 4, 2 * (size_ + 1)), nameBytes_ + bytes);
    for (const Place& place : places_) {
        if (place.number == 0) continue;
        const std::string_view name = nameOf(place);
        fresh.slots_[fresh.slotOf(name, place.hash)] =
            static_cast<uint32_t>(fresh.places_.size()) + 1;
        fresh.places_.push_back(
            {place.number, static_cast<uint32_t>(fresh.names_.size()), place.length, place.hash});
        fresh.names_ += name;
    }
    fresh.size_ = size_;
    fresh.nameBytes_ = nameBytes_;
    *this = std::move(fresh);
}

std::vector<TableNumbers::Entry> TableNumbers::entries() const {
    std::vector<Entry> list;
    list.reserve(size_);
    for (const Place& place : places_) {
        if (place.number != 0) list.push_back({place.number, nameOf(place)});
    }
    std::sort(list.begin(), list.end(),
              [](const Entry& left, const Entry& right) { return left.number < right.number; });
    return list;
}

}  // namespace qxfeat
