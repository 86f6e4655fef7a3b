#include "containers/walk.h"

#include <array>

#include "containers/magic.h"
#include "containers/volume_names.h"

namespace containers {

namespace {

constexpr int kDeepest = 4;
constexpr std::size_t kMostFiles = 100000;
constexpr std::size_t kBufferBytes = 64 * 1024;

std::string readStart(LeafReader& reader) {
    std::string start(kStartBytes, '\0');
    std::size_t filled = 0;
    while (filled < start.size()) {
        const std::size_t count = reader.read(std::span(start).subspan(filled));
        if (count == 0) break;
        filled += count;
    }
    start.resize(filled);
    return start;
}

template <class Use>
void readRest(LeafReader& reader, Use use) {
    std::array<char, kBufferBytes> bytes;
    while (const std::size_t count = reader.read(bytes)) use({bytes.data(), count});
}

}  // namespace

void Walk::run(const Descriptor& file, const std::string& shownAs, const std::string& name) {
    container(file, {shownAs, name, "", 1});
}

void Walk::container(const Descriptor& file, const Place& place) {
    if (place.depth > kDeepest) {
        throw Failure(place.shownAs + " holds containers in more than " + std::to_string(kDeepest) +
                      " others; expand it by hand first");
    }
    Level level(file, place.shownAs);
    while (level.next()) {
        // The rest of a compressed archive is passed over for its checksum.
        if (ended_) {
            passOver(level);
        } else {
            member(level, place);
        }
        // There is nothing behind it, and looking for it would expand it to its end.
        if (level.compressedOnly() || (ended_ && !level.passesByReading())) return;
    }
    for (uint64_t rest = 0; const std::size_t count = level.passOverRest();) {
        rest += count;
        budget_.take(count, rest, level.consumed());
    }
}

// The library would do it without looking at the limits.
void Walk::passOver(Level& level) {
    if (!level.passesByReading() || level.compressedOnly() || level.encrypted()) return;
    LeafReader reader(level, budget_);
    readRest(reader, [](std::string_view) {});
}

void Walk::member(Level& level, const Place& place) {
    Leaf leaf;
    if (level.compressedOnly()) {
        leaf.name = place.name;
        leaf.alone = place.depth == 1;
    } else {
        // What lies in the container that the user named has no other name in front.
        leaf.name = place.depth == 1 ? level.name() : place.name + "::" + level.name();
    }
    leaf.plainName = withoutCompression(leaf.name);
    leaf.container = level.container() + place.within;
    leaf.encrypted = level.encrypted();
    LeafReader reader(level, budget_);
    if (!leaf.encrypted) leaf.start = readStart(reader);
    if (containerOf(leaf.start).empty()) {
        visit(leaf, place, reader);
    } else {
        const Descriptor copy = Descriptor::createUnnamed(folder_);
        copy.write(leaf.start);
        readRest(reader, [&](std::string_view bytes) { copy.write(bytes); });
        nested(copy, place, leaf, reader);
    }
    passOver(level);
}

void Walk::nested(const Descriptor& file, const Place& place, Leaf& leaf, LeafReader& reader) {
    try {
        container(file, {place.shownAs + "::" + leaf.name, leaf.name, " in " + leaf.container,
                         place.depth + 1});
    } catch (const Damage& damage) {
        // It may be of no interest.
        leaf.damage = damage.what();
        visit(leaf, place, reader);
    }
}

void Walk::visit(Leaf& leaf, const Place& place, LeafReader& reader) {
    leaf.number = count_++;
    if (count_ > kMostFiles) {
        throw Failure(place.shownAs + " holds more than " + std::to_string(kMostFiles) +
                      " files; take the ones that are meant out of it first");
    }
    if (!visit_(leaf, reader)) ended_ = true;
}

}  // namespace containers
