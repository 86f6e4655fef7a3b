#include "stream/section_header.h"

#include <algorithm>

#include "stream/format.h"
#include "stream/reader.h"
#include "stream/report.h"
#include "stream/section_codes.h"

namespace intake {

namespace {

const SectionCode* findSection(const Line& line) {
    const std::string_view keyword = line.columns(1, 4);
    for (const SectionCode& section : kSectionCodes) {
        if (section.keyword == keyword) return &section;
    }
    return nullptr;
}

// The precision pass knows fewer sections and compares three columns only: "ARCX" is one to it.
bool beginsSectionForPrecision(const Line& line) {
    constexpr std::string_view kUnknown[] = {"CS7", "TX7", "MTD", "IMD"};
    const std::string_view code = line.columns(1, 3);
    return std::none_of(std::begin(kUnknown), std::end(kUnknown),
                        [&](std::string_view each) { return each == code; }) &&
           std::any_of(kSectionCodes.begin(), kSectionCodes.end(),
                       [&](const SectionCode& each) { return each.keyword.substr(0, 3) == code; });
}

}  // namespace

void IMPHDR(int32_t& number, int32_t, std::span<const int32_t> codes, int32_t& precision) {
    Line line;
    const SectionCode* section = nullptr;
    do {
        IMPLIN(line);
        section = findSection(line);
    } while (!section);
    number = section->number;
    if (number == kEndOfFileSection) return;
    if (qx::trimText(line.columns(5, 6)).empty()) {
        nonftl("This version of your EXPORT file is no longer supported");
        // The blank code reads as 0 and is refused below.
    }
    int32_t code = 0;
    read<"4X,I2">(line, code);
    if (std::find(codes.begin(), codes.end(), code) == codes.end()) {
        fatal("The EXPORT file is not compatable with this version of IMPORT");
    }
    precision = code;
}

void IMPPRC(int32_t& hint) {
    constexpr std::size_t kSingleWidth = 14;
    hint = 0;
    if (reader.NOHEAD == 0) return;
    Line line;
    do {
        IMPLIN(line);
    } while (!beginsSectionForPrecision(line));
    // Nothing to go back to: there is no section behind the end.
    if (line.startsWith("EOS")) return;
    if (line.startsWith("ARC")) {
        IMPLIN(line);
        IMPLIN(line);
        const std::size_t first = line.full().find('.');
        const std::size_t second =
            first == std::string_view::npos ? first : line.full().find('.', first + 1);
        if (second != std::string_view::npos && second - first == kSingleWidth) hint = kSingle;
    }
    rewindToStart();
}

}  // namespace intake
