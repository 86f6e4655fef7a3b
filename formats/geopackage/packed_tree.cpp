#include "formats/geopackage/packed_tree.h"

#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <vector>

#include "formats/geopackage/number_pairs.h"

namespace formats::geopackage {

namespace {

using Entry = PackedTree::Entry;

constexpr std::size_t kCells = 51;
constexpr std::size_t kHeadBytes = 4;
constexpr std::size_t kCellBytes = 24;
constexpr std::size_t kNodeBytes = kHeadBytes + kCells * kCellBytes;
constexpr int64_t kRoot = 1;

float below(double value) {
    const auto nearest = static_cast<float>(value);
    return nearest > value ? std::nextafter(nearest, -std::numeric_limits<float>::infinity())
                           : nearest;
}

float above(double value) {
    const auto nearest = static_cast<float>(value);
    return nearest < value ? std::nextafter(nearest, std::numeric_limits<float>::infinity())
                           : nearest;
}

// How far along Hilbert's curve over a square of 65,536 a side a place lies.
uint32_t alongCurve(uint32_t x, uint32_t y) {
    constexpr uint32_t kSide = 1 << 16;
    uint32_t distance = 0;
    for (uint32_t half = kSide / 2; half > 0; half /= 2) {
        const uint32_t right = (x & half) != 0;
        const uint32_t upper = (y & half) != 0;
        distance += half * half * ((3 * right) ^ upper);
        if (upper == 0) {
            if (right == 1) {
                x = kSide - 1 - x;
                y = kSide - 1 - y;
            }
            std::swap(x, y);
        }
    }
    return distance;
}

// From places within an extent to those of the curve's square.
class Scale {
  public:
    Scale(double least, double most)
        : least_(least), factor_(most > least ? 65535 / (most - least) : 0) {}
    uint32_t operator()(float low, float high) const {
        const double middle = (static_cast<double>(low) + static_cast<double>(high)) / 2;
        // An extent too wide for its own width, and boxes rounded to beyond it.
        const double place = (middle - least_) * factor_;
        return place > 0 ? static_cast<uint32_t>(std::min(place, 65535.0)) : 0;
    }

  private:
    double least_;
    double factor_;
};

// A node as it fills.
class Node {
  public:
    void add(const Entry& entry) {
        std::byte* cell = bytes_.data() + kHeadBytes + count_ * kCellBytes;
        put(cell, static_cast<uint64_t>(entry.id));
        put(cell + 8, std::bit_cast<uint32_t>(entry.minX));
        put(cell + 12, std::bit_cast<uint32_t>(entry.maxX));
        put(cell + 16, std::bit_cast<uint32_t>(entry.minY));
        put(cell + 20, std::bit_cast<uint32_t>(entry.maxY));
        if (count_++ == 0) {
            bounds_ = entry;
        } else {
            bounds_.minX = std::min(bounds_.minX, entry.minX);
            bounds_.maxX = std::max(bounds_.maxX, entry.maxX);
            bounds_.minY = std::min(bounds_.minY, entry.minY);
            bounds_.maxY = std::max(bounds_.maxY, entry.maxY);
        }
    }
    bool full() const { return count_ == kCells; }
    bool empty() const { return count_ == 0; }

    // Writes the node under a number; the result is its cell in the node above.
    Entry write(Statement& insert, int64_t number, uint16_t depth) {
        put(bytes_.data(), static_cast<uint32_t>(depth) << 16 | static_cast<uint32_t>(count_));
        insert.bind(1, number);
        insert.bind(2, std::span<const std::byte>(bytes_));
        insert.run();
        bytes_.fill(std::byte{0});
        count_ = 0;
        bounds_.id = number;
        return bounds_;
    }

  private:
    template <class T>
    static void put(std::byte* place, T value) {
        for (std::size_t i = sizeof(T); i-- > 0; value = static_cast<T>(value >> 8)) {
            place[i] = static_cast<std::byte>(value & 0xff);
            if constexpr (sizeof(T) == 1) break;
        }
    }

    std::array<std::byte, kNodeBytes> bytes_{};
    std::size_t count_ = 0;
    Entry bounds_{};
};

// Writes the nodes of one level, whose numbers follow each other, and hands up their cells. Of each
// node but the root the node above is noted: 51 follow each other there too.
class Level {
  public:
    Level(Statement& insert, int64_t firstNumber, bool isRoot, uint16_t depth)
        : insert_(insert), number_(firstNumber), depth_(isRoot ? depth : uint16_t{0}) {}

    int64_t number() const { return number_; }
    void add(const Entry& entry) {
        node_.add(entry);
        if (node_.full()) write();
    }
    // The cells for the level above.
    std::vector<Entry> end() {
        if (!node_.empty()) write();
        return std::move(above_);
    }

  private:
    void write() { above_.push_back(node_.write(insert_, number_++, depth_)); }

    Statement& insert_;
    int64_t number_;
    uint16_t depth_;
    Node node_;
    std::vector<Entry> above_;
};

}  // namespace

PackedTree::PackedTree(const std::string& path, const std::string& target)
    : entries_(path + ".boxes", target), places_(path + ".places", target) {}

void PackedTree::add(int64_t row, const Box& box) {
    entries_.add({row, below(box.minX), above(box.maxX), below(box.minY), above(box.maxY)});
}

void PackedTree::build(Database& database, const std::string& name, const Box& extent) {
    database.run("CREATE VIRTUAL TABLE " + quoted(name) +
                 " USING rtree(id, minx, maxx, miny, maxy)");
    if (entries_.size() == 0) return;  // with the empty root that the table comes with

    // All numbers follow from the number of boxes: the root is 1, then come the leaves, then the
    // levels above them.
    std::vector<int64_t> counts{static_cast<int64_t>((entries_.size() + kCells - 1) / kCells)};
    while (counts.back() > 1) {
        counts.push_back((counts.back() + static_cast<int64_t>(kCells) - 1) /
                         static_cast<int64_t>(kCells));
    }
    const auto depth = static_cast<uint16_t>(counts.size() - 1);
    std::vector<int64_t> firsts{kRoot + 1};
    for (const int64_t count : counts) firsts.push_back(firsts.back() + count);
    firsts[depth] = kRoot;

    Statement insertNode(database, "INSERT OR REPLACE INTO " + quoted(name + "_node") +
                                       " (nodeno, data) VALUES (?, ?)");
    NumberPairs parents(database, name + "_parent");
    const Scale scaleX(extent.minX, extent.maxX);
    const Scale scaleY(extent.minY, extent.maxY);

    Level leaves(insertNode, firsts[0], depth == 0, depth);
    entries_.sort(
        [&](const Entry& entry) {
            return alongCurve(scaleX(entry.minX, entry.maxX), scaleY(entry.minY, entry.maxY));
        },
        [&](const Entry& entry) {
            places_.add({entry.id, leaves.number()});
            leaves.add(entry);
        });
    std::vector<Entry> cells = leaves.end();
    for (std::size_t above = 1; above <= depth; ++above) {
        Level level(insertNode, firsts[above], above == depth, depth);
        for (const Entry& cell : cells) {
            parents.add(cell.id, level.number());
            level.add(cell);
        }
        cells = level.end();
    }

    parents.end();

    NumberPairs places(database, name + "_rowid");
    // A row is a number with a sign.
    places_.sort([](const Place& place) { return static_cast<uint64_t>(place.row) ^ 1ULL << 63; },
                 [&](const Place& place) { places.add(place.row, place.node); });
    places.end();
}

}  // namespace formats::geopackage
