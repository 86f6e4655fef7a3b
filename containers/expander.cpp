#include "containers/expander.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>

#include "containers/budget.h"
#include "containers/magic.h"
#include "containers/volume_names.h"
#include "containers/walk.h"

namespace containers {

namespace {

std::string lastName(std::string_view path) {
    return std::string(path.substr(path.find_last_of('/') + 1));
}

// The names of what lies beside a name keep what stands before its last part.
class Choosing {
  public:
    explicit Choosing(const Request& request) : request_(request) {}

    void see(const Leaf& leaf) {
        // A tar may hold a file twice. The last one counts, as it does where all are unpacked.
        const auto known = byName_.find(leaf.name);
        if (known != byName_.end()) {
            leaves_[known->second] = leaf;
            return;
        }
        byName_[leaf.name] = leaves_.size();
        byPlainName_[leaf.plainName] = leaves_.size();
        leaves_.push_back(leaf);
    }

    // The first volumes that may be meant.
    std::vector<const Leaf*> candidates() const {
        if (!request_.wanted.empty()) return named();
        std::vector<const Leaf*> found;
        for (const Leaf& leaf : leaves_) {
            if (request_.wantedStart(leaf.start)) found.push_back(&leaf);
        }
        for (std::size_t index = 0; index < found.size(); ++index) {
            const std::vector<const Leaf*> chain = volumes(*found[index]);
            // Text inside of a file may read like the start of one.
            const auto later = [&](const Leaf* leaf) {
                return leaf != found[index] &&
                       std::find(chain.begin(), chain.end(), leaf) != chain.end();
            };
            const auto isVolume = std::remove_if(found.begin(), found.end(), later);
            if (isVolume == found.end()) continue;
            const Leaf* first = found[index];
            found.erase(isVolume, found.end());
            index = static_cast<std::size_t>(std::find(found.begin(), found.end(), first) -
                                             found.begin());
        }
        // Of a single file, however it begins, its reader has to say what is wrong with it.
        if (found.empty() && leaves_.size() == 1) {
            found.push_back(&leaves_[0]);
        }
        return found;
    }

    // A first volume and those that follow.
    std::vector<const Leaf*> volumes(const Leaf& first) const {
        std::vector<const Leaf*> chain = {&first};
        for (std::string next = nextVolume(first.plainName); !next.empty();
             next = nextVolume(next)) {
            const auto found = byPlainName_.find(next);
            if (found == byPlainName_.end()) break;
            const Leaf& leaf = leaves_[found->second];
            if (request_.certainStart(leaf.start)) break;
            chain.push_back(&leaf);
        }
        return chain;
    }

    const std::vector<Leaf>& leaves() const { return leaves_; }

  private:
    std::vector<const Leaf*> named() const {
        const auto matching = [&](auto&& same) {
            std::vector<const Leaf*> found;
            for (const Leaf& leaf : leaves_) {
                if (same(leaf)) found.push_back(&leaf);
            }
            return found;
        };
        const std::string& wanted = request_.wanted;
        auto found = matching([&](const Leaf& leaf) { return leaf.name == wanted; });
        if (!found.empty()) return found;
        // Without the folder, or without the extension of a compressed file, where that is clear.
        return matching([&](const Leaf& leaf) {
            return leaf.plainName == wanted || lastName(leaf.name) == wanted ||
                   lastName(leaf.plainName) == wanted;
        });
    }

    const Request& request_;
    std::vector<Leaf> leaves_;
    std::map<std::string, std::size_t> byName_;
    std::map<std::string, std::size_t> byPlainName_;
};

Content contentOf(const Leaf& leaf) { return {leaf.name, leaf.start, leaf.encrypted}; }

// The files that are made are called by the digits of the volumes alone.
std::string pathFor(const Request& request, const std::string& plainName) {
    const bool digits = endsInTwoDigits(plainName);
    return request.folder + (digits ? "/v.e" + plainName.substr(plainName.size() - 2) : "/v");
}

void copyTo(Volume& volume, const Leaf& leaf, LeafReader& reader) {
    const Descriptor target = Descriptor::create(volume.path);
    target.write(leaf.start);
    volume.bytes = leaf.start.size();
    std::array<char, 64 * 1024> bytes;
    while (const std::size_t count = reader.read(bytes)) {
        target.write({bytes.data(), count});
        volume.bytes += count;
    }
}

// One volume out of a file that lies beside; false if it is another file.
bool takeVolume(const Request& request, const std::string& path, Budget& budget, Volume& volume) {
    const Descriptor file = Descriptor::read(path, path);
    budget.beginFile(file.size());
    if (containerOf(file.start()).empty()) {
        volume.bytes = file.size();
        std::filesystem::create_symlink(std::filesystem::absolute(path), volume.path);
        return !request.certainStart(file.start());
    }
    int files = 0;
    bool certain = false;
    const auto take = [&](const Leaf& leaf, LeafReader& reader) {
        certain = request.certainStart(leaf.start);
        if (++files == 1 && !certain) copyTo(volume, leaf, reader);
        return files == 1;
    };
    Walk(request.folder, budget, take).run(file, path, volume.name);
    return files == 1 && !certain;
}

// The volumes that follow a compressed file in files of their own, compressed or not.
void addVolumesBeside(const Request& request, Budget& budget, Expansion& expansion) {
    const std::string first = expansion.volumes[0].name;
    const std::string folder =
        request.path.substr(0, request.path.size() - lastName(request.path).size());
    std::string plainName(withoutCompression(first));
    while (!(plainName = nextVolume(plainName)).empty()) {
        std::vector<std::string> names = compressedNames(plainName, first);
        names.push_back(plainName);
        const auto there = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
            std::error_code ignored;
            return std::filesystem::is_regular_file(folder + name, ignored);
        });
        if (there == names.end()) return;
        Volume volume{*there, pathFor(request, plainName), 0};
        if (!takeVolume(request, folder + *there, budget, volume)) {
            ::unlink(volume.path.c_str());
            return;
        }
        expansion.volumes.push_back(std::move(volume));
    }
}

Expansion undecided(const std::vector<const Leaf*>& candidates, const std::vector<Leaf>& all) {
    constexpr std::size_t kMostShown = 20;
    Expansion expansion;
    for (const Leaf* leaf : candidates) expansion.choice.push_back(contentOf(*leaf));
    for (const Leaf& leaf : all) {
        if (!candidates.empty()) break;
        if (!leaf.damage.empty()) throw Damage(leaf.damage);
        if (expansion.others.size() < kMostShown) expansion.others.push_back(contentOf(leaf));
    }
    return expansion;
}

// Expands a first volume and those that follow it in the container.
void takeVolumes(const Request& request, const Descriptor& file, Budget& budget,
                 const std::vector<const Leaf*>& leaves, Expansion& expansion) {
    std::map<std::size_t, std::size_t> volumeOf;
    for (const Leaf* leaf : leaves) {
        volumeOf[leaf->number] = expansion.volumes.size();
        expansion.volumes.push_back({leaf->name, pathFor(request, leaf->plainName), 0});
    }
    std::string damage;
    std::size_t left = leaves.size();
    const auto take = [&](const Leaf& leaf, LeafReader& reader) {
        if (damage.empty()) damage = leaf.damage;
        const auto found = volumeOf.find(leaf.number);
        if (found == volumeOf.end()) return true;
        copyTo(expansion.volumes[found->second], leaf, reader);
        return --left != 0;
    };
    budget.beginFile(file.size());
    Walk(request.folder, budget, take).run(file, request.shownAs, lastName(request.shownAs));
    if (left != 0) throw Damage(damage.empty() ? request.shownAs + " changed meanwhile" : damage);
}

}  // namespace

Expansion Expander::expand(const Request& request) const {
    const Descriptor file = Descriptor::read(request.path, request.shownAs);
    const std::string name = lastName(request.shownAs);
    Choosing choosing(request);
    Budget looking(request.limits, request.shownAs);
    looking.beginFile(file.size());
    const auto see = [&](const Leaf& leaf, LeafReader&) {
        choosing.see(leaf);
        return true;
    };
    try {
        Walk(request.folder, looking, see).run(file, request.shownAs, name);
    } catch (Damage& damage) {
        damage.inWanted = choosing.leaves().empty() || !choosing.candidates().empty();
        throw;
    }

    const std::vector<const Leaf*> candidates = choosing.candidates();
    if (candidates.size() != 1) return undecided(candidates, choosing.leaves());
    const Leaf& first = *candidates[0];
    if (first.encrypted) {
        throw Damage(request.shownAs + "::" + first.name +
                     " is encrypted; take it out with its password first");
    }
    if (!first.damage.empty()) throw Damage(first.damage);
    Expansion expansion;
    expansion.container = first.container;
    if (endsInTwoDigits(first.plainName)) {
        expansion.stem = first.plainName.substr(0, first.plainName.size() - 2);
    }
    Budget expanding(request.limits, request.shownAs);
    try {
        takeVolumes(request, file, expanding, choosing.volumes(first), expansion);
        // Only a file that was compressed by itself has its volumes beside itself.
        if (request.volumesBeside && first.alone) addVolumesBeside(request, expanding, expansion);
    } catch (Damage& damage) {
        damage.inWanted = request.wantedStart(first.start);
        throw;
    }
    return expansion;
}

}  // namespace containers
