#include "stream/reader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "host/qxbase.h"
#include "stream/compressed.h"
#include "stream/fast_fields.h"
#include "stream/fields.h"
#include "stream/report.h"

namespace intake {

ReaderState reader;

namespace {

constexpr char kCarriageReturn = '\r';
constexpr int32_t kEndOfFile = -1;

// Where a report is due. The next one is set before the wish is looked at: none that comes
// meanwhile is lost.
void lookUp() {
    constexpr int64_t kLinesBetweenReports = 4096;
    // The line at hand counts already.
    const int64_t beyond = reader.logicalLines % kLinesBetweenReports;
    if (beyond == 0) {
        int64_t bytes = 0;
        call(abytes_, reader.IMPUNT, bytes);
        call(prgtel_, static_cast<int32_t>(QX_SECTION_GOES_ON), "", reader.logicalLines, bytes);
    }
    std::atomic_ref<int64_t>{dueLine} = reader.logicalLines - beyond + kLinesBetweenReports - 1;
    stopIfAsked();
}

// Once the channel has been opened or gone back.
void findWindow(const int32_t& channel) {
    call(awindo_, channel, &reader.window);
    if (!reader.window) reader.window = &emptyWindow;
}

void closeVolume() {
    reader.window = &emptyWindow;
    call(aclose_, reader.IMPUNT);
}

void openNextVolume() {
    Status status = kSuccess;
    closeVolume();
    call(iename_, reader.IMPNAM, 2, status);
    if (status != kSuccess) fatal("ERROR, next volume %1% does not exist.", reader.IMPNAM);
    call(aopen_, reader.IMPUNT, reader.IMPNAM, status);
    if (status != kSuccess) fatal("Could not open %1%", reader.IMPNAM);
    findWindow(reader.IMPUNT);
    reader.lineNumber = 0;
    inform("Reading next volume: %1%", reader.IMPNAM);
}

Status readPhysical(std::span<char> line, int32_t& count) {
    Status status = kSuccess;
    aread_(&reader.IMPUNT, line.data(), &count, &status, static_cast<int32_t>(line.size()));
    return status;
}

// Out of the way of the reading that most lines need.
[[gnu::noinline]] Status readInNextVolume(std::span<char> line, int32_t& count, Status status) {
    while (status == kEndOfFile) {
        openNextVolume();
        status = readPhysical(line, count);
    }
    return status;
}

// How many "~" end a text that follows one which ended in some.
std::size_t escapesAtEnd(std::string_view text, std::size_t before) {
    const std::size_t other = text.find_last_not_of('~');
    return other == std::string_view::npos ? before + text.size() : text.size() - other - 1;
}

// The high bit of each of eight characters that is the one looked for.
uint64_t highBitsOf(char character, uint64_t eight) {
    constexpr uint64_t kLow = fast::eightTimes(0x7F);
    const uint64_t differs = eight ^ fast::eightTimes(character);
    return ~(((differs & kLow) + kLow) | differs | kLow);
}

// The first "}" from a place on that has a "~" before it, or the end of the text. Lines are short
// and full of other "}", so that a call for each would take longer than the search.
std::size_t findMark(std::string_view text, std::size_t from, bool escaped) {
    uint64_t carried = escaped ? 0x80 : 0;
    for (; fast::kLowestFirst && text.size() - from >= 8; from += 8) {
        const uint64_t eight = fast::eightCharacters(text.data() + from);
        const uint64_t escapes = highBitsOf('~', eight);
        const uint64_t marks = highBitsOf('}', eight) & (escapes << 8 | carried);
        if (marks != 0) return from + static_cast<std::size_t>(std::countr_zero(marks)) / 8;
        carried = escapes >> 56;
    }
    for (; from < text.size() && !(text[from] == '}' && carried != 0); ++from) {
        carried = text[from] == '~' ? 0x80 : 0;
    }
    return from;
}

// The beginning of a logical line that a later physical line ends.
class Beginning {
  public:
    bool empty() const { return length_ == 0; }
    std::size_t escapes() const { return escapes_; }
    // The length counts on where the characters no longer fit and are lost.
    void add(std::string_view text) {
        if (length_ < kCompressedLength) {
            const std::size_t kept = std::min(text.size(), kCompressedLength - length_);
            std::memcpy(characters_.data() + length_, text.data(), kept);
        }
        escapes_ = escapesAtEnd(text, escapes_);
        length_ += text.size();
    }
    // The whole line once its end mark has been added. One that fills the buffer keeps the mark.
    std::string_view line() const {
        if (length_ < kCompressedLength) return {characters_.data(), length_ - 2};
        return {characters_.data(), kCompressedLength};
    }

  private:
    std::array<char, kCompressedLength> characters_;
    std::size_t length_ = 0;
    // Of the text as it stands in the file, also where the buffer is full.
    std::size_t escapes_ = 0;
};

void assembleLine(std::span<char> line) {
    if (reader.EXPCOL != 0) EXPFLS();
    Beginning beginning;
    std::string_view physical = reader.IMPBUF.view();
    auto start = static_cast<std::size_t>(reader.IMPCOL - 1);
    const auto nextPhysicalLine = [&] {
        IMPCOM({reader.IMPBUF.data(), Line::kLength});
        // Blanks at the end of a physical line are no data.
        physical = reader.IMPBUF.view();
        start = 0;
    };
    if (start >= physical.size()) nextPhysicalLine();
    std::size_t searched = start;
    for (;;) {
        const bool escaped =
            searched == start ? beginning.escapes() != 0 : physical[searched - 1] == '~';
        const std::size_t mark = findMark(physical, searched, escaped);
        if (mark == physical.size()) {
            beginning.add(physical.substr(start));
            nextPhysicalLine();
            searched = 0;
            continue;
        }
        searched = mark + 1;
        // Behind an even number of "~" it is data.
        const std::string_view before = physical.substr(start, mark - start);
        if (escapesAtEnd(before, beginning.escapes()) % 2 == 1) break;
    }
    reader.IMPCOL = static_cast<int32_t>(searched) + 1;
    int32_t count = 0;
    const std::string_view end = physical.substr(start, searched - start);
    if (beginning.empty()) {
        DCMLIN(end.substr(0, end.size() - 2), line, count);
        return;
    }
    beginning.add(end);
    DCMLIN(beginning.line(), line, count);
}

}  // namespace

void RDVER(const int32_t& channel) {
    reader.EXPCOL = 0;
    reader.IMPCOL = 81;
    reader.atHand = {};
    reader.HASCR = false;
    FixedText<81> first;
    int32_t count = 0;
    Status status = kSuccess;
    call(aread_, channel, first, count, status);
    if (status != kSuccess) fatal("Could not read version number (RDVER)");
    if (first.startsWith("EXP")) {
        if (!parseInteger(first.columns(4, 6), reader.EXPVER)) {
            fatal("Could not read version number (RDVER)");
        }
        reader.NOHEAD = 0;
        reader.lineNumber = 1;
    } else {
        reader.EXPVER = 0;
        reader.NOHEAD = 1;
        call(arewnd_, channel, status);
        reader.lineNumber = 0;
    }
    findWindow(channel);
    prgdue_(&dueLine);
    std::atomic_ref<int64_t>{dueLine} = 0;
    const std::string_view text = first.view();
    reader.HASCR = !text.empty() && text.back() == kCarriageReturn;
}

std::size_t IMPCOM(std::span<char> line) {
    const std::string_view buffer(line.data(), line.size());
    int32_t count = 0;
    reader.atHand = {};
    Status status = readPhysical(line, count);
    if (status != kSuccess) status = readInNextVolume(line, count, status);
    if (status != kSuccess) fatal("Could not import data (IMPCOM)");
    ++reader.lineNumber;
    auto length = static_cast<std::size_t>(count);
    if (reader.HASCR) {
        if (length == 0 || line[length - 1] != kCarriageReturn) {
            length = qx::trimText(buffer.substr(0, length)).size();
        }
        if (length > 0 && line[length - 1] == kCarriageReturn) line[--length] = ' ';
    }
    return length;
}

void IMPLIN(std::span<char> line) {
    const bool reportDue = isReportDue();
    ++reader.logicalLines;
    if (reportDue) lookUp();
    if (reader.EXPVER == 0) {
        IMPCOM(line);
    } else {
        assembleLine(line);
    }
}

void stopIfAsked() {
    int32_t asked = 0;
    call(prgask_, asked);
    if (asked == 0) return;
    error("The import was stopped in line %1% of %2%. What was imported until there stays.",
          static_cast<int32_t>(reader.lineNumber), reader.IMPNAM);
}

bool volumeEnded() {
    if (reader.EXPVER != 0 &&
        static_cast<std::size_t>(reader.IMPCOL) <= reader.IMPBUF.view().size())
        return false;
    int32_t ended = 0;
    reader.atHand = {};
    call(aatend_, reader.IMPUNT, ended);
    return ended != 0;
}

void rewindToStart() {
    Status status = kSuccess;
    if (reader.IMPNAM == reader.firstVolume) {
        call(arewnd_, reader.IMPUNT, status);
    } else {
        closeVolume();
        reader.IMPNAM = reader.firstVolume;
        call(aopen_, reader.IMPUNT, reader.IMPNAM, status);
    }
    if (status != kSuccess) fatal("Could not open %1%", reader.IMPNAM);
    findWindow(reader.IMPUNT);
    reader.lineNumber = 0;
}

}  // namespace intake
