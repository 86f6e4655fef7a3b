#include "bench/workspace.h"

#include <stdlib.h>

#include <string>

#include "bench/measure.h"
#include "host/qxbase.h"
#include "intakedl.h"

namespace bench {

namespace {

// Gone when the program ends.
struct Folder {
    fs::path path;
    explicit Folder(const fs::path& parent) {
        std::string name = (parent / "intake-bench-XXXXXX").string();
        require(mkdtemp(name.data()) != nullptr, "no folder to write to");
        path = name;
    }
    ~Folder() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
};

fs::path memory() {
    const fs::path shared = "/dev/shm";
    return fs::is_directory(shared) ? shared : fs::temp_directory_path();
}

bool inMemory = false;
int32_t worstLevel = 0;
std::string worstMessage;

void keepWorst(int32_t level, const char* text, void*) {
    if (level <= worstLevel) return;
    worstLevel = level;
    worstMessage = text;
}

}  // namespace

const fs::path& folder() {
    if (inMemory) {
        static const Folder made{memory()};
        return made.path;
    }
    static const Folder made{fs::temp_directory_path()};
    return made.path;
}

InMemory::InMemory() { inMemory = true; }
InMemory::~InMemory() { inMemory = false; }

void import(const fs::path& file, const char* dataset) {
    worstLevel = QX_INFORM;
    mesink_(keepWorst, nullptr);
    const int32_t result = ImportFile(file.c_str(), (folder() / "workspace" / dataset).c_str(), 1);
    if (worstLevel > QX_INFORM) throw std::runtime_error(worstMessage);
    require(result == 1, "the import ran to its end");
}

void clearWorkspace() {
    fs::remove_all(folder() / "workspace");
    fs::create_directory(folder() / "workspace");
}

std::size_t storedBytes() {
    std::size_t bytes = 0;
    for (const auto& entry : fs::recursive_directory_iterator(folder() / "workspace")) {
        if (entry.is_regular_file()) bytes += entry.file_size();
    }
    return bytes;
}

}  // namespace bench
