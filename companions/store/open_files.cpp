#include "companions/store/open_files.h"

namespace store {

namespace {

Buffered* first = nullptr;

}  // namespace

Buffered::Buffered() : next_(first), link_(&first) {
    if (next_) next_->link_ = &next_;
    first = this;
}

Buffered::~Buffered() {
    *link_ = next_;
    if (next_) next_->link_ = link_;
}

void flushAll() {
    for (Buffered* file = first; file; file = file->next_) file->flush();
}

}  // namespace store
