#include "datasets/workspace.h"

#include <algorithm>

#include "datasets/coverage.h"
#include "datasets/plots.h"
#include "datasets/rasters.h"
#include "datasets/side_texts.h"
#include "datasets/stacks.h"
#include "datasets/surfaces.h"
#include "datasets/symbol_sets.h"
#include "datasets/tables.h"
#include "host/cpp/call.h"
#include "host/qxbase.h"

namespace datasets {

using qx::call;

namespace {

bool isCoverage(const std::string& path) { return precisionOf(path) != Precision::none; }
bool isSurface(const std::string& path) { return bool(Surface(path)); }
template <QxRasterKind kind>
bool isRaster(const std::string& path) {
    return bool(Raster(path, kind));
}

// A table has no file of its own name.
bool isTable(const std::string& path) {
    int32_t status = 0;
    call(aexist_, std::string_view(path), status);
    return status != 0 && table(path);
}

bool isPlainFile(const std::string& path) { return bool(linesOf(path)); }

// Whether the front of a file is lines of text, in whatever encoding, or nothing at all.
bool looksLikeText(const std::string& path) {
    constexpr int32_t kLines = 100;
    const auto channel = Handle<aclose_>::opened(aopen_, std::string_view(path));
    for (int32_t number = 0; channel && number < kLines; ++number) {
        // The front of a line is enough.
        qx::FixedText<300> line;
        int32_t count = 0;
        int32_t status = 0;
        call(aread_, channel.number(), line, count, status);
        if (status != 0) break;
        const std::string_view characters = line.view();
        if (std::any_of(characters.begin(), characters.end(), [](char character) {
                const auto code = static_cast<unsigned char>(character);
                return code < 32 && character != '\t' && character != '\r' && character != '\f';
            })) {
            return false;
        }
    }
    return bool(channel);
}

struct Recognizer {
    const char* kind;
    bool (*fits)(const std::string& path);
};

// One line a kind. Kinds that say what they are come first; the first of those that fits decides.
constexpr Recognizer kCertain[] = {
    {"Coverage", isCoverage},
    {"TIN", isSurface},
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

std::string joined(const std::string& folder, std::string_view name) {
    qx::Name path;
    call(ejoin_, std::string_view(folder), name, path);
    return std::string(path.view());
}

std::string lastName(const std::string& path) {
    qx::Name name;
    call(ename_, std::string_view(path), name);
    return std::string(name.view());
}

}  // namespace

std::vector<std::string> kindsOf(const std::string& path) {
    int32_t status = 0;
    call(aexist_, std::string_view(path), status);
    if (status != 0) {
        // A table has nothing under its own name, nor has a font.
        if (isTable(path)) return {"Info Datafile"};
        return isFont(path) ? std::vector<std::string>{"Font File"} : std::vector<std::string>();
    }
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

std::optional<std::vector<std::string>> namesIn(const std::string& folder) {
    const auto directory = Handle<dclose_>::opened(dopen_, std::string_view(folder));
    if (!directory) return std::nullopt;
    std::vector<std::string> names;
    for (int32_t status = 0;;) {
        qx::Name name;
        call(dread_, directory.number(), name, status);
        if (status != 0) return names;
        names.emplace_back(name.view());
    }
}

std::vector<Stored> datasetsIn(const std::string& workspace) {
    std::vector<Stored> found;
    for (std::string& name : namesIn(workspace).value_or(std::vector<std::string>())) {
        std::string path = joined(workspace, name);
        std::vector<std::string> kinds =
            name == "info" ? std::vector<std::string>() : kindsOf(path);
        if (!kinds.empty()) found.push_back({std::move(path), std::move(name), std::move(kinds)});
    }
    return found;
}

}  // namespace datasets
