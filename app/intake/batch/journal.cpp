#include "app/intake/batch/journal.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "app/intake/batch/exact_path.h"
#include "app/intake/batch/report_line.h"
#include "app/intake/batch/stable_hash.h"

namespace program {

namespace {

// A value of the table: how the input was when it was done, its last bit telling whether it came
// out whole.
constexpr uint64_t kWholeBit = 1;
uint64_t valueOf(uint64_t size, std::string_view modified, std::string_view settings, bool whole) {
    const std::string text =
        std::to_string(size).append("\n").append(modified).append("\n").append(settings);
    return (stableHash(text) & ~kWholeBit) | (whole ? kWholeBit : 0);
}

}  // namespace

Journal::Journal(const BatchOptions& options, const std::string& path)
    : options_(options), path_(path) {
    const bool goesOn = options.resume || options.retry;
    file_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    const auto fail = [&](const std::string& reason) {
        if (file_ >= 0) ::close(file_);
        throw std::runtime_error(path + ": " + reason);
    };
    if (file_ < 0) fail(std::strerror(errno));
    // Some file systems have no locks.
    if (::flock(file_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        fail("another batch writes it");
    }
    if (options.force && !goesOn && ::ftruncate(file_, 0) != 0) fail(std::strerror(errno));
    if (!goesOn && ::lseek(file_, 0, SEEK_END) > 0) {
        ::close(file_);
        throw ReportStands(path +
                           " is there already; --resume goes on with it, --retry takes "
                           "what failed, --force begins anew");
    }
    cutTornLine();
    if (goesOn) readDone();
}

Journal::~Journal() { ::close(file_); }

void Journal::cutTornLine() {
    char last = '\n';
    off_t end = ::lseek(file_, 0, SEEK_END);
    const off_t whole = end;
    while (end > 0 && ::pread(file_, &last, 1, end - 1) == 1 && last != '\n') --end;
    if (end != whole && ::ftruncate(file_, end) != 0) {
        throw std::runtime_error(path_ + ": " + std::strerror(errno));
    }
}

void Journal::readDone() {
    std::ifstream lines(path_, std::ios::binary);
    for (std::string line; std::getline(lines, line);) {
        try {
            const auto object = nlohmann::json::parse(line);
            const std::string path = pathOf(object);
            const bool whole = object.at("status") == "whole";
            const bool member = object.contains("archive_size");
            const auto size = object.at(member ? "archive_size" : "size").get<uint64_t>();
            done_[stableHash(path)] =
                valueOf(size, object.at("modified").get_ref<const std::string&>(),
                        object.at("options").get_ref<const std::string&>(), whole);
            // An archive is opened again for what failed in it.
            if (member && !whole) done_[stableHash(path.substr(0, path.find("::")))] = 0;
        } catch (const nlohmann::json::exception&) {
            // A line that is damaged tells of nothing that is done.
        }
    }
}

bool Journal::isWanted(std::string_view path, const Stamp& stamp) const {
    if (!options_.resume && !options_.retry) return true;
    const uint64_t* const known = done_.find(stableHash(path));
    if (!options_.resume) return known && (*known & kWholeBit) == 0;
    return !known ||
           *known != valueOf(stamp.size, stampText(stamp.modified), options_.settings(), true);
}

void Journal::append(std::string_view lines) {
    const off_t before = ::lseek(file_, 0, SEEK_END);
    for (std::string_view rest = lines; !rest.empty();) {
        const ssize_t count = ::write(file_, rest.data(), rest.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) {
            const std::string reason = std::strerror(errno);
            [[maybe_unused]] const int cut = ::ftruncate(file_, before);
            throw std::runtime_error(path_ + ": could not be written: " + reason);
        }
        rest.remove_prefix(static_cast<std::size_t>(count));
    }
}

void Journal::sync() {
    if (::fsync(file_) != 0 && errno != EINVAL) {
        throw std::runtime_error(path_ + ": could not be written: " + std::strerror(errno));
    }
}

}  // namespace program
