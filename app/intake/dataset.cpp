#include "app/intake/dataset.h"

#include <algorithm>
#include <stdexcept>

#include "app/intake/dump/tables.h"
#include "app/intake/plots.h"
#include "app/intake/symbol_sets.h"
#include "host/cpp/call.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "host/qxgridio.h"

namespace program {

namespace {

bool isCoverage(const std::string& path) {
    int32_t type = 0;
    qx::call(ctype_, std::string_view(path), type);
    return type != 0;
}

bool isTin(const std::string& path) {
    int32_t surface = 0;
    int32_t status = 0;
    qx::call(tinopn_, surface, std::string_view(path), status);
    if (status != 0) return false;
    qx::call(tincls_, surface);
    return true;
}

template <int32_t kind>
bool isRaster(const std::string& path) {
    int32_t raster = 0;
    int32_t status = 0;
    qx::call(rasopn_, raster, std::string_view(path), kind, status);
    if (status == 0) qx::call(rascls_, raster);
    return status == 0;
}

bool isStack(const std::string& path) {
    int32_t count = 0;
    int32_t status = 0;
    qx::call(saknly_, std::string_view(path), count, status);
    return status == 0;
}

// A table has no file of its own name.
bool isTable(const std::string& path) {
    int32_t status = 0;
    qx::call(aexist_, std::string_view(path), status);
    if (status == 0) return false;
    const TablePlace place = placeOfTable(path);
    int32_t table = 0;
    int32_t records = 0;
    int32_t bytes = 0;
    qx::call(infopn_, place.name, place.directory, "", 1, table, records, bytes, status);
    if (status != 0) return false;
    qx::call(infcls_, table);
    return true;
}

bool isPlainFile(const std::string& path) {
    int32_t channel = 0;
    int32_t status = 0;
    qx::call(aopen_, channel, std::string_view(path), status);
    if (status != 0) return false;
    qx::call(aclose_, channel);
    return true;
}

// Whether the front of a file is lines of text, in whatever encoding, or nothing at all.
bool looksLikeText(const std::string& path) {
    constexpr int32_t kLines = 100;
    int32_t channel = 0;
    int32_t status = 0;
    qx::call(aopen_, channel, std::string_view(path), status);
    if (status != 0) return false;
    bool text = true;
    for (int32_t number = 0; text && number < kLines; ++number) {
        qx::FixedText<300> line;
        int32_t count = 0;
        qx::call(aread_, channel, line, count, status);
        if (status != 0) break;
        const std::string_view characters = line.view();
        text = std::none_of(characters.begin(), characters.end(), [](char character) {
            const auto code = static_cast<unsigned char>(character);
            return code < 32 && character != '\t' && character != '\r' && character != '\f';
        });
    }
    qx::call(aclose_, channel);
    return text;
}

struct Recognizer {
    const char* kind;
    bool (*fits)(const std::string& path);
};

// One line a kind. Kinds that say what they are come first; the first of those that fits decides.
constexpr Recognizer kCertain[] = {
    {"Coverage", isCoverage},
    {"TIN", isTin},
    {"Lattice", isRaster<QX_LATTICE>},
    {"Grid", isRaster<QX_GRID>},
    {"Stack", isStack},
    {"Info Datafile", isTable},
    {"Plot File", isPlot},
    // A directory that is nothing else and holds plot files alone.
    {"Map", isMap},
};

template <const char* kind>
bool isSymbolSet(const std::string& path) {
    return findRecordBytes(path, kind) != 0;
}
template <const char* kind>
bool mayBeSymbolSet(const std::string& path) {
    return findRecordBytesOfNamed(path, kind) != 0;
}
bool isFont(const std::string& path) {
    const std::string file = fontFile(path);
    return !file.empty() && !looksLikeText(file) && looksLikeFont(file);
}
bool mayBeFont(const std::string& path) { return !fontFile(path).empty(); }

constexpr char kLines[] = "Lineset File";
constexpr char kMarkers[] = "Markerset File";
constexpr char kShades[] = "Shadeset File";
constexpr char kTexts[] = "Textset File";

// Files that do not say what they are. Each may fit several; one that the user names has a wider
// test than one that is guessed.
struct Guess {
    const char* kind;
    bool (*fits)(const std::string& path);
    bool (*mayBe)(const std::string& path);
};
constexpr Guess kGuesses[] = {
    {kLines, isSymbolSet<kLines>, mayBeSymbolSet<kLines>},
    {kMarkers, isSymbolSet<kMarkers>, mayBeSymbolSet<kMarkers>},
    {kShades, isSymbolSet<kShades>, mayBeSymbolSet<kShades>},
    {kTexts, isSymbolSet<kTexts>, mayBeSymbolSet<kTexts>},
    {"Font File", isFont, mayBeFont},
    {"Text File", looksLikeText, isPlainFile},
};

std::string lastName(const std::string& path) {
    qx::Name name;
    qx::call(ename_, std::string_view(path), name);
    return std::string(name.view());
}

}  // namespace

std::vector<std::string> kindsOf(const std::string& path) {
    for (const Recognizer& each : kCertain) {
        if (each.fits(path)) return {each.kind};
    }
    std::vector<std::string> kinds;
    for (const Guess& each : kGuesses) {
        if (each.fits(path)) kinds.emplace_back(each.kind);
    }
    return kinds;
}

Dataset findDataset(const std::string& path, const std::string& kind) {
    for (const Guess& each : kGuesses) {
        if (kind == each.kind && each.mayBe(path)) return {path, lastName(path), kind};
    }
    const std::vector<std::string> kinds = kindsOf(path);
    if (kinds.empty()) throw NoDataset(path + ": no dataset of this name");
    if (!kind.empty()) {
        if (std::find(kinds.begin(), kinds.end(), kind) == kinds.end()) {
            throw NoDataset(path + ": no " + kind);
        }
        return {path, lastName(path), kind};
    }
    if (kinds.size() > 1) {
        std::string text = path + ": may be a";
        for (const std::string& each : kinds) text += (each == kinds.front() ? " " : ", ") + each;
        throw std::runtime_error(text + "; say which with --kind");
    }
    return {path, lastName(path), kinds.front()};
}

}  // namespace program
