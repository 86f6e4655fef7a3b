#include "containers/level.h"

#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <new>

#include "containers/archive.h"
#include "containers/gzip_stream.h"
#include "containers/magic.h"

namespace containers {

// No exception may pass through the library.
struct GzipFeed {
    static la_ssize_t read(archive* opened, void* user, const void** bytes) {
        auto& level = *static_cast<Level*>(user);
        try {
            const std::string_view next = level.gzip_->next();
            *bytes = next.data();
            return static_cast<la_ssize_t>(next.size());
        } catch (const Failure& failure) {
            level.gzipFailure_ = failure.what();
        } catch (const std::bad_alloc&) {
            level.noMemory_ = true;
        }
        archive_set_error(opened, EILSEQ, "gzip");
        return ARCHIVE_FATAL;
    }
};

namespace {

constexpr std::size_t kBlockBytes = 64 * 1024;

bool holds(std::string_view text, std::string_view word) {
    const auto same = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == b;
    };
    return std::search(text.begin(), text.end(), word.begin(), word.end(), same) != text.end();
}

}  // namespace

void Level::Close::operator()(archive* opened) const { archive_read_free(opened); }

Level::Level(const Descriptor& file, std::string shownAs)
    : shownAs_(std::move(shownAs)), archive_(archive_read_new()) {
    if (!archive_) throw std::bad_alloc();
    archive* opened = archive_.get();
    for (auto* support : {archive_read_support_filter_gzip, archive_read_support_filter_compress,
                          archive_read_support_filter_bzip2, archive_read_support_filter_xz,
                          archive_read_support_filter_zstd, archive_read_support_format_zip,
                          archive_read_support_format_tar, archive_read_support_format_raw,
                          archive_read_support_format_empty}) {
        if (support(opened) < ARCHIVE_WARN) fail();
    }
    file.toStart();
    int status;
    if (containerOf(file.start()) == "gzip") {
        gzip_ = std::make_unique<GzipStream>(file.number(), shownAs_);
        status = archive_read_open(opened, this, nullptr, GzipFeed::read, nullptr);
    } else {
        status = archive_read_open_fd(opened, file.number(), kBlockBytes);
    }
    if (status < ARCHIVE_WARN) fail();
}

Level::~Level() = default;

bool Level::next() {
    for (;;) {
        const int status = archive_read_next_header(archive_.get(), &entry_);
        if (status == ARCHIVE_EOF) return false;
        if (status < ARCHIVE_WARN) fail();
        // Folders, links and devices hold no bytes. A file without a type is one that was
        // compressed.
        const auto type = archive_entry_filetype(entry_);
        if ((type != AE_IFREG && type != 0) || archive_entry_hardlink(entry_)) continue;
        const char* stored = archive_entry_pathname(entry_);
        name_ = stored ? stored : "";
        begun_ = position();
        return true;
    }
}

std::size_t Level::passOverRest() { return gzip_ ? gzip_->next().size() : 0; }

bool Level::compressedOnly() const { return archive_format(archive_.get()) == ARCHIVE_FORMAT_RAW; }

bool Level::encrypted() const { return archive_entry_is_encrypted(entry_) != 0; }

std::size_t Level::read(std::span<char> bytes) {
    const la_ssize_t count = archive_read_data(archive_.get(), bytes.data(), bytes.size());
    // What is only a warning to the library is a wrong checksum.
    if (count < 0) fail();
    return static_cast<std::size_t>(count);
}

bool Level::passesByReading() const { return gzip_ || archive_filter_count(archive_.get()) > 1; }

std::string Level::container() const {
    std::string words;
    const auto wrap = [&](std::string_view outer) {
        if (!words.empty()) words += " in ";
        words += outer;
    };
    const int format = archive_format(archive_.get()) & ARCHIVE_FORMAT_BASE_MASK;
    if (format == ARCHIVE_FORMAT_ZIP) wrap("zip");
    if (format == ARCHIVE_FORMAT_TAR) wrap("tar");
    // The last of the filters is the file itself.
    for (int filter = 0; filter < archive_filter_count(archive_.get()) - 1; ++filter) {
        const std::string_view name = archive_filter_name(archive_.get(), filter);
        wrap(name == "compress (.Z)" ? "compress" : name);
    }
    if (gzip_) wrap("gzip");
    return words;
}

uint64_t Level::position() const {
    if (gzip_) return gzip_->consumed();
    return static_cast<uint64_t>(std::max<la_int64_t>(0, archive_filter_bytes(archive_.get(), -1)));
}

void Level::fail() const {
    if (noMemory_ || archive_errno(archive_.get()) == ENOMEM) throw std::bad_alloc();
    if (!gzipFailure_.empty()) throw Damage(gzipFailure_);
    const char* told = archive_error_string(archive_.get());
    std::string words = told ? told : "it cannot be read";
    words.erase(std::min(words.find('\n'), words.size()));
    if (holds(words, "passphrase") || holds(words, "encrypt")) {
        throw Damage(shownAs_ + " is encrypted; take the file out of it with its password first");
    }
    constexpr std::string_view kShort[] = {"truncated", "premature", "unexpected end",
                                           "no progress is possible", "decompression failed (-5)"};
    if (std::any_of(std::begin(kShort), std::end(kShort),
                    [&](std::string_view word) { return holds(words, word); })) {
        throw Damage(shownAs_ + " is cut short: its end is missing");
    }
    if (holds(words, "crc") || holds(words, "checksum")) {
        throw Damage(shownAs_ + " is damaged: its content does not fit its checksum");
    }
    throw Damage(shownAs_ + " is damaged: it cannot be expanded (" + words + ")");
}

}  // namespace containers
