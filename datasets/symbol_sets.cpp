#include "datasets/symbol_sets.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "host/cpp/call.h"
#include "host/qxbase.h"

namespace datasets {

namespace {

using qx::call;

constexpr int32_t kRead = 1;
constexpr int32_t kTrialRecords = 10;

struct Length {
    std::string_view kind;
    int32_t recordBytes;
    std::string_view words;  // "4i4rn1i": counts and kinds; empty where they are not known
};

// In the order of the trial.
constexpr Length kLengths[] = {
    {"Lineset File", 52, "4i4r1n1i"},
    {"Lineset File", 60, ""},
    {"Lineset File", 68, ""},
    {"Lineset File", 80, "6i4r1n1i3r2i"},
    {"Lineset File", 92, "6i4r1n1i3r2i3r"},
    {"Markerset File", 28, "5i2r"},
    {"Markerset File", 36, ""},
    {"Markerset File", 44, ""},
    {"Markerset File", 56, "7i5r2i"},
    {"Markerset File", 60, ""},
    {"Markerset File", 80, "7i6r3i1r3i"},
    {"Shadeset File", 52, "6i7r"},
    {"Shadeset File", 68, "9i8r"},
    {"Shadeset File", 76, "9i10r"},
    {"Shadeset File", 88, "9i11r2i"},
    {"Shadeset File", 116, "9i11r5i1n"},
    {"Textset File", 44, "5i6r"},
    {"Textset File", 52, "7i6r"},
    {"Textset File", 64, "7i7r2i"},
    {"Textset File", 84, "7i7r3i1r3i"},
    {"Textset File", 88, "7i7r3i1r4i"},
};

// Whether the first ten records of a length all pass; not if the file ends inside one of them.
bool firstRecords(const std::string& path, int32_t recordBytes, auto passes) {
    WordRecords records(path, recordBytes);
    const int32_t count = std::min(records.count(), kTrialRecords);
    bool passed = records && (count == kTrialRecords ||
                              records.fileBytes() == int64_t{records.count()} * recordBytes);
    int32_t read = 0;
    for (; passed && read < count && records.next(); ++read) passed = passes(records.current());
    return passed && read == count;
}

bool beginsWithSymbol(const WordRecord& record) {
    return record.words[0] >= 1 && record.words[0] <= kHighestSymbol;
}

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return text;
}

}  // namespace

int32_t findRecordBytes(const std::string& path, std::string_view kind) {
    for (const Length& length : kLengths) {
        if (length.kind == kind && firstRecords(path, length.recordBytes, beginsWithSymbol)) {
            return length.recordBytes;
        }
    }
    return 0;
}

int32_t findRecordBytesOfNamed(const std::string& path, std::string_view kind) {
    if (const int32_t found = findRecordBytes(path, kind); found != 0) return found;
    int32_t best = 0;
    int32_t most = -1;
    for (const Length& length : kLengths) {
        if (length.kind != kind) continue;
        const WordRecords records(path, length.recordBytes);
        int32_t numbers = 0;
        const auto counts = [&](const WordRecord& record) {
            numbers += beginsWithSymbol(record) ? 1 : 0;
            return true;
        };
        if (records && records.fileBytes() % length.recordBytes == 0 &&
            firstRecords(path, length.recordBytes, counts) && numbers > most) {
            most = numbers;
            best = length.recordBytes;
        }
    }
    return best;
}

PlainCursor::PlainCursor(std::string_view path, int32_t recordBytes)
    : handle_(Handle<iclose_>::opened(iopen_, path, recordBytes, kRead)),
      words_(static_cast<std::size_t>(recordBytes) / 4) {}

int32_t PlainCursor::count() const {
    int32_t count = 0;
    call(icount_, handle_.number(), count);
    return count;
}

int64_t PlainCursor::fileBytes() const {
    int64_t bytes = 0;
    call(isize_, handle_.number(), bytes);
    return bytes;
}

bool PlainCursor::next() {
    const auto count = static_cast<int32_t>(words_.size());
    int32_t status = 0;
    record_ = {record_.number + 1, words_};
    call(iread_, handle_.number(), static_cast<void*>(words_.data()), count * 4, record_.number,
         status);
    call(swi4bn_, words_, count);
    return status == 0;
}

std::string WordRecord::name(std::size_t index) const {
    std::array<int32_t, kNameWords> turned;
    std::copy_n(words.begin() + static_cast<std::ptrdiff_t>(index), kNameWords, turned.begin());
    call(swi4nb_, turned, static_cast<int32_t>(kNameWords));
    return {reinterpret_cast<const char*>(turned.data()), sizeof turned};
}

std::vector<StraySymbol> straySymbols(const std::string& path, const SetLayout& layout) {
    std::vector<StraySymbol> strays;
    for (const WordRecord& record : symbols(path, layout)) {
        if (!beginsWithSymbol(record)) strays.push_back({record.number, record.words[0]});
    }
    return strays;
}

SetLayout layoutOfSet(const std::string& path, std::string_view kind) {
    return layoutOf(kind, findRecordBytesOfNamed(path, kind));
}

SetLayout layoutOf(std::string_view kind, int32_t recordBytes) {
    SetLayout layout{recordBytes, {}};
    for (const Length& length : kLengths) {
        if (length.kind != kind || length.recordBytes != recordBytes) continue;
        int count = 0;
        for (const char character : length.words) {
            if (character >= '0' && character <= '9') {
                count = count * 10 + (character - '0');
            } else {
                layout.words.push_back({character, count});
                count = 0;
            }
        }
    }
    if (layout.words.empty()) layout.words.push_back({'i', recordBytes / 4});
    return layout;
}

std::string fontFile(const std::string& path) {
    qx::Name directory;
    qx::Name name;
    qx::Name file;
    call(edir_, std::string_view(path), directory);
    call(ename_, std::string_view(path), name);
    const std::string lower = lowerCase(std::string(name.view()));
    call(ejoin_, directory, std::string_view(lower), file);
    for (const std::string& each : {path, std::string(file.view())}) {
        int32_t status = 0;
        call(iexist_, std::string_view(each), status);
        if (status == 0) return each;
    }
    return {};
}

bool looksLikeFont(const std::string& path) {
    return fontRecords(path).count() != 0 &&
           firstRecords(path, kFontReals * 4, [](const WordRecord& record) {
               return std::all_of(record.words.begin(), record.words.end(), [](int32_t word) {
                   const float magnitude = std::fabs(std::bit_cast<float>(word));
                   return magnitude == 0 || (magnitude > 1e-6F && magnitude < 1e7F);
               });
           });
}

}  // namespace datasets
