// A record with a fixed front and a tail that grows as lines arrive, in one run of memory as the
// writer operations want it. What a count claims costs nothing; what was read is kept.
#ifndef COVERAGE_GROWING_RECORD_H
#define COVERAGE_GROWING_RECORD_H

#include <cstddef>
#include <new>
#include <type_traits>

#include "host/cpp/growing_bytes.h"

namespace intake {

template <class Front, class Element>
class GrowingRecord {
    static_assert(std::is_trivially_copyable_v<Front> && std::is_trivially_copyable_v<Element>);
    static_assert(sizeof(Front) % alignof(Element) == 0);

  public:
    GrowingRecord() {
        clearTail();
        front() = {};
    }

    Front& front() { return *std::launder(reinterpret_cast<Front*>(bytes_.data())); }
    void clearTail() { bytes_.resize(sizeof(Front)); }
    void add(const Element& element) { *grow(1) = element; }
    // Room for more elements, to be filled before any other call.
    Element* grow(std::size_t count) {
        const std::size_t end = bytes_.size();
        bytes_.resize(end + count * sizeof(Element));
        return std::launder(reinterpret_cast<Element*>(bytes_.data() + end));
    }
    const void* data() const { return bytes_.data(); }

  private:
    // Memory of the default allocator is aligned for any number.
    qx::GrowingBytes bytes_;
};

}  // namespace intake

#endif
