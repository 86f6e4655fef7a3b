#include "app/intake/batch/message.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <type_traits>

namespace program {

namespace {

class Packer {
  public:
    template <class Value>
    void operator()(const Value& value) {
        static_assert(std::is_trivially_copyable_v<Value>);
        bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    void operator()(const std::string& text) {
        (*this)(text.size());
        bytes += text;
    }
    void operator()(const std::vector<std::string>& texts) {
        (*this)(texts.size());
        for (const std::string& text : texts) (*this)(text);
    }

    std::string bytes;
};

class Unpacker {
  public:
    explicit Unpacker(std::string_view bytes) : bytes_(bytes) {}

    template <class Value>
    void operator()(Value& value) {
        std::memcpy(&value, bytes_.data(), sizeof value);
        bytes_.remove_prefix(sizeof value);
    }
    void operator()(std::string& text) {
        std::size_t size = 0;
        (*this)(size);
        text = bytes_.substr(0, size);
        bytes_.remove_prefix(size);
    }
    void operator()(std::vector<std::string>& texts) {
        std::size_t size = 0;
        (*this)(size);
        texts.resize(size);
        for (std::string& text : texts) (*this)(text);
    }

  private:
    std::string_view bytes_;
};

template <class Visitor, class Value>
void eachPart(Visitor& visit, Value& job) requires std::is_same_v<std::remove_const_t<Value>, Job> {
    visit(job.path);
    visit(job.place);
    visit(job.stamp);
    visit(job.mayFollow);
    visit(job.isMember);
    visit(job.failure);
    visit(job.trouble);
    visit(job.seconds);
    visit(job.peakBytes);
}

template <class Visitor, class Value>
void eachPart(Visitor& visit,
              Value& reply) requires std::is_same_v<std::remove_const_t<Value>, Reply> {
    visit(reply.outcome);
    visit(reply.bytes);
    visit(reply.line);
    visit(reply.word);
    visit(reply.names);
}

template <class Value>
std::string packedParts(const Value& value) {
    Packer packer;
    eachPart(packer, value);
    return std::move(packer.bytes);
}

}  // namespace

std::string packed(const Job& job) { return packedParts(job); }
std::string packed(const Reply& reply) { return packedParts(reply); }

void unpack(std::string_view bytes, Job& job) {
    Unpacker unpacker(bytes);
    eachPart(unpacker, job);
}

void unpack(std::string_view bytes, Reply& reply) {
    Unpacker unpacker(bytes);
    eachPart(unpacker, reply);
}

bool Inbox::fill(int socket) {
    constexpr std::size_t kPiece = 1 << 16;
    bytes_.erase(0, at_);
    at_ = 0;
    const std::size_t before = bytes_.size();
    bytes_.resize(before + kPiece);
    ssize_t count = 0;
    do {
        count = ::read(socket, bytes_.data() + before, kPiece);
    } while (count < 0 && errno == EINTR);
    bytes_.resize(before + static_cast<std::size_t>(count > 0 ? count : 0));
    return count > 0;
}

bool Inbox::next(std::string_view& message) {
    std::size_t size = 0;
    if (bytes_.size() - at_ < sizeof size) return false;
    std::memcpy(&size, bytes_.data() + at_, sizeof size);
    if (bytes_.size() - at_ - sizeof size < size) return false;
    message = std::string_view(bytes_).substr(at_ + sizeof size, size);
    at_ += sizeof size + size;
    return true;
}

bool send(int socket, std::string_view message) {
    const std::size_t size = message.size();
    std::string bytes(reinterpret_cast<const char*>(&size), sizeof size);
    bytes += message;
    for (std::size_t at = 0; at < bytes.size();) {
        const ssize_t count = ::send(socket, bytes.data() + at, bytes.size() - at, MSG_NOSIGNAL);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        at += static_cast<std::size_t>(count);
    }
    return true;
}

}  // namespace program
