// Logical lines out of a file in volumes, in both forms, as they are and read by a format.
#include <array>
#include <cstring>
#include <vector>

#include "fuzz/scratch.h"
#include "fuzz/volumes.h"
#include "stream/lines.h"

namespace {

using namespace intake;

void readLines(std::string_view text) {
    const bool plain = fuzz::isPlain(text);
    fuzz::PlainLines expected(text);
    std::string_view wanted;
    if (reader.NOHEAD == 0) expected.next(wanted);
    for (std::size_t count = 0;; ++count) {
        fuzz::require(count <= text.size() + 1, "no more lines than bytes");
        Line line;
        IMPLIN(line);
        if (!plain) continue;
        fuzz::require(expected.next(wanted), "no line that is not there");
        fuzz::require(line == Line(wanted), "a line as it stands in the file");
    }
}

struct Outcome {
    std::array<int32_t, 3> integers{};
    std::array<double, 6> reals{};
    int64_t line = 0;
    int64_t number = 0;
    bool operator==(const Outcome& other) const {
        return std::memcmp(this, &other, sizeof other) == 0;
    }
};

// The next line by one of three formats, at once or by way of a buffer.
template <detail::FormatText format, class... Values>
void readNext(bool atOnce, Values&... values) {
    if (atOnce) return IMPLIN<format>(values...);
    Line line;
    IMPLIN(line);
    read<format>(line, values...);
}

// What the lines up to the end of the first volume give, or up to some failures, each of which
// takes as long as many lines: so most inputs end at the first, as an import does.
int mostFailures(std::string_view text) { return text.size() % 8 == 1 ? 4 : 1; }
std::vector<Outcome> outcomes(std::string_view text, bool atOnce) {
    fuzz::openVolumes(text);
    std::vector<Outcome> all;
    int failures = 0;
    for (std::size_t number = 0; !volumeEnded() && number <= text.size(); ++number) {
        Outcome next;
        auto& [i, r, line, logical] = next;
        try {
            switch (number % 3) {
                case 0:
                    readNext<"3I10">(atOnce, i[0], i[1], i[2]);
                    break;
                case 1:
                    readNext<"1P,4E14.7">(atOnce, r[0], r[1], r[2], r[3]);
                    break;
                default:
                    readNext<"1P,2E21.14">(atOnce, r[4], r[5]);
            }
        } catch (...) {
            // A field that is none ends the import; here the next line comes. It is told by its
            // number, as the values are anything.
            i = {};
            r = {};
            if (++failures == mostFailures(text)) break;
        }
        line = reader.lineNumber;
        logical = reader.logicalLines;
        all.push_back(next);
    }
    return all;
}

}  // namespace

// One of the two, by the size of an input.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        if (size % 2 == 0) {
            fuzz::openVolumes(text);
            readLines(text);
        } else {
            fuzz::require(outcomes(text, true) == outcomes(text, false), "what a format reads");
        }
    } catch (...) {
        // No version, or the end of the last volume, which as any other failure ends the import.
    }
    return 0;
}
