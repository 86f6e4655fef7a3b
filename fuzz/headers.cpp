// The scan for section headers, with the precision pass in front, over a file in volumes.
#include <vector>

#include "fuzz/scratch.h"
#include "fuzz/volumes.h"
#include "stream/reader.h"
#include "stream/section_codes.h"
#include "stream/section_header.h"

namespace {

using namespace intake;

struct Header {
    int32_t number = 0;
    int32_t precision = 0;
    friend bool operator==(const Header&, const Header&) = default;
};

// Where the scan begins: behind the header line, or behind an end that the precision pass finds
// before any other section, since it does not go back from there.
fuzz::PlainLines startOfScan(std::string_view text) {
    fuzz::PlainLines lines(text);
    const fuzz::PlainLines start = lines;
    std::string_view line;
    if (reader.NOHEAD == 0) {
        lines.next(line);
        return lines;
    }
    while (lines.next(line)) {
        const FixedText<3> characters(line);
        const std::string_view code = characters.full();
        if (code == "EOS") return lines;
        if (code == "CS7" || code == "TX7" || code == "MTD" || code == "IMD") continue;
        for (const SectionCode& section : kSectionCodes) {
            if (section.keyword.substr(0, 3) == code) return start;
        }
    }
    return start;
}

// Compared by hand, since each call of a comparison is something that the fuzzer takes down.
bool begins(std::string_view text, std::string_view front) {
    for (std::size_t index = 0; index < front.size(); ++index) {
        if (text[index] != front[index]) return false;
    }
    return true;
}

// The precision code in columns 5 and 6, 0 if it is none that is legal.
int32_t precisionOf(std::string_view columns) {
    for (const std::string_view digit : {"1", "2", "3"}) {
        const bool legal = (columns[1] == digit[0] &&
                            (columns[0] == ' ' || columns[0] == '0' || columns[0] == '+')) ||
                           (columns[0] == digit[0] && columns[1] == ' ');
        if (legal) return digit[0] - '0';
    }
    return 0;
}

// The headers of a plain file, up to the first one that no import goes on behind.
std::vector<Header> headersOf(std::string_view text) {
    std::vector<Header> headers;
    fuzz::PlainLines lines = startOfScan(text);
    for (std::string_view line; lines.next(line);) {
        const FixedText<6> columns(line);
        for (const SectionCode& section : kSectionCodes) {
            if (!begins(columns.full(), section.keyword)) continue;
            const bool end = section.number == kEndOfFileSection;
            headers.push_back({section.number, end ? 0 : precisionOf(columns.columns(5, 6))});
            if (end || headers.back().precision != 0) break;
            headers.pop_back();
            return headers;
        }
    }
    return headers;
}

// The headers that the scan finds before it ends in a failure, as it must.
std::vector<Header> scannedHeaders() {
    constexpr std::array<int32_t, 3> kCodes = {kOldest, kSingle, kDouble};
    std::vector<Header> headers;
    try {
        for (;;) {
            Header header;
            IMPHDR(header.number, kSingle, kCodes, header.precision);
            headers.push_back(header);
        }
    } catch (...) {
        return headers;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        fuzz::openVolumes(text);
        int32_t hint = -1;
        IMPPRC(hint);
        fuzz::require(hint == 0 || hint == kSingle, "a hint is single or none");
        const std::vector<Header> headers = scannedHeaders();
        fuzz::require(headers.size() <= size, "no more headers than bytes");
        if (fuzz::isPlain(text)) fuzz::require(headers == headersOf(text), "the headers");
    } catch (...) {
        // No version, or no section for the precision pass.
    }
    return 0;
}
