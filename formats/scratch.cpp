#include "formats/scratch.h"

#include <cerrno>
#include <utility>

#include "formats/output.h"

namespace formats {

Scratch::Scratch(const std::string& path, std::string target)
    : file_(std::fopen(path.c_str(), "w+bx")), target_(std::move(target)) {
    if (!file_) failed(target_, errno);
    std::remove(path.c_str());
    std::setvbuf(file_, nullptr, _IONBF, 0);  // pieces are large already
}

Scratch::~Scratch() { std::fclose(file_); }

void Scratch::seek(int64_t position) {
    if (fseeko(file_, position, SEEK_SET) != 0) failed(target_, errno);
}

void Scratch::write(int64_t position, std::span<const std::byte> bytes) {
    seek(position);
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size()) failed(target_, errno);
}

void Scratch::read(int64_t position, std::span<std::byte> bytes) {
    seek(position);
    if (std::fread(bytes.data(), 1, bytes.size(), file_) != bytes.size()) failed(target_, EIO);
}

}  // namespace formats
