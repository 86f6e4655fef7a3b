// All files of a container, those of containers inside it included.
#ifndef CONTAINERS_WALK_H
#define CONTAINERS_WALK_H

#include <functional>
#include <string>

#include "containers/budget.h"
#include "containers/descriptor.h"
#include "containers/level.h"

namespace containers {

struct Leaf {
    std::size_t number = 0;  // in the order of the walk, which is always the same
    std::string name;        // as it is stored; of nested containers all names, "::" between them
    std::string plainName;   // ... without the extension of a compressed file
    std::string container;
    std::string start;  // its first bytes, empty where it is encrypted
    bool encrypted = false;
    bool alone = false;  // compressed by itself, and in nothing else
    std::string damage;  // of a container inside the one that is walked, of which no more is read
};

// What is read of a file goes through here, so that nothing is expanded beyond the limits.
class LeafReader {
  public:
    LeafReader(Level& level, Budget& budget) : level_(level), budget_(budget) {}
    // Of one file, from where the reading before ended; 0 at its end.
    std::size_t read(std::span<char> bytes) {
        const std::size_t count = level_.read(bytes);
        read_ += count;
        budget_.take(count, read_, level_.consumed());
        return count;
    }

  private:
    Level& level_;
    Budget& budget_;
    uint64_t read_ = 0;
};

class Walk {
  public:
    // Called with each file and a reader that stands behind its start. False ends the walk.
    using Visit = std::function<bool(const Leaf& leaf, LeafReader& reader)>;

    // The folder takes nested containers, as files without a name.
    Walk(std::string folder, Budget& budget, Visit visit)
        : folder_(std::move(folder)), budget_(budget), visit_(std::move(visit)) {}

    // name: what a compressed file is called that is not in an archive.
    void run(const Descriptor& file, const std::string& shownAs, const std::string& name);

  private:
    struct Place {
        std::string shownAs;
        std::string name;    // of the container, as far as files in it carry it
        std::string within;  // the containers around, in words
        int depth = 0;
    };
    void container(const Descriptor& file, const Place& place);
    void member(Level& level, const Place& place);
    void passOver(Level& level);
    void nested(const Descriptor& file, const Place& place, Leaf& leaf, LeafReader& reader);
    void visit(Leaf& leaf, const Place& place, LeafReader& reader);

    std::string folder_;
    Budget& budget_;
    Visit visit_;
    std::size_t count_ = 0;
    bool ended_ = false;
};

}  // namespace containers

#endif
