// Handles: small integers from 1 for objects that a caller holds open. A freed handle is given out
// again, the lowest first.
#ifndef COMPANIONS_STORE_HANDLE_TABLE_H
#define COMPANIONS_STORE_HANDLE_TABLE_H

#include <cstdint>
#include <memory>
#include <vector>

namespace store {

template <class T>
class HandleTable {
  public:
    int32_t add(std::unique_ptr<T> object) {
        for (std::size_t index = 0; index < objects_.size(); ++index) {
            if (!objects_[index]) {
                objects_[index] = std::move(object);
                return static_cast<int32_t>(index + 1);
            }
        }
        objects_.push_back(std::move(object));
        return static_cast<int32_t>(objects_.size());
    }
    // The next add takes no memory.
    void makeRoom() { objects_.reserve(objects_.size() + 1); }
    // Null for a number that is no open handle.
    T* find(int32_t handle) const {
        if (handle < 1 || static_cast<std::size_t>(handle) > objects_.size()) return nullptr;
        return objects_[static_cast<std::size_t>(handle) - 1].get();
    }
    // The first open object of which something holds, null if there is none.
    template <class Condition>
    T* findIf(Condition holds) const {
        for (const auto& object : objects_) {
            if (object && holds(*object)) return object.get();
        }
        return nullptr;
    }
    void close(int32_t handle) {
        if (find(handle)) objects_[static_cast<std::size_t>(handle) - 1].reset();
    }
    void closeAll() { objects_.clear(); }

  private:
    std::vector<std::unique_ptr<T>> objects_;
};

}  // namespace store

#endif
