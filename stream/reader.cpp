#include "stream/reader.h"

#include <algorithm>
#include <cstring>

#include "host/qxbase.h"
#include "stream/compressed.h"
#include "stream/fields.h"
#include "stream/report.h"

namespace intake {

ReaderState reader;

namespace {

constexpr char kCarriageReturn = '\r';
constexpr int32_t kEndOfFile = -1;
constexpr int64_t kLinesBetweenReports = 4096;

void tellProgress() {
    int64_t bytes = 0;
    call(abytes_, reader.IMPUNT, bytes);
    call(prgtel_, static_cast<int32_t>(QX_SECTION_GOES_ON), "", reader.logicalLines, bytes);
}

void openNextVolume() {
    Status status = kSuccess;
    call(aclose_, reader.IMPUNT);
    call(iename_, reader.IMPNAM, 2, status);
    if (status != kSuccess) fatal("ERROR, next volume %1% does not exist.", reader.IMPNAM);
    call(aopen_, reader.IMPUNT, reader.IMPNAM, status);
    if (status != kSuccess) fatal("Could not open %1%", reader.IMPNAM);
    reader.lineNumber = 0;
    inform("Reading next volume: %1%", reader.IMPNAM);
}

int32_t trimmedLength(const Line& line) {
    return static_cast<int32_t>(line.view().size());
}

// One logical line of compressed text, gathered from the physical lines that wrap it.
class Assembly {
  public:
    // Adds what stands in columns first to last of IMPBUF, of which `counted` characters are data.
    void add(int32_t first, int32_t last, int32_t counted) {
        const auto place = static_cast<std::size_t>(length_);
        if (place < kCompressedLength) {
            const std::size_t room = kCompressedLength - place;
            const auto size = static_cast<std::size_t>(last - first + 1);
            std::memcpy(work_.data() + place, &reader.IMPBUF[static_cast<std::size_t>(first - 1)],
                        std::min(room, size));
        }
        countEscapes(first, counted);
        length_ += counted;
    }
    // Whether the "}" that was added last ends the line: an odd number of "~" stands before it.
    bool ended() const { return escapesBefore_ % 2 == 1; }
    // Takes the end mark off. A line that fills the buffer keeps it.
    void close() {
        const auto last = static_cast<std::size_t>(length_);
        if (last < kCompressedLength) {
            std::memset(work_.data() + last - 2, ' ', kCompressedLength - (last - 2));
        }
    }
    const CompressedLine& work() const { return work_; }

  private:
    // Keeps count of the "~" at the end of the text, and of those before its last character. The
    // count is of the text as it stands in the file, also where the buffer is full.
    void countEscapes(int32_t first, int32_t counted) {
        for (int32_t column = first; column < first + counted; ++column) {
            escapesBefore_ = escapes_;
            const bool escape = reader.IMPBUF[static_cast<std::size_t>(column - 1)] == '~';
            escapes_ = escape ? escapes_ + 1 : 0;
        }
    }

    CompressedLine work_;
    int64_t length_ = 0;
    int64_t escapes_ = 0;
    int64_t escapesBefore_ = 0;
};

void assembleLine(std::span<char> line) {
    EXPFLS();
    Assembly assembly;
    int32_t length = trimmedLength(reader.IMPBUF);
    const auto nextPhysicalLine = [&] {
        IMPCOM({reader.IMPBUF.data(), Line::kLength});
        length = trimmedLength(reader.IMPBUF);
        reader.IMPCOL = 1;
    };
    if (reader.IMPCOL > length) nextPhysicalLine();
    for (;;) {
        if (reader.IMPCOL > 80) nextPhysicalLine();
        const auto start = static_cast<std::size_t>(reader.IMPCOL - 1);
        const std::size_t found = reader.IMPBUF.full().find('}', start);
        if (found == std::string_view::npos) {
            // Blanks at the end of a physical line are no data: what comes next overwrites them.
            assembly.add(reader.IMPCOL, 80, std::max(length - reader.IMPCOL + 1, 0));
            nextPhysicalLine();
            continue;
        }
        const auto column = static_cast<int32_t>(found) + 1;
        assembly.add(reader.IMPCOL, column, column - reader.IMPCOL + 1);
        reader.IMPCOL = column + 1;
        if (assembly.ended()) break;
    }
    assembly.close();
    int32_t count = 0;
    DCMLIN(assembly.work(), line, count);
}

}  // namespace

void RDVER(const int32_t& channel) {
    reader.EXPCOL = 0;
    reader.IMPCOL = 81;
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
    const std::string_view text = first.view();
    reader.HASCR = !text.empty() && text.back() == kCarriageReturn;
}

std::size_t IMPCOM(std::span<char> line) {
    const std::string_view buffer(line.data(), line.size());
    int32_t count = 0;
    Status status = kSuccess;
    for (;;) {
        aread_(&reader.IMPUNT, line.data(), &count, &status, static_cast<int32_t>(line.size()));
        if (status != kEndOfFile) break;
        openNextVolume();
    }
    if (status != kSuccess) fatal("Could not import data (IMPCOM)");
    ++reader.lineNumber;
    auto length = static_cast<std::size_t>(count);
    if (reader.HASCR) {
        length = qx::trimText(buffer.substr(0, length)).size();
        if (length > 0 && line[length - 1] == kCarriageReturn) line[--length] = ' ';
    }
    return length;
}

void IMPLIN(std::span<char> line) {
    if (++reader.logicalLines % kLinesBetweenReports == 0) tellProgress();
    if (reader.EXPVER == 0) {
        IMPCOM(line);
    } else {
        assembleLine(line);
    }
}

bool volumeEnded() {
    if (reader.EXPVER != 0 && reader.IMPCOL <= trimmedLength(reader.IMPBUF)) return false;
    int32_t ended = 0;
    call(aatend_, reader.IMPUNT, ended);
    return ended != 0;
}

void rewindToStart() {
    Status status = kSuccess;
    if (reader.IMPNAM == reader.firstVolume) {
        call(arewnd_, reader.IMPUNT, status);
    } else {
        call(aclose_, reader.IMPUNT);
        reader.IMPNAM = reader.firstVolume;
        call(aopen_, reader.IMPUNT, reader.IMPNAM, status);
    }
    if (status != kSuccess) fatal("Could not open %1%", reader.IMPNAM);
    reader.lineNumber = 0;
}

}  // namespace intake
