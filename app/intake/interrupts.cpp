#include "app/intake/interrupts.h"

#include <atomic>

namespace program {

namespace {

std::atomic<int> noted{0};
static_assert(std::atomic<int>::is_always_lock_free);

void note(int number) { noted.store(number); }

}  // namespace

Interrupts::Interrupts() {
    noted.store(0);
    struct sigaction action {};
    action.sa_handler = note;
    // The second one finds what stood before.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (std::size_t each = 0; each < 3; ++each) sigaction(kSignals[each], &action, &before_[each]);
}

Interrupts::~Interrupts() {
    for (std::size_t each = 0; each < 3; ++each) sigaction(kSignals[each], &before_[each], nullptr);
}

int interruptedBy() { return noted.load(); }

void throwIfInterrupted() {
    if (const int number = interruptedBy(); number != 0) throw Interrupted(number);
}

}  // namespace program
