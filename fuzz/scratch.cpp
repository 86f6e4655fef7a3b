#include "fuzz/scratch.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>

#include "host/qxbase.h"

namespace fuzz {

namespace fs = std::filesystem;

Scratch::Scratch() {
    const fs::path memory = "/dev/shm";
    std::error_code ignored;
    const fs::path folder = fs::is_directory(memory, ignored) ? memory : fs::temp_directory_path();
    std::string name = (folder / "intake-fuzz-XXXXXX").string();
    require(mkdtemp(name.data()) != nullptr, "no folder to write to");
    root_ = name;
}

Scratch::~Scratch() {
    std::error_code ignored;
    fs::remove_all(root_, ignored);
}

void Scratch::write(std::string_view name, std::string_view bytes) const {
    const int file = ::open(path(name).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    require(file >= 0, "no file to write to");
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    require(written == static_cast<ssize_t>(bytes.size()), "a file was not written");
    ::close(file);
}

int Scratch::writeVolumes(std::string_view text) const {
    for (int volume = 0;; ++volume) {
        const std::size_t end =
            volume + 1 < kMostVolumes ? text.find('\f') : std::string_view::npos;
        write("in.e0" + std::to_string(volume), text.substr(0, end));
        if (end == std::string_view::npos) return volume + 1;
        text.remove_prefix(end + 1);
    }
}

void Scratch::remove(std::string_view name) const { ::unlink(path(name).c_str()); }

void Scratch::clear() const {
    for (const auto& entry : fs::directory_iterator(root_)) fs::remove_all(entry.path());
}

ImportOutcome lastImport;

bool ImportOutcome::wentWell() const { return result == 1 && worst <= QX_WARN; }

std::string fileBytes(const fs::path& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "Does not hold: %s\n", what);
    std::abort();
}

}  // namespace fuzz
