#include "app/intake/batch/peak_memory.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <charconv>
#include <string_view>

namespace program {

void resetPeakMemory() {
    const int file = ::open("/proc/self/clear_refs", O_WRONLY | O_CLOEXEC);
    if (file < 0) return;
    [[maybe_unused]] const ssize_t written = ::write(file, "5", 1);
    ::close(file);
}

uint64_t peakMemory() {
    constexpr std::string_view kKey = "VmHWM:";
    constexpr uint64_t kUnit = 1024;
    char bytes[4096];
    const int file = ::open("/proc/self/status", O_RDONLY | O_CLOEXEC);
    if (file >= 0) {
        const ssize_t count = ::read(file, bytes, sizeof bytes);
        ::close(file);
        const std::string_view text(bytes, static_cast<std::size_t>(count > 0 ? count : 0));
        const std::size_t at = text.find(kKey);
        const std::size_t digit =
            at == std::string_view::npos ? at : text.find_first_of("0123456789", at);
        uint64_t kilobytes = 0;
        if (digit != std::string_view::npos) {
            std::from_chars(text.data() + digit, text.data() + text.size(), kilobytes);
            return kilobytes * kUnit;
        }
    }
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<uint64_t>(usage.ru_maxrss) * kUnit;
}

}  // namespace program
