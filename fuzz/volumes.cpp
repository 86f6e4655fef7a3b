#include "fuzz/volumes.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "fuzz/scratch.h"
#include "host/qxbase.h"
#include "stream/reader.h"

namespace {

// What a failure throws.
struct Ended {};

// The volumes, of which the channel reads one. All of that is in the window.
struct Memory {
    std::array<std::string_view, fuzz::kMostVolumes> volumes;
    int count = 0;
    int current = 0;
    QxWindow window{};

    std::string_view volume() const { return volumes[static_cast<std::size_t>(current)]; }
    void rewind() { window = {volume().data(), volume().data() + volume().size()}; }
};
Memory memory;

// The number of a volume stands in the last digit of its name.
int volumeOf(std::string_view name) { return qx::trimText(name).back() - '0'; }

}  // namespace

// The channel operations that the reader uses, in front of those of the companion: a folder of
// files for each input would take a hundred times as long as the reader does. The words of a
// failure would take half of the rest.
extern "C" {

void meschr_(const char*, const int32_t*, int32_t) {}

void fatal_(const char*, const int32_t*, int32_t) { throw Ended{}; }

void aopen_(int32_t* channel, const char* name, int32_t* status, int32_t nameLength) {
    memory.current = volumeOf({name, static_cast<std::size_t>(nameLength)});
    *channel = 1;
    *status = memory.current < memory.count ? 0 : 1;
    if (*status == 0) memory.rewind();
}

void aclose_(const int32_t*) {}

void arewnd_(const int32_t*, int32_t* status) {
    memory.rewind();
    *status = 0;
}

void awindo_(const int32_t*, QxWindow** window) { *window = &memory.window; }

void aatend_(const int32_t*, int32_t* ended) {
    *ended = memory.window.next == memory.window.end ? 1 : 0;
}

void abytes_(const int32_t*, int64_t* bytes) {
    *bytes = memory.window.next - memory.volume().data();
}

void iename_(char* name, const int32_t*, int32_t* status, int32_t nameLength) {
    const std::string_view text = qx::trimText({name, static_cast<std::size_t>(nameLength)});
    const int next = volumeOf(text) + 1;
    name[text.size() - 1] = static_cast<char>('0' + next);
    *status = next < memory.count ? 0 : 1;
}

void aread_(const int32_t*, char* line, int32_t* count, int32_t* status, int32_t lineLength) {
    const auto length = static_cast<std::size_t>(lineLength);
    const std::string_view rest(memory.window.next, memory.window.end);
    const std::string_view text = rest.substr(0, rest.find('\n'));
    const std::size_t kept = std::min(text.size(), length);
    std::memcpy(line, text.data(), kept);
    std::memset(line + kept, ' ', length - kept);
    memory.window.next += std::min(text.size() + 1, rest.size());
    *count = static_cast<int32_t>(kept);
    *status = rest.empty() ? -1 : 0;
}
}

namespace fuzz {

using namespace intake;

void openVolumes(std::string_view text) {
    memory = {};
    for (bool more = true; more;) {
        const std::size_t end =
            memory.count + 1 < kMostVolumes ? text.find('\f') : std::string_view::npos;
        memory.volumes[static_cast<std::size_t>(memory.count++)] = text.substr(0, end);
        more = end != std::string_view::npos;
        if (more) text.remove_prefix(end + 1);
    }
    mesink_([](int32_t, const char*, void*) {}, nullptr);
    reader = {};
    reader.IMPNAM = reader.firstVolume = Name("in.e00");
    Status status = kSuccess;
    call(aopen_, reader.IMPUNT, reader.IMPNAM, status);
    RDVER(reader.IMPUNT);
}

bool isPlain(std::string_view text) {
    return reader.EXPVER == 0 && text.find('\r') == std::string_view::npos;
}

void PlainLines::startVolume() {
    const std::size_t end = ++volumes_ < kMostVolumes ? rest_.find('\f') : std::string_view::npos;
    volume_ = rest_.substr(0, end);
    more_ = end != std::string_view::npos;
    rest_.remove_prefix(more_ ? end + 1 : rest_.size());
}

bool PlainLines::next(std::string_view& line) {
    while (volume_.empty()) {
        if (!more_) return false;
        startVolume();
    }
    const std::size_t end = std::min(volume_.find('\n'), volume_.size());
    line = volume_.substr(0, end);
    volume_.remove_prefix(std::min(end + 1, volume_.size()));
    return true;
}

}  // namespace fuzz
