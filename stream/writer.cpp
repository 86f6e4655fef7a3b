#include <array>
#include <cstdio>
#include <cstring>

#include "host/qxbase.h"
#include "stream/compressed.h"
#include "stream/reader_state.h"
#include "stream/report.h"

namespace intake {

namespace {

// The header line: "EXP", the version, a blank, the file's name, nine blanks.
void WRVER() {
    ++reader.VOLCNT;
    char version[16];
    std::snprintf(version, sizeof version, "%3d", static_cast<int>(reader.EXPVER));
    Line header;
    std::memcpy(header.data(), "EXP", 3);
    std::memcpy(header.data() + 3, version, 3);
    std::memcpy(header.data() + 7, reader.IMPNAM.data(), 64);
    Status status = kSuccess;
    // The header line keeps its blanks.
    call(aput_, reader.IMPUNT, header, status);
    call(awrite_, reader.IMPUNT, "", status);
}

void createVolume(std::string_view failure) {
    Status status = kSuccess;
    call(acreat_, reader.IMPUNT, reader.IMPNAM, status);
    if (status != kSuccess) fatal(failure, reader.IMPNAM);
    ++reader.volumesMade;
}

void closeVolume() {
    Status status = kSuccess;
    call(aflush_, reader.IMPUNT, status);
    call(aclose_, reader.IMPUNT);
    if (status != kSuccess) fatal("Could not export data (EXPCOM)");
}

void beginVolume() {
    if (reader.volumesMade == 0) {
        createVolume("Error Creating %1%");
        WRVER();
        return;
    }
    Status status = kSuccess;
    call(iename_, reader.IMPNAM, 1, status);
    if (status != kSuccess) fatal("ERROR: Next volume %1% already exists.", reader.IMPNAM);
    closeVolume();
    createVolume("Error creating volume %1%");
    inform("Creating next volume: %1%", reader.IMPNAM);
}

std::size_t trimmedLength(const Line& line) { return line.view().size(); }

}  // namespace

void EXPCOM(std::span<const char> line) {
    if (reader.onlyCounts) {
        ++reader.linesCounted;
        return;
    }
    if (reader.VOLCNT == 1) {
        beginVolume();
    } else if (reader.VOLCNT >= reader.VOLMAX && reader.VOLMAX > 0) {
        reader.VOLCNT = 0;  // this line is the last of its volume
    }
    Status status = kSuccess;
    awrite_(&reader.IMPUNT, line.data(), &status, static_cast<int32_t>(line.size()));
    if (status != kSuccess) fatal("Could not export data (EXPCOM)");
    ++reader.VOLCNT;
}

void EXPFLS() {
    if (reader.EXPCOL > 0) EXPCOM({reader.IMPBUF.data(), Line::kLength});
    reader.EXPCOL = 0;
}

void finishExport() {
    EXPFLS();
    if (!reader.onlyCounts) closeVolume();
}

void EXPLIN(std::span<const char> line) {
    if (reader.EXPCMP == 0) {
        EXPCOM(line);
        reader.EXPCOL = 0;
        return;
    }
    // What is in the physical line already, this line behind it, and its end mark.
    std::array<char, Line::kLength + kCompressedLength + 2> text;
    const auto filled = static_cast<std::size_t>(reader.EXPCOL);
    std::memcpy(text.data(), reader.IMPBUF.data(), filled);
    std::size_t left = filled + CMPLIN(line, reader.EXPCMP,
                                       std::span<char, kCompressedLength>(text.data() + filled,
                                                                          kCompressedLength));
    std::memcpy(text.data() + left, "~}", 2);
    left += 2;
    const char* start = text.data();
    while (left > Line::kLength) {
        reader.IMPBUF.assign({start, Line::kLength});
        EXPCOM({reader.IMPBUF.data(), Line::kLength});
        // Blanks at the end of a physical line come again at the start of the next one.
        const std::size_t written = trimmedLength(reader.IMPBUF);
        start += written;
        left -= written;
    }
    reader.IMPBUF.assign({start, left});
    reader.EXPCOL = static_cast<int32_t>(left);
}

}  // namespace intake
