// NXY, NZ, NOD, EDG, HUL and NID: runs of numbers, of which ENV has told how many.
#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <span>
#include <string_view>

#include "host/qxgridio.h"
#include "stream/fields.h"
#include "stream/reader.h"
#include "stream/report.h"
#include "tin/member_files.h"
#include "tin/open_surfaces.h"
#include "tin/properties.h"
#include "tin/sections.h"

namespace intake {

namespace {

// Chunks keep a surface of any size in a fixed buffer. Every chunk starts on a new line, so their
// sizes decide where lines break.
constexpr std::size_t kDoublesInChunk = 3750;
constexpr std::size_t kWordsInChunk = 15000;

// Shared by the sections, one after the other.
std::array<double, kDoublesInChunk> doubles;
std::array<int32_t, kWordsInChunk> words;

// How numbers stand on a line.
struct Fields {
    std::size_t perLine;
    std::size_t width;
    int decimals;
};
constexpr Fields kIntegers = {6, 10, 0};
constexpr Fields kNarrowReals = {4, 14, 7};
constexpr Fields kWideReals = {3, 21, 14};

struct Section {
    const char* routine;
    int32_t code;
    TinProperty things;  // the property that counts what the numbers belong to
    int64_t perThing;
    Words words;
};
constexpr Section kNxy = {"IMPNXY", 51, kNodeCount, 2, Words::kDoubles};
constexpr Section kNz = {"IMPNZ", 52, kNodeCount, 1, Words::kSingles};
constexpr Section kNod = {"IMPNOD", 53, kTriangleCount, 3, Words::kTriangleNodes};
constexpr Section kEdg = {"IMPEDG", 54, kTriangleCount, 3, Words::kTriangleEdges};
constexpr Section kHul = {"IMPHUL", 55, kHullCount, 1, Words::kHull};
// Identifiers go as words of reals. Their bits are turned the same. Stays.
constexpr Section kNid = {"IMPNID", 56, kNodeCount, 1, Words::kSingles};

// The lines of a section, cut into numbers.
class NumberLines {
  public:
    explicit NumberLines(const Fields& fields) : fields_(fields) {}
    // The first line tells how wide its reals are, and is read ahead for that.
    NumberLines() : ahead_(true) {
        constexpr std::size_t kExponent = 10;
        IMPLIN(line_);
        fields_ = line_[kExponent] == 'E' ? kNarrowReals : kWideReals;
    }

    // What a line holds beyond the last value is left unread.
    template <class T, class Decode>
    void fill(std::span<T> values, Decode decode) {
        for (std::size_t index = 0; index < values.size(); ++index) {
            const std::size_t field = index % fields_.perLine;
            if (field == 0) next();
            const std::size_t first = field * fields_.width + 1;
            const std::string_view text = line_.columns(first, first + fields_.width - 1);
            values[index] = decode(text, first, fields_.decimals);
        }
    }
    // Reads the closing line, which nobody looks at. A line that was read ahead for the form of a
    // section without values is not that line. Stays.
    void close() { IMPLIN(line_); }

  private:
    void next() {
        if (!ahead_) IMPLIN(line_);
        ahead_ = false;
    }

    Fields fields_{};
    bool ahead_ = false;
    Line line_;
};

// The frame of every section. makeLines is asked for the lines once the file is there.
template <class T, class MakeLines, class Decode>
void importNumbers(const Name& surface, Status& status, const Section& section, std::span<T> buffer,
                   MakeLines makeLines, Decode decode) {
    if (!currentTin()) {
        nonftl("The TIN section has no ENV section before it (%1%).", section.routine);
        status = kReported;
        return;
    }
    Name path;
    tifnam(surface, path, section.code);
    Handle channel{};
    tifcre(channel, path, status);
    if (status != kSuccess) {
        status = kReported;
        return;
    }
    int32_t things = 0;
    tifget(section.things, &things);
    const int64_t total = things * section.perThing;
    NumberLines lines = makeLines();
    for (int64_t done = 0; done < total;) {
        const auto count =
            static_cast<std::size_t>(std::min(total - done, static_cast<int64_t>(buffer.size())));
        lines.fill(buffer.first(count), decode);
        tifput(channel, static_cast<int32_t>(count * sizeof(T) / 4), buffer.data(), section.words);
        done += static_cast<int64_t>(count);
    }
    lines.close();
    tifcls(channel);
    status = kSuccess;
}

double decodeReal(std::string_view text, std::size_t first, int decimals) {
    return realField(text, first, decimals);
}

int32_t decodeInteger(std::string_view text, std::size_t first, int) {
    return integerField<int32_t>(text, first);
}

// The highest flag patterns of an edge stand in the file as numbers that fit ten columns.
int32_t decodeEdge(std::string_view text, std::size_t first, int) {
    constexpr int32_t kHighestFlag = -999999999;
    constexpr int32_t kSecondFlag = -999999998;
    constexpr int32_t kLastFlag = -500000000;
    constexpr int32_t kShift = 573741823;
    const auto value = integerField<int32_t>(text, first);
    if (value == kHighestFlag) return std::numeric_limits<int32_t>::min();
    if (value == kSecondFlag) return std::numeric_limits<int32_t>::min() + 1;
    return value <= kLastFlag ? value - kShift : value;
}

// Every section but that of the coordinates has values of one word; reals go as their bits.
template <class Decode>
void importWords(const Name& surface, Status& status, const Section& section, const Fields& fields,
                 Decode decode) {
    importNumbers<int32_t>(
        surface, status, section, words, [&] { return NumberLines(fields); }, decode);
}

}  // namespace

void IMPNXY(const Name& surface, Status& status) {
    importNumbers<double>(
        surface, status, kNxy, doubles, [] { return NumberLines(); }, decodeReal);
}

void IMPNZ(const Name& surface, Status& status) {
    float noData = 0;
    call(fltndt_, noData);
    const float threshold = 0.9F * noData;
    // Compared as 64-bit values; a value that is not a number is no-data too.
    const auto decode = [=](std::string_view text, std::size_t first, int decimals) {
        const double value = realField(text, first, decimals);
        const float kept = value > threshold ? static_cast<float>(value) : noData;
        return std::bit_cast<int32_t>(kept);
    };
    importWords(surface, status, kNz, kNarrowReals, decode);
}

void IMPNOD(const Name& surface, Status& status) {
    importWords(surface, status, kNod, kIntegers, decodeInteger);
}
void IMPEDG(const Name& surface, Status& status) {
    importWords(surface, status, kEdg, kIntegers, decodeEdge);
}
void IMPHUL(const Name& surface, Status& status) {
    importWords(surface, status, kHul, kIntegers, decodeInteger);
}
void IMPNID(const Name& surface, Status& status) {
    importWords(surface, status, kNid, kIntegers, decodeInteger);
}

}  // namespace intake
