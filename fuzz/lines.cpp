// Logical lines out of a file in volumes, in both forms.
#include "fuzz/scratch.h"
#include "fuzz/volumes.h"
#include "stream/reader.h"

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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        fuzz::openVolumes(text);
        readLines(text);
    } catch (...) {
        // The end of the last volume, as any other failure, ends the import.
    }
    return 0;
}
