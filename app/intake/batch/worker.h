// A process that takes inputs in turn, so that one which crashes, hangs or eats memory costs that
// input alone.
#ifndef APP_INTAKE_BATCH_WORKER_H
#define APP_INTAKE_BATCH_WORKER_H

#include <atomic>
#include <cstdint>

#include "app/intake/batch/options.h"
#include "app/intake/batch/run_job.h"

namespace program {

// How a worker ends that may hold no more memory.
constexpr int kOutOfMemory = 77;

// Runs in a process of its own, until nobody talks to it any more: takes jobs from the socket and
// answers each, in their order. Counts the steps that it takes.
[[noreturn]] void work(int socket, const BatchOptions& options, const Rooms& rooms,
                       std::atomic<uint64_t>& steps);

}  // namespace program

#endif
