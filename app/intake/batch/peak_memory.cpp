#include "app/intake/batch/peak_memory.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace program {

void resetPeakMemory() {
    static const int file = ::open("/proc/self/clear_refs", O_WRONLY | O_CLOEXEC);
    if (file < 0) return;
    [[maybe_unused]] const ssize_t written = ::pwrite(file, "5", 1, 0);
}

uint64_t peakMemory() {
    // Of a process that was not begun by exec it is what was reset; /proc tells it too, at length.
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<uint64_t>(usage.ru_maxrss) * 1024;
}

}  // namespace program
