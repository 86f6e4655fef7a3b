#include "app/intake/symbol_sets.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "host/cpp/call.h"
#include "host/qxbase.h"

namespace program {

namespace {

using qx::call;

constexpr int32_t kRead = 1;
constexpr int32_t kTrialRecords = 10;
constexpr int32_t kFontBytes = 80;
constexpr std::size_t kMostWords = 29;

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

using Words = std::array<int32_t, kMostWords>;

// The first ten records of a length, turned; false if the file ends inside one of them.
bool readFirstRecords(const std::string& path, int32_t recordBytes, std::vector<Words>& records) {
    int32_t file = 0;
    int32_t status = 0;
    call(iopen_, file, std::string_view(path), recordBytes, kRead, status);
    if (status != 0) return false;
    int32_t count = 0;
    call(icount_, file, count);
    int64_t size = 0;
    call(isize_, file, size);
    const bool whole = count >= kTrialRecords || size == int64_t{count} * recordBytes;
    for (int32_t number = 1; number <= std::min(count, kTrialRecords) && status == 0; ++number) {
        Words& words = records.emplace_back();
        call(iread_, file, static_cast<void*>(words.data()), recordBytes, number, status);
        call(swi4bn_, words, recordBytes / 4);
    }
    call(iclose_, file);
    return whole && status == 0;
}

bool dividesFile(const std::string& path, int32_t recordBytes) {
    int32_t file = 0;
    int32_t status = 0;
    call(iopen_, file, std::string_view(path), recordBytes, kRead, status);
    if (status != 0) return false;
    int64_t size = 0;
    call(isize_, file, size);
    call(iclose_, file);
    return size % recordBytes == 0;
}

bool isSymbolNumber(int32_t number) { return number >= 1 && number <= kHighestSymbol; }

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return text;
}

}  // namespace

int32_t findRecordBytes(const std::string& path, std::string_view kind) {
    for (const Length& length : kLengths) {
        if (length.kind != kind) continue;
        std::vector<Words> records;
        if (readFirstRecords(path, length.recordBytes, records) &&
            std::all_of(records.begin(), records.end(),
                        [](const Words& words) { return isSymbolNumber(words[0]); })) {
            return length.recordBytes;
        }
    }
    return 0;
}

int32_t findRecordBytesOfNamed(const std::string& path, std::string_view kind) {
    if (const int32_t found = findRecordBytes(path, kind); found != 0) return found;
    int32_t best = 0;
    std::ptrdiff_t most = -1;
    for (const Length& length : kLengths) {
        std::vector<Words> records;
        if (length.kind != kind || !dividesFile(path, length.recordBytes) ||
            !readFirstRecords(path, length.recordBytes, records)) {
            continue;
        }
        const std::ptrdiff_t numbers =
            std::count_if(records.begin(), records.end(),
                          [](const Words& words) { return isSymbolNumber(words[0]); });
        if (numbers > most) {
            most = numbers;
            best = length.recordBytes;
        }
    }
    return best;
}

std::vector<StraySymbol> straySymbols(const std::string& path, int32_t recordBytes) {
    std::vector<StraySymbol> strays;
    int32_t file = 0;
    int32_t status = 0;
    call(iopen_, file, std::string_view(path), recordBytes, kRead, status);
    if (status != 0) return strays;
    Words words{};
    for (int32_t record = 1;; ++record) {
        call(iread_, file, static_cast<void*>(words.data()), recordBytes, record, status);
        if (status != 0) break;
        call(swi4bn_, words[0], 1);
        if (!isSymbolNumber(words[0])) strays.push_back({record, words[0]});
    }
    call(iclose_, file);
    return strays;
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
    std::vector<Words> records;
    if (!readFirstRecords(path, kFontBytes, records) || records.empty()) return false;
    return std::all_of(records.begin(), records.end(), [](const Words& words) {
        return std::all_of(words.begin(), words.begin() + kFontBytes / 4, [](int32_t word) {
            const float magnitude = std::fabs(std::bit_cast<float>(word));
            return magnitude == 0 || (magnitude > 1e-6F && magnitude < 1e7F);
        });
    });
}

}  // namespace program
