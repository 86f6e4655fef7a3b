// The form of every sequence here: an input range over the records of a stored file.
//
//     for (const Arc& arc : arcs(coverage)) ...
//
// A range reads its file once, forwards. What an element shows is valid until the range goes on to
// the next one. The file closes with the range, also when a loop is left early. A range is moved,
// never copied; what it showed before it moved is no longer valid.
//
// Without a file there is a range too: false, empty, with a count of 0. A record that is damaged
// ends the range as the last one does; the companions have noted which file it was, and tell it at
// their end (rdfailC). Nothing throws but std::bad_alloc.
#ifndef DATASETS_RANGE_H
#define DATASETS_RANGE_H

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>

#include "host/cpp/call.h"

namespace datasets {

// The one owner of a handle of the companions, closed by their operation. 0 is no handle.
template <auto close>
class Handle {
  public:
    Handle() = default;
    Handle(Handle&& other) noexcept : number_(std::exchange(other.number_, 0)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Handle() { reset(); }

    // What an operation opens: operation(handle, arguments..., status). It may be no handle.
    template <class Operation, class... Arguments>
    static Handle opened(Operation* operation, const Arguments&... arguments) {
        Handle handle;
        int32_t number = 0;
        int32_t status = 1;
        qx::call(operation, number, arguments..., status);
        handle.take(number, status);
        return handle;
    }
    // Takes the handle that an operation opened; for a status that is not 0 it opened none.
    void take(int32_t number, int32_t status) {
        reset();
        if (status == 0) number_ = number;
    }
    void reset() {
        if (number_ != 0) close(&number_);
        number_ = 0;
    }
    explicit operator bool() const { return number_ != 0; }
    // What operations take, by address.
    const int32_t& number() const { return number_; }

  private:
    int32_t number_ = 0;
};

// A cursor made a range. Cursor is a class that can be moved, with
//     using Element = ...;
//     explicit operator bool() const;      whether there is a file
//     bool next();                         goes to the next element; false behind the last
//     const Element& current() const;      the element that next went to
// and where the operations have it
//     int32_t count() const;               how many records the file says it has
//     bool go(int32_t record);             makes the record of a number, from 1, the next one
template <class Cursor>
class Range : public Cursor {
  public:
    using Element = typename Cursor::Element;

    class Iterator {
      public:
        using iterator_concept = std::input_iterator_tag;
        using value_type = Element;
        using difference_type = std::ptrdiff_t;

        Iterator() = default;
        explicit Iterator(Range& range) : range_(&range) { ++*this; }
        const Element& operator*() const { return range_->current(); }
        const Element* operator->() const { return &range_->current(); }
        Iterator& operator++() {
            if (!range_->next()) range_ = nullptr;
            return *this;
        }
        void operator++(int) { ++*this; }
        friend bool operator==(const Iterator& place, std::default_sentinel_t) {
            return place.range_ == nullptr;
        }

      private:
        Range* range_ = nullptr;
    };

    using Cursor::Cursor;
    Range() = default;
    Range(Cursor&& cursor) : Cursor(std::move(cursor)) {}  // NOLINT: a cursor is a range

    // From the next element on: the first, the one behind the last that was read, or the one that
    // go chose.
    Iterator begin() { return Iterator(*this); }
    std::default_sentinel_t end() const { return {}; }

    // The element of a record number, from 1; null if there is none or it is damaged.
    const Element* at(int32_t record) {
        return this->go(record) && this->next() ? &this->current() : nullptr;
    }
};

}  // namespace datasets

#endif
