// Lines and section headers out of a file in volumes, in both forms.
#include <sstream>
#include <string>
#include <vector>

#include "fuzz/scratch.h"
#include "host/qxbase.h"
#include "stream/reader.h"
#include "stream/section_header.h"

namespace {

using namespace intake;

const fuzz::Scratch& scratch() {
    static const fuzz::Scratch folder;
    return folder;
}

// The lines of a plain file as a text editor would see them, volume by volume.
std::vector<std::string> plainLines(int volumes) {
    std::vector<std::string> lines;
    for (int volume = 0; volume < volumes; ++volume) {
        std::istringstream text(fuzz::fileBytes(scratch().path("in.e0" + std::to_string(volume))));
        for (std::string line; std::getline(text, line);) lines.push_back(line);
    }
    return lines;
}

void readHeaders() {
    constexpr std::array<int32_t, 3> kCodes = {kOldest, kSingle, kDouble};
    int32_t hint = 0;
    IMPPRC(hint);
    for (;;) {
        int32_t number = 0;
        int32_t precision = 0;
        IMPHDR(number, kSingle, kCodes, precision);
    }
}

void readLines(std::string_view text, int volumes) {
    const bool comparable = reader.EXPVER == 0 && text.find('\r') == std::string_view::npos;
    const std::vector<std::string> expected = plainLines(volumes);
    for (std::size_t index = reader.NOHEAD == 1 ? 0 : 1;; ++index) {
        fuzz::require(index <= text.size() + 1, "no more lines than bytes");
        Line line;
        IMPLIN(line);
        if (!comparable) continue;
        fuzz::require(index < expected.size(), "no line that is not there");
        fuzz::require(line == Line(expected[index]), "a line as it stands in the file");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    const std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);
    mesink_([](int32_t, const char*, void*) {}, nullptr);
    scratch().clear();
    const int volumes = scratch().writeVolumes(text);
    baseinitC();
    reader = {};
    reader.IMPNAM = reader.firstVolume = Name(scratch().path("in.e00"));
    try {
        Status status = kSuccess;
        call(aopen_, reader.IMPUNT, reader.IMPNAM, status);
        fuzz::require(status == kSuccess, "a file that is there opens");
        RDVER(reader.IMPUNT);
        data[0] % 2 == 0 ? readLines(text, volumes) : readHeaders();
    } catch (...) {
        // The end of the last volume, as any other failure, ends the import.
    }
    baseendC();
    return 0;
}
