// Hashes with a value each, in as few bytes as there can be: a million and more are held.
#ifndef APP_INTAKE_BATCH_HASH_TABLE_H
#define APP_INTAKE_BATCH_HASH_TABLE_H

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace program {

// Open addressing over hashes that are good ones already. Two keys of one hash count as the same.
template <class Value>
class HashTable {
  public:
    // The value of a hash; new ones begin as Value(). Valid until the next one is added.
    Value& operator[](uint64_t hash) {
        if ((count_ + 1) * 4 > slots_.size() * 3) grow();
        Slot& slot = slotOf(hash);
        if (slot.hash == 0) {
            slot.hash = keyOf(hash);
            ++count_;
        }
        return slot.value;
    }
    const Value* find(uint64_t hash) const {
        if (slots_.empty()) return nullptr;
        const Slot& slot = const_cast<HashTable*>(this)->slotOf(hash);
        return slot.hash == 0 ? nullptr : &slot.value;
    }
    std::size_t size() const { return count_; }

  private:
    struct Slot {
        uint64_t hash = 0;  // an empty one
        [[no_unique_address]] Value value{};
    };
    static uint64_t keyOf(uint64_t hash) { return hash == 0 ? 1 : hash; }
    Slot& slotOf(uint64_t hash) {
        const uint64_t key = keyOf(hash);
        std::size_t at = key % slots_.size();
        while (slots_[at].hash != 0 && slots_[at].hash != key) {
            if (++at == slots_.size()) at = 0;
        }
        return slots_[at];
    }
    void grow() {
        constexpr std::size_t kFirst = 1021;
        std::vector<Slot> before(slots_.empty() ? kFirst : slots_.size() * 3 / 2 + 2);
        before.swap(slots_);
        for (Slot& slot : before) {
            if (slot.hash != 0) slotOf(slot.hash) = std::move(slot);
        }
    }

    std::vector<Slot> slots_;
    std::size_t count_ = 0;
};

// For tables that only know what is in them.
struct Nothing {};

}  // namespace program

#endif
