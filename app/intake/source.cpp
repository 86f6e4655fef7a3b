#include "app/intake/source.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "app/intake/console.h"
#include "app/intake/interrupts.h"
#include "app/intake/looks_like.h"
#include "app/intake/module.h"
#include "containers/archive.h"
#include "containers/magic.h"
#include "host/cpp/call.h"
#include "host/qxbase.h"

namespace program {

namespace {

namespace fs = std::filesystem;

constexpr const char kStandardInput[] = "standard input";

bool isFile(const std::string& path) {
    std::error_code ignored;
    return fs::is_regular_file(path, ignored);
}

// Of a regular file alone: a pipe would be waited for.
std::string startOf(const std::string& path) {
    if (!isFile(path)) return {};
    std::ifstream stream(path, std::ios::binary);
    std::string start(containers::kStartBytes, '\0');
    stream.read(start.data(), static_cast<std::streamsize>(start.size()));
    start.resize(static_cast<std::size_t>(std::max<std::streamsize>(0, stream.gcount())));
    return start;
}

// FILE cut into what lies on the disk and what is wanted of it.
struct Parts {
    std::string file;
    std::string wanted;
};

Parts partsOf(const std::string& given) {
    std::error_code ignored;
    if (given == "-") return {given, ""};
    // As the command line says "-::NAME", which its parser would take for an option.
    constexpr std::string_view kInStandardInput = "/dev/stdin::";
    if (given.starts_with(kInStandardInput)) return {"-", given.substr(kInStandardInput.size())};
    if (fs::exists(given, ignored)) return {given, ""};
    for (std::size_t at = given.find("::"); at != std::string::npos;
         at = given.find("::", at + 1)) {
        const std::string file = given.substr(0, at);
        if (file == "-" || isFile(file)) return {file, given.substr(at + 2)};
    }
    return {given, ""};
}

std::string listOf(const std::vector<containers::Content>& contents, bool likeness) {
    std::string list;
    for (const auto& content : contents) {
        list += "\n  " + shown(content.name);
        if (!likeness) continue;
        list += ": " + (content.encrypted ? "encrypted" : likenessOf(content.start).what);
    }
    return list;
}

[[noreturn]] void leaveToTheUser(const containers::Expansion& expansion, const std::string& file,
                                 const std::string& wanted) {
    if (expansion.choice.empty()) {
        const std::string missing =
            wanted.empty() ? " holds no interchange file" : " holds no file " + wanted;
        if (expansion.others.empty()) throw NotInIt(file + " holds no file at all");
        throw NotInIt(file + missing + "; in it are:" + listOf(expansion.others, true));
    }
    const bool again = file != kStandardInput;
    std::vector<std::string> names;
    for (const auto& content : expansion.choice) {
        if (again) names.push_back(file + "::" + content.name);
    }
    throw Undecided(file + " holds several interchange files; give one as " + (again ? file : "-") +
                        "::NAME:" + listOf(expansion.choice, false),
                    std::move(names));
}

}  // namespace

Source::Source(const SourceOptions& options) {
    const EndingAtOnce nothingElseIsMade;
    const Parts parts = partsOf(options.file);
    std::string shownAs = parts.file;
    path_ = parts.file;
    if (parts.file == "-") {
        shownAs = kStandardInput;
        takeStandardInput(options.mostBytes);
    }
    if (!containers::containerOf(startOf(path_)).empty()) {
        expand(options, shownAs, parts.wanted);
    } else if (!parts.wanted.empty()) {
        throw NotInIt(shownAs + " is no archive, and holds no file " + parts.wanted);
    }
}

void Source::takeStandardInput(uint64_t mostBytes) {
    folder_ = std::make_unique<TemporaryFolder>();
    // Without digits at its end: no volume follows.
    path_ = folder_->path() + "/input";
    name(path_, kStandardInput);
    const auto fail = [&](const std::string& what) {
        const std::string reason = std::strerror(errno);
        throw std::runtime_error(what + ": " + reason);
    };
    const int target = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (target < 0) fail("could not write a temporary file");
    const auto close = [](const int* descriptor) { ::close(*descriptor); };
    const std::unique_ptr<const int, decltype(close)> closing(&target, close);
    std::vector<char> buffer(1 << 20);
    for (uint64_t total = 0;;) {
        const ssize_t count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) fail("could not read standard input");
        if (count == 0) return;
        total += static_cast<uint64_t>(count);
        if (total > mostBytes) {
            throw std::runtime_error("standard input has more than " + std::to_string(mostBytes) +
                                     " bytes; --max-size sets another limit");
        }
        for (ssize_t written = 0; written < count;) {
            const ssize_t more =
                ::write(target, buffer.data() + written, static_cast<std::size_t>(count - written));
            if (more < 0) fail("could not write a temporary file; TMPDIR names another folder");
            written += more;
        }
    }
}

void Source::expand(const SourceOptions& options, const std::string& shownAs,
                    const std::string& wanted) {
    const auto& archive = loadModule<containers::Archive>("archive");
    const bool standardInput = folder_ != nullptr;
    if (!folder_) folder_ = std::make_unique<TemporaryFolder>();
    containers::Request request;
    request.path = path_;
    request.shownAs = shownAs;
    request.wanted = wanted;
    request.folder = folder_->path();
    request.limits.mostBytes = options.mostBytes;
    request.volumesBeside = !standardInput;
    request.wantedStart = beginsInterchange;
    request.certainStart = hasHeaderLine;
    const containers::Expansion expansion = archive.expand(request);
    if (expansion.volumes.empty()) leaveToTheUser(expansion, shownAs, wanted);
    container_ = expansion.container;
    for (const auto& volume : expansion.volumes) {
        expanded_.push_back({volume.name, volume.path, volume.bytes});
    }
    // A compressed file is its own only content.
    const std::string lastName = fs::path(shownAs).filename().string();
    const bool alone = lastName == expansion.volumes[0].name;
    const std::string around =
        alone ? shownAs.substr(0, shownAs.size() - lastName.size()) : shownAs + "::";
    path_ = expansion.volumes[0].path;
    if (expansion.stem.empty()) {
        name(path_, around + expansion.volumes[0].name);
    } else {
        // Also of a volume that was looked for in vain.
        name(path_.substr(0, path_.size() - 2), around + expansion.stem);
    }
}

std::string Source::shown(std::string_view message) const {
    std::string text(message);
    for (const auto& [temporary, given] : names_) {
        for (std::size_t at = text.find(temporary); at != std::string::npos;
             at = text.find(temporary, at + given.size())) {
            text.replace(at, temporary.size(), given);
        }
    }
    return text;
}

bool Source::beginsWell() const { return beginsInterchange(startOf(path_)); }

std::vector<Source::Volume> Source::volumes() const {
    if (!expanded_.empty()) return expanded_;
    std::vector<Volume> found;
    if (path_.size() > qx::Name::kLength) return found;
    constexpr int32_t kReader = 2;
    qx::Name volume(path_);
    for (int32_t status = 0; status == 0; qx::call(iename_, volume, kReader, status)) {
        const std::string path(volume.view());
        // A volume with a header line of its own is another file.
        if (!found.empty() && hasHeaderLine(startOf(path))) break;
        std::error_code failed;
        const auto bytes = fs::file_size(path, failed);
        if (failed) break;
        found.push_back({shown(path), path, bytes});
    }
    return found;
}

}  // namespace program
