// Where libtiff writes, and an owner of its handles.
#ifndef FORMATS_GEOTIFF_TIFF_H
#define FORMATS_GEOTIFF_TIFF_H

#include <tiffio.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <vector>

#include "formats/geotiff/key_numbers.h"

namespace formats::geotiff {

// The tags of georeferencing, which libtiff learns from us.
constexpr uint32_t kPixelScale = 33550;
constexpr uint32_t kTiePoints = 33922;
constexpr uint32_t kKeyDirectory = 34735;
constexpr uint32_t kItems = 42112;
constexpr uint32_t kNoData = 42113;

// Bytes that are written and read at any place.
class Bytes {
  public:
    virtual ~Bytes() = default;
    // As many as could be read or written; fewer than wished are a failure, or the end.
    virtual std::size_t read(uint64_t position, std::span<std::byte> bytes) = 0;
    virtual std::size_t write(uint64_t position, std::span<const std::byte> bytes) = 0;
    virtual uint64_t size() const = 0;
    // Throws a std::runtime_error that says why the last operation failed; what libtiff says is
    // taken where nobody knows better.
    [[noreturn]] virtual void fail(const std::string& said) const = 0;
};

class Memory : public Bytes {
  public:
    std::size_t read(uint64_t position, std::span<std::byte> bytes) override;
    std::size_t write(uint64_t position, std::span<const std::byte> bytes) override;
    uint64_t size() const override { return bytes_.size(); }
    [[noreturn]] void fail(const std::string& said) const override;
    std::vector<std::byte>& bytes() { return bytes_; }

  private:
    std::vector<std::byte> bytes_;
};

// A file that is there already, and is emptied. Failures name the target.
class File : public Bytes {
  public:
    File(const std::string& path, std::string target);
    ~File() override;
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    std::size_t read(uint64_t position, std::span<std::byte> bytes) override;
    std::size_t write(uint64_t position, std::span<const std::byte> bytes) override;
    uint64_t size() const override { return size_; }
    [[noreturn]] void fail(const std::string& said) const override;
    // Throws if what was written did not reach the system.
    void close();

  private:
    bool seek(uint64_t position);

    std::FILE* file_;
    std::string target_;
    uint64_t place_ = 0;
    uint64_t size_ = 0;
    int error_ = 0;
};

// A TIFF that is made in bytes that outlive it.
class Tiff {
  public:
    // The mode is libtiff's: "w", or "w8" for a BigTIFF.
    Tiff(Bytes& bytes, const char* mode);
    // Writes what libtiff still holds, which is nothing for one that was flushed.
    ~Tiff();
    Tiff(const Tiff&) = delete;
    Tiff& operator=(const Tiff&) = delete;

    operator TIFF*() const { return handle_; }
    Bytes& bytes() const { return *bytes_; }
    // Fails with what libtiff said, unless something holds.
    void must(bool holds) const {
        if (!holds) bytes_->fail(said_);
    }
    template <class... Values>
    void set(uint32_t tag, Values... values) const {
        must(TIFFSetField(handle_, tag, values...) == 1);
    }

  private:
    friend struct Calls;

    Bytes* bytes_;
    uint64_t place_ = 0;
    std::string said_;
    TIFF* handle_ = nullptr;
};

}  // namespace formats::geotiff

#endif
