#include "formats/geotiff/tiff.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "formats/output.h"

namespace formats::geotiff {

namespace {

TIFFFieldInfo field(uint32_t tag, TIFFDataType type, const char* name) {
    return {tag, -1, -1, type, FIELD_CUSTOM, 1, type != TIFF_ASCII, const_cast<char*>(name)};
}

TIFFExtendProc nextExtender = nullptr;

void addFields(TIFF* tiff) {
    static const TIFFFieldInfo fields[] = {
        field(kPixelScale, TIFF_DOUBLE, "ModelPixelScale"),
        field(kTiePoints, TIFF_DOUBLE, "ModelTiepoint"),
        field(kKeyDirectory, TIFF_SHORT, "GeoKeyDirectory"),
        field(kKeyDoubles, TIFF_DOUBLE, "GeoDoubleParams"),
        field(kKeyTexts, TIFF_ASCII, "GeoAsciiParams"),
        field(kItems, TIFF_ASCII, "Items"),
        field(kNoData, TIFF_ASCII, "NoData"),
    };
    TIFFMergeFieldInfo(tiff, fields, std::size(fields));
    if (nextExtender) nextExtender(tiff);
}

void teachFields() {
    static std::once_flag once;
    std::call_once(once, [] { nextExtender = TIFFSetTagExtender(addFields); });
}

}  // namespace

// What libtiff calls.
struct Calls {
    static Tiff& of(thandle_t handle) { return *static_cast<Tiff*>(handle); }

    static tmsize_t read(thandle_t handle, void* buffer, tmsize_t size) {
        Tiff& tiff = of(handle);
        const std::size_t done = tiff.bytes_->read(
            tiff.place_, {static_cast<std::byte*>(buffer), static_cast<std::size_t>(size)});
        tiff.place_ += done;
        return static_cast<tmsize_t>(done);
    }
    static tmsize_t write(thandle_t handle, void* buffer, tmsize_t size) {
        Tiff& tiff = of(handle);
        const std::size_t done = tiff.bytes_->write(
            tiff.place_, {static_cast<const std::byte*>(buffer), static_cast<std::size_t>(size)});
        tiff.place_ += done;
        return static_cast<tmsize_t>(done);
    }
    static toff_t seek(thandle_t handle, toff_t offset, int whence) {
        Tiff& tiff = of(handle);
        const uint64_t from = whence == SEEK_END   ? tiff.bytes_->size()
                              : whence == SEEK_CUR ? tiff.place_
                                                   : 0;
        return tiff.place_ = from + offset;
    }
    static toff_t size(thandle_t handle) { return of(handle).bytes_->size(); }
    static int close(thandle_t) { return 0; }
    static int complain(TIFF*, void* user, const char*, const char* format, va_list values) {
        char text[500];
        std::vsnprintf(text, sizeof text, format, values);
        Tiff& tiff = *static_cast<Tiff*>(user);
        if (tiff.said_.empty()) tiff.said_ = text;
        return 1;
    }
    static int ignore(TIFF*, void*, const char*, const char*, va_list) { return 1; }
};

std::size_t Memory::read(uint64_t position, std::span<std::byte> bytes) {
    if (position >= bytes_.size()) return 0;
    const std::size_t count = std::min<std::size_t>(bytes.size(), bytes_.size() - position);
    std::copy_n(bytes_.data() + position, count, bytes.data());
    return count;
}

std::size_t Memory::write(uint64_t position, std::span<const std::byte> bytes) {
    if (bytes_.size() < position + bytes.size()) bytes_.resize(position + bytes.size());
    std::copy(bytes.begin(), bytes.end(), bytes_.data() + position);
    return bytes.size();
}

void Memory::fail(const std::string& said) const {
    throw std::runtime_error("a tile could not be encoded: " + said);
}

File::File(const std::string& path, std::string target)
    : file_(std::fopen(path.c_str(), "w+b")), target_(std::move(target)) {
    if (!file_) failed(target_, errno);
    std::setvbuf(file_, nullptr, _IOFBF, 1 << 16);
}

File::~File() {
    if (file_) std::fclose(file_);
}

bool File::seek(uint64_t position) {
    // A change from writing to reading needs one, wherever it goes.
    if (fseeko(file_, static_cast<off_t>(position), SEEK_SET) == 0) return true;
    error_ = errno;
    return false;
}

std::size_t File::read(uint64_t position, std::span<std::byte> bytes) {
    if (!seek(position)) return 0;
    const std::size_t done = std::fread(bytes.data(), 1, bytes.size(), file_);
    if (done < bytes.size() && std::ferror(file_)) error_ = errno;
    place_ = UINT64_MAX;
    return done;
}

std::size_t File::write(uint64_t position, std::span<const std::byte> bytes) {
    if (position != place_ && !seek(position)) return 0;
    const std::size_t done = std::fwrite(bytes.data(), 1, bytes.size(), file_);
    if (done < bytes.size()) error_ = errno;
    place_ = position + done;
    size_ = std::max(size_, place_);
    return done;
}

void File::fail(const std::string& said) const {
    if (error_ != 0) failed(target_, error_);
    throw std::runtime_error(target_ + ": " + (said.empty() ? "could not be written" : said));
}

void File::close() {
    if (std::fclose(std::exchange(file_, nullptr)) != 0) failed(target_, errno);
}

Tiff::Tiff(Bytes& bytes, const char* mode) : bytes_(&bytes) {
    teachFields();
    TIFFOpenOptions* const options = TIFFOpenOptionsAlloc();
    TIFFOpenOptionsSetErrorHandlerExtR(options, Calls::complain, this);
    TIFFOpenOptionsSetWarningHandlerExtR(options, Calls::ignore, nullptr);
    handle_ = TIFFClientOpenExt("output", mode, this, Calls::read, Calls::write, Calls::seek,
                                Calls::close, Calls::size, nullptr, nullptr, options);
    TIFFOpenOptionsFree(options);
    must(handle_ != nullptr);
}

Tiff::~Tiff() { TIFFCleanup(handle_); }

}  // namespace formats::geotiff
