// NXY, NZ, NOD, EDG, HUL and NID: runs of numbers, of which ENV has told how many.
#include <algorithm>
#include <array>
#include <bit>
#include <functional>
#include <limits>
#include <span>
#include <string_view>

#include "host/qxgridio.h"
#include "stream/lines.h"
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

// How numbers stand on a line, and how a full line is taken where it lies.
template <class Number>
struct Fields {
    std::size_t perLine;
    std::size_t width;
    int decimals;
    bool (*take)(Number* numbers);
};
constexpr Fields<int32_t> kIntegers = {
    6, 10, 0,
    [](int32_t* all) { return takeLine<"6I10">(all[0], all[1], all[2], all[3], all[4], all[5]); }};
constexpr Fields<double> kNarrowReals = {
    4, 14, 7, [](double* all) { return takeLine<"1P,4E14.7">(all[0], all[1], all[2], all[3]); }};
constexpr Fields<double> kWideReals = {
    3, 21, 14, [](double* all) { return takeLine<"1P,3E21.14">(all[0], all[1], all[2]); }};
constexpr std::size_t kMostInLine = 6;

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

int32_t numberField(std::string_view text, std::size_t first, const Fields<int32_t>&) {
    return integerField<int32_t>(text, first);
}
double numberField(std::string_view text, std::size_t first, const Fields<double>& fields) {
    return realField(text, first, fields.decimals);
}

// The lines of a section, cut into numbers.
template <class Number>
class NumberLines {
  public:
    explicit NumberLines(const Fields<Number>& fields) : fields_(fields) {}
    // The first line tells how wide its reals are, and is read ahead for that.
    NumberLines() : ahead_(true) {
        constexpr std::size_t kExponent = 10;
        IMPLIN(line_);
        fields_ = line_[kExponent] == 'E' ? kNarrowReals : kWideReals;
    }

    // Values are made of the numbers, in the order of the file.
    template <class T, class Make>
    void fill(std::span<T> values, Make make) {
        std::array<Number, kMostInLine> numbers;
        while (!values.empty()) {
            const std::size_t count = std::min(values.size(), fields_.perLine);
            next(count, numbers);
            std::transform(numbers.begin(), numbers.begin() + static_cast<std::ptrdiff_t>(count),
                           values.begin(), make);
            values = values.subspan(count);
        }
    }
    // Reads the closing line, which nobody looks at. A line that was read ahead for the form of a
    // section without values is not that line. Stays.
    void close() { IMPLIN(line_); }

  private:
    // The first numbers of the next line. What it holds beyond them is left unread.
    void next(std::size_t count, std::array<Number, kMostInLine>& numbers) {
        if (!ahead_) {
            if (count == fields_.perLine && fields_.take(numbers.data())) return;
            IMPLIN(line_);
        }
        ahead_ = false;
        for (std::size_t field = 0; field < count; ++field) {
            const std::size_t first = field * fields_.width + 1;
            const std::string_view text = line_.columns(first, first + fields_.width - 1);
            numbers[field] = numberField(text, first, fields_);
        }
    }

    Fields<Number> fields_{};
    bool ahead_ = false;
    Line line_;
};

// The frame of every section. makeLines is asked for the lines once the file is there.
template <class T, class MakeLines, class Make>
void importNumbers(const Name& surface, Status& status, const Section& section, std::span<T> buffer,
                   MakeLines makeLines, Make make) {
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
    auto lines = makeLines();
    for (int64_t done = 0; done < total;) {
        const auto count =
            static_cast<std::size_t>(std::min(total - done, static_cast<int64_t>(buffer.size())));
        lines.fill(buffer.first(count), make);
        tifput(channel, static_cast<int32_t>(count * sizeof(T) / 4), buffer.data(), section.words);
        done += static_cast<int64_t>(count);
    }
    lines.close();
    tifcls(channel);
    status = kSuccess;
}

// The highest flag patterns of an edge stand in the file as numbers that fit ten columns.
int32_t edgeOf(int32_t value) {
    constexpr int32_t kHighestFlag = -999999999;
    constexpr int32_t kSecondFlag = -999999998;
    constexpr int32_t kLastFlag = -500000000;
    constexpr int32_t kShift = 573741823;
    if (value == kHighestFlag) return std::numeric_limits<int32_t>::min();
    if (value == kSecondFlag) return std::numeric_limits<int32_t>::min() + 1;
    return value <= kLastFlag ? value - kShift : value;
}

// Every section but that of the coordinates has values of one word; reals go as their bits.
template <class Number, class Make>
void importWords(const Name& surface, Status& status, const Section& section,
                 const Fields<Number>& fields, Make make) {
    importNumbers<int32_t>(
        surface, status, section, words, [&] { return NumberLines(fields); }, make);
}

}  // namespace

void IMPNXY(const Name& surface, Status& status) {
    importNumbers<double>(
        surface, status, kNxy, doubles, [] { return NumberLines<double>(); }, std::identity());
}

void IMPNZ(const Name& surface, Status& status) {
    float noData = 0;
    call(fltndt_, noData);
    const float threshold = 0.9F * noData;
    // Compared as 64-bit values; a value that is not a number is no-data too.
    const auto make = [=](double value) {
        const float kept = value > threshold ? static_cast<float>(value) : noData;
        return std::bit_cast<int32_t>(kept);
    };
    importWords(surface, status, kNz, kNarrowReals, make);
}

void IMPNOD(const Name& surface, Status& status) {
    importWords(surface, status, kNod, kIntegers, std::identity());
}
void IMPEDG(const Name& surface, Status& status) {
    importWords(surface, status, kEdg, kIntegers, edgeOf);
}
void IMPHUL(const Name& surface, Status& status) {
    importWords(surface, status, kHul, kIntegers, std::identity());
}
void IMPNID(const Name& surface, Status& status) {
    importWords(surface, status, kNid, kIntegers, std::identity());
}

}  // namespace intake
