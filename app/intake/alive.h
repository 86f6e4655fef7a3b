// That long work goes on, told to whoever watches this process.
#ifndef APP_INTAKE_ALIVE_H
#define APP_INTAKE_ALIVE_H

#include <atomic>
#include <cstdint>

namespace program {

// Where each step of some thousand lines or features is counted; nowhere where it is null.
inline std::atomic<uint64_t>* stepsTaken = nullptr;

inline void stepTaken() {
    if (stepsTaken) stepsTaken->fetch_add(1, std::memory_order_relaxed);
}

}  // namespace program

#endif
