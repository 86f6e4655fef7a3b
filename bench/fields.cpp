// Reading the numbers of a line, beside strtod and strtol on cut fields and from_chars on trimmed
// ones.
#include <charconv>
#include <cstring>

#include "bench/generator.h"
#include "bench/measure.h"
#include "bench/plain_reader.h"
#include "stream/format.h"
#include "stream/types.h"

namespace bench {

namespace {

using intake::Line;

constexpr std::size_t kLines = 5000;

// Lines of one layout out of a generated file.
std::vector<Line> linesOf(const char* kindName, std::string_view likeThis) {
    const std::string text = generate(kind(kindName), kLines * 80).text;
    std::vector<Line> lines;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
        const std::string_view line(text.data() + start, end - start);
        if (line.size() == likeThis.size() && line.find(likeThis.substr(0, 1)) != line.npos &&
            (line.find('.') != line.npos) == (likeThis.find('.') != likeThis.npos)) {
            lines.push_back(Line(line));
        }
    }
    require(!lines.empty(), "there are lines to read");
    return lines;
}

template <class T>
T trimmedFromChars(const char* field, std::size_t width) {
    std::size_t first = 0;
    while (first < width && field[first] == ' ') ++first;
    T value{};
    std::from_chars(field + first, field + width, value);
    return value;
}

// Adds up what one way of reading gives for all lines.
template <class Read>
double sumOf(const std::vector<Line>& lines, Read read) {
    double sum = 0;
    for (const Line& line : lines) sum += read(line);
    return sum;
}

template <class Ours, class Plain, class FromChars>
void compare(const std::string& what, const std::vector<Line>& lines, std::size_t textWidth,
             Ours ours, Plain plain, FromChars fromChars) {
    const double expected = sumOf(lines, plain);
    require(sumOf(lines, ours) == expected, what);
    require(sumOf(lines, fromChars) == expected, what + " by from_chars");
    Comparison comparison("fields/" + what, lines.size() * textWidth);
    comparison.add("plain", [=] { benchmark::DoNotOptimize(sumOf(lines, plain)); });
    comparison.add("from_chars", [=] { benchmark::DoNotOptimize(sumOf(lines, fromChars)); });
    comparison.add("intake", [=] { benchmark::DoNotOptimize(sumOf(lines, ours)); }).run();
}

// The same cutting for both ways that are not ours.
template <class Value, std::size_t Width, std::size_t Count,
          Value (*Convert)(const char*, std::size_t)>
double cut(const Line& line) {
    double sum = 0;
    for (std::size_t field = 0; field < Count; ++field) {
        sum += static_cast<double>(Convert(line.data() + field * Width, Width));
    }
    return sum;
}

double strtodField(const char* field, std::size_t width) {
    return plainReal(field, static_cast<int>(width));
}
int32_t strtolField(const char* field, std::size_t width) {
    return plainInteger(field, static_cast<int>(width));
}

}  // namespace

void registerFields() {
    compare(
        "4E14.7", linesOf("arcs_4E14.7", std::string(56, '.')), 56,
        [](const Line& line) {
            double a = 0, b = 0, c = 0, d = 0;
            intake::read<"1P,4E14.7">(line, a, b, c, d);
            return a + b + c + d;
        },
        cut<double, 14, 4, strtodField>, cut<double, 14, 4, trimmedFromChars<double>>);
    compare(
        "2E21.14", linesOf("arcs_2E21.14", std::string(42, '.')), 42,
        [](const Line& line) {
            double a = 0, b = 0;
            intake::read<"1P,2E21.14">(line, a, b);
            return a + b;
        },
        cut<double, 21, 2, strtodField>, cut<double, 21, 2, trimmedFromChars<double>>);
    compare(
        "6I10", linesOf("polygons", std::string(60, ' ')), 60,
        [](const Line& line) {
            int32_t a = 0, b = 0, c = 0, d = 0, e = 0, f = 0;
            intake::read<"6I10">(line, a, b, c, d, e, f);
            return static_cast<double>(int64_t{a} + b + c + d + e + f);
        },
        cut<int32_t, 10, 6, strtolField>, cut<int32_t, 10, 6, trimmedFromChars<int32_t>>);
}

}  // namespace bench
