#include "app/intake/batch/worker.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <new>

#include "app/intake/alive.h"
#include "app/intake/batch/message.h"
#include "app/intake/interrupts.h"

namespace program {

namespace {

[[noreturn]] void endForWantOfMemory() { ::_exit(kOutOfMemory); }

void limitMemory(uint64_t bytes) {
#if defined(__SANITIZE_ADDRESS__)
    static_cast<void>(bytes);  // it reserves more than there is
#else
    // Of what it may write to: libraries that are only mapped take none.
    const rlimit limit{bytes, bytes};
    ::setrlimit(RLIMIT_DATA, &limit);
#endif
    std::set_new_handler(endForWantOfMemory);
}

}  // namespace

void work(int socket, const BatchOptions& options, const Rooms& rooms,
          std::atomic<uint64_t>& steps) {
    // The temporary folders that this process knows of are its parent's.
    std::set_terminate([] { std::abort(); });
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, SIG_IGN);
    const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    ::dup2(nothing, STDIN_FILENO);
    ::dup2(nothing, STDOUT_FILENO);
    ::setenv("TMPDIR", rooms.scratch.c_str(), 1);
    stepsTaken = &steps;
    limitMemory(options.memory);
    const Interrupts once;  // those of each export are within
    Inbox inbox;
    while (inbox.fill(socket)) {
        for (std::string_view message; inbox.next(message);) {
            Job job;
            unpack(message, job);
            if (!send(socket, packed(runJob(job, options, rooms)))) ::_exit(0);
        }
    }
    ::_exit(0);
}

}  // namespace program
