// An open file, closed when it goes out of scope.
#ifndef CONTAINERS_DESCRIPTOR_H
#define CONTAINERS_DESCRIPTOR_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace containers {

class Descriptor {
  public:
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor();

    // These three throw a Failure that says what the system had against it.
    static Descriptor read(const std::string& path, const std::string& shownAs);
    static Descriptor create(const std::string& path);
    // A file of the folder that has no name any more, and goes when it is closed.
    static Descriptor createUnnamed(const std::string& folder);

    int number() const { return number_; }
    uint64_t size() const;
    void toStart() const;
    // The first bytes, read without moving.
    std::string start() const;
    // Writes all of it, or throws a Failure.
    void write(std::string_view bytes) const;

  private:
    explicit Descriptor(int number) : number_(number) {}
    int number_;
};

}  // namespace containers

#endif
