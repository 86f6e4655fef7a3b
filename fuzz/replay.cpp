// Runs a target over files and the files of folders, where there is no libFuzzer to do it. Behind
// --sound each input must import to its end with nothing worse than a warning.
#include <sys/resource.h>

#include <cstdint>
#include <cstdio>

#include "fuzz/scratch.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size);

// Memory that an input's size does not justify fails here, but for builds that map terabytes.
void limitMemory() {
#ifndef __SANITIZE_ADDRESS__
    constexpr rlim_t kBytes = 512U << 20;
    const rlimit limit{kBytes, kBytes};
    setrlimit(RLIMIT_AS, &limit);
#endif
}

int main(int argc, char** argv) {
    limitMemory();
    int count = 0;
    int unsound = 0;
    bool sound = false;
    const auto replay = [&](const std::filesystem::path& path) {
        const std::string bytes = fuzz::fileBytes(path);
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
        ++count;
        if (!sound || fuzz::lastImport.wentWell()) return;
        std::printf("%s gave %d, and a message of level %d\n", path.c_str(),
                    fuzz::lastImport.result, fuzz::lastImport.worst);
        ++unsound;
    };
    for (int index = 1; index < argc; ++index) {
        if (std::string_view(argv[index]) == "--sound") {
            sound = true;
            continue;
        }
        if (!std::filesystem::is_directory(argv[index])) {
            replay(argv[index]);
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(argv[index])) {
            replay(entry.path());
        }
    }
    std::printf("%d inputs replayed\n", count);
    return count > 0 && unsound == 0 ? 0 : 1;
}
