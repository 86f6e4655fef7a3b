#include "topology/runs.h"

#include <tuple>
#include <utility>

namespace topology {

namespace {

constexpr std::size_t kMostEdges = 32;
constexpr std::size_t kFewVertices = 6;  // less to look at than to search

// The least and the greatest of one coordinate, of vertices in turn, as each comparison has to wait
// for the one before it.
std::pair<double, double> rangeOf(std::span<const Point> points, double Point::*of) {
    double least = points.front().*of, otherLeast = points.back().*of;
    double greatest = least, otherGreatest = otherLeast;
    std::size_t at = 1;
    for (; at + 1 < points.size(); at += 2) {
        least = std::min(least, points[at].*of);
        greatest = std::max(greatest, points[at].*of);
        otherLeast = std::min(otherLeast, points[at + 1].*of);
        otherGreatest = std::max(otherGreatest, points[at + 1].*of);
    }
    return {std::min(least, otherLeast), std::max(greatest, otherGreatest)};
}

// Of vertices that go one way in a coordinate.
Box boxOfRun(std::span<const Point> points, bool inX) {
    Box box = boxOf(points.front(), points.back());
    if (inX) {
        std::tie(box.least.y, box.greatest.y) = rangeOf(points, &Point::y);
    } else {
        std::tie(box.least.x, box.greatest.x) = rangeOf(points, &Point::x);
    }
    return box;
}

Run::Way turnedRound(Run::Way way) { return static_cast<Run::Way>(static_cast<uint8_t>(way) ^ 1); }

// The run that begins at a vertex. It goes on while it keeps its way in x and in y, then while it
// keeps the one that lasted longer.
Run takeRun(std::span<const Point> vertices, std::size_t from) {
    const Point* const line = vertices.data();
    const std::size_t most = std::min(from + kMostEdges, vertices.size() - 1);
    std::size_t at = from;
    bool right = true, left = true, up = true, down = true;
    for (; at < most; ++at) {
        const Point &a = line[at], &b = line[at + 1];
        const bool r = right & (b.x >= a.x), l = left & (b.x <= a.x);
        const bool u = up & (b.y >= a.y), d = down & (b.y <= a.y);
        if (!(r | l) | !(u | d)) break;
        right = r, left = l, up = u, down = d;
    }
    const auto goOn = [&](auto keeps) {
        const std::size_t begin = at;
        while (at < most && keeps(line[at], line[at + 1])) ++at;
        return at > begin;
    };
    using Way = Run::Way;
    Way way = right ? Way::right : left ? Way::left : up ? Way::up : Way::down;
    if (right && goOn([](const Point& a, const Point& b) { return b.x >= a.x; })) {
        way = Way::right;
    } else if (left && goOn([](const Point& a, const Point& b) { return b.x <= a.x; })) {
        way = Way::left;
    } else if (up && goOn([](const Point& a, const Point& b) { return b.y >= a.y; })) {
        way = Way::up;
    } else if (down && goOn([](const Point& a, const Point& b) { return b.y <= a.y; })) {
        way = Way::down;
    }
    const bool inX = way == Way::right || way == Way::left;
    return {way, static_cast<uint32_t>(at), boxOfRun(vertices.subspan(from, at - from + 1), inX)};
}

}  // namespace

void cutIntoRuns(std::span<const Point> line, std::vector<Run>& runs) {
    for (std::size_t at = 0; at + 1 < line.size(); at = runs.back().last) {
        runs.push_back(takeRun(line, at));
    }
}

// Short runs of one way become one.
void Runs::add(Run::Way way, std::size_t last, const Box& box) {
    const std::size_t runs = ways_.size();
    if (runs > 0 && ways_.back() == way && last - starts_[runs - 1] <= kMostEdges) {
        starts_.back() = last;
        boxes_.back() = joined(boxes_.back(), box);
        return;
    }
    starts_.push_back(last);
    ways_.push_back(way);
    boxes_.push_back(box);
}

void Runs::startLine() {
    starts_.assign(1, 0);
    ways_.clear();
    boxes_.clear();
}

void Runs::addPart(std::span<const Run> runs, bool turned) {
    const std::size_t begin = starts_.back();
    if (!turned) {
        for (const Run& run : runs) add(run.way, begin + run.last, run.box);
        return;
    }
    const std::size_t edges = runs.back().last;
    for (std::size_t at = runs.size(); at-- > 0;) {
        const std::size_t first = at == 0 ? 0 : runs[at - 1].last;
        add(turnedRound(runs[at].way), begin + edges - first, runs[at].box);
    }
}

void Runs::finishLine(std::span<const Point> line) {
    line_ = line;
    levels_.assign(1, 0);
    while (boxes_.size() - levels_.back() > 1) {
        const std::size_t begin = levels_.back(), end = boxes_.size();
        levels_.push_back(end);
        for (std::size_t box = begin; box < end; box += 2) {
            boxes_.push_back(box + 1 < end ? joined(boxes_[box], boxes_[box + 1]) : boxes_[box]);
        }
    }
}

void Runs::over(std::span<const Point> line) {
    startLine();
    while (starts_.back() + 1 < line.size()) {
        const Run run = takeRun(line, starts_.back());
        add(run.way, run.last, run.box);
    }
    finishLine(line);
}

std::span<const Point> Runs::near(std::size_t run, const Box& box) const {
    const std::span<const Point> line = vertices(0, run);
    if (line.size() <= kFewVertices) return line;
    // Runs that follow each other meet at their ends, so these are looked at first.
    const auto between = [&](auto&& before, auto&& notBehind) {
        auto first = line.begin(), last = line.end();
        if (!before(line.front())) {
            last = std::find_if_not(first, last, notBehind);
        } else if (notBehind(line.back())) {
            while (first != last && !before(*(last - 1))) --last;
            first = std::exchange(last, line.end());
        } else {
            first = std::partition_point(first, last, before);
            last = std::partition_point(first, last, notBehind);
        }
        if (first != line.begin()) --first;
        if (last != line.end()) ++last;
        return std::span<const Point>(first, last);
    };
    switch (ways_[run]) {
        case Run::Way::right:
            return between([&](const Point& point) { return point.x < box.least.x; },
                           [&](const Point& point) { return point.x <= box.greatest.x; });
        case Run::Way::left:
            return between([&](const Point& point) { return point.x > box.greatest.x; },
                           [&](const Point& point) { return point.x >= box.least.x; });
        case Run::Way::up:
            return between([&](const Point& point) { return point.y < box.least.y; },
                           [&](const Point& point) { return point.y <= box.greatest.y; });
        default:
            return between([&](const Point& point) { return point.y > box.greatest.y; },
                           [&](const Point& point) { return point.y >= box.least.y; });
    }
}

}  // namespace topology
