// Damaged datasets under the readers: the seeds of the import are imported once, each into a
// workspace of its own; an input chooses one of them, what reads it, and changes to its files.
#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <ostream>
#include <set>
#include <stdexcept>
#include <vector>

#include "app/intake/draw/draw.h"
#include "app/intake/dump/dump.h"
#include "app/intake/export/export.h"
#include "app/intake/show/show.h"
#include "app/intake/show/within.h"
#include "fuzz/by_number.h"
#include "fuzz/scratch.h"
#include "host/qxbase.h"
#include "intakedl.h"

namespace {

namespace fs = std::filesystem;

struct StoredFile {
    std::string name;  // relative to the scratch folder
    std::string bytes;
};

struct StoredDataset {
    std::string path;
    std::vector<StoredFile> files;
};

const fuzz::Scratch& scratch() {
    static const fuzz::Scratch folder;
    return folder;
}

StoredDataset storedBy(const fs::path& seed) {
    const fs::path workspace = scratch().root() / seed.stem();
    fs::create_directory(workspace);
    StoredDataset dataset{(workspace / "DS").string(), {}};
    ImportFile(seed.c_str(), dataset.path.c_str(), 1);
    for (const auto& entry : fs::recursive_directory_iterator(workspace)) {
        if (!entry.is_regular_file()) continue;
        dataset.files.push_back(
            {fs::relative(entry.path(), scratch().root()).string(), fuzz::fileBytes(entry.path())});
    }
    // The order of a folder's entries is the file system's, an input's meaning is not.
    std::sort(
        dataset.files.begin(), dataset.files.end(),
        [](const StoredFile& left, const StoredFile& right) { return left.name < right.name; });
    return dataset;
}

// A number that a name keeps, so that an input means the same dataset when there are more of them.
uint16_t numberOf(std::string_view name) {
    uint32_t number = 2166136261;
    for (const char character : name)
        number = (number ^ static_cast<uint8_t>(character)) * 16777619;
    return static_cast<uint16_t>(number >> 16 ^ number);
}

using Datasets = std::map<uint16_t, StoredDataset>;

const Datasets& imported() {
    static const Datasets all = [] {
        mesink_([](int32_t, const char*, void*) {}, nullptr);
        std::set<fs::path> seeds;
        for (const auto& entry : fs::directory_iterator(INTAKE_SEEDS)) {
            // The compressed forms store what the plain ones do.
            const bool plain = entry.path().string().find("_level") == std::string::npos;
            if (plain) seeds.insert(entry.path());
        }
        Datasets result;
        for (const fs::path& seed : seeds) {
            StoredDataset dataset = storedBy(seed);
            if (!dataset.files.empty()) result[numberOf(seed.stem().string())] = dataset;
        }
        fuzz::require(!result.empty(), "there are seeds to import");
        return result;
    }();
    return all;
}

constexpr std::size_t kStep = 6;

// A change is six bytes: which file, what to do, where (24 bits), and a byte.
void change(const StoredFile& file, const uint8_t* step) {
    std::string bytes = fuzz::fileBytes(scratch().root() / file.name);
    const std::size_t wish = static_cast<std::size_t>(step[2] << 16 | step[3] << 8 | step[4]);
    const std::size_t place = bytes.empty() ? 0 : wish % bytes.size();
    const char value = static_cast<char>(step[5]);
    switch (step[1] % 6) {
        case 0:
            bytes.resize(place);
            break;
        case 1:
            bytes.insert(place, 1, value);
            break;
        case 2:  // a word of one byte's kind: counts and lengths
            for (std::size_t index = place; index < std::min(place + 4, bytes.size()); ++index) {
                bytes[index] = value;
            }
            break;
        case 3:
            scratch().remove(file.name);
            return;
        default:
            if (!bytes.empty()) bytes[place] = value;
    }
    scratch().write(file.name, bytes);
}

uintmax_t bytesIn(const fs::path& path) {
    uintmax_t bytes = 0;
    if (fs::is_regular_file(path)) return fs::file_size(path);
    if (!fs::is_directory(path)) return 0;
    for (const auto& entry : fs::recursive_directory_iterator(path)) {
        if (entry.is_regular_file()) bytes += entry.file_size();
    }
    return bytes;
}

// What comes out is not without end (docs/export.md). A byte of a dataset comes to some dozens of a
// text, once in the layer of its own and once in its table, and again in each column that names it
// once more; the vertices of arcs come again for each area, up to bounds.
uintmax_t mostExported(const std::string& dataset) {
    constexpr uintmax_t kVertex = 64;  // two reals as text
    constexpr uintmax_t kFree = 1'000'000, kPerByte = 100, kFixed = 1 << 20;
    constexpr uintmax_t kArcVertexBytes = 8;  // at least, as it is stored
    uintmax_t times = 16, areaLayers = 1;
    for (const auto& entry : fs::directory_iterator(dataset)) {
        const std::string name = entry.path().filename().string();
        const bool regions = name.starts_with("rpl.") && !name.starts_with("rpl.idx");
        times += regions ? 1000 : 0;
        areaLayers += regions;
    }
    const uintmax_t arcs = bytesIn(fs::path(dataset) / "arc") / kArcVertexBytes;
    const uintmax_t stored = bytesIn(fs::path(dataset).parent_path());
    return kFixed + kPerByte * stored + stored * stored / 16 +
           kVertex * (arcs * times + kFree * areaLayers);
}

void exportTo(const std::string& format, const std::string& path, const std::string& kind) {
    std::ostream nowhere(nullptr);
    program::Console console{nowhere, nowhere, false};
    program::ExportOptions options;
    options.dataset = path;
    options.kind = kind;
    options.format = format;
    options.output = scratch().path("export");
    options.replace = true;
    options.asIs = true;
    options.wellKnownText = true;
    program::exportDataset(options, console);
    fuzz::require(bytesIn(options.output) <= mostExported(path), "an export is bounded");
    fs::remove_all(options.output);
}

constexpr int kFirstExport = 5;
constexpr std::array kExports = {"geopackage", "geojson", "csv", "geotiff", "ply", "glb"};

void read(const std::string& path, const std::string& kind, int reader) {
    std::ostream nowhere(nullptr);
    if (reader >= kFirstExport) {
        return exportTo(kExports[static_cast<std::size_t>(reader - kFirstExport)], path, kind);
    }
    switch (reader) {
        case 0:
            program::print(program::describe(path, kind), nowhere);
            break;
        case 1:
            program::draw({.dataset = path,
                           .kind = kind,
                           .picture = scratch().path("picture.svg"),
                           .colourBy = {}});
            break;
        case 2:
            program::print(program::describeWithin(path, kind, "-30,-60,40.5,1e9"), nowhere);
            break;
        default:
            program::DumpOptions options;
            options.kind = kind;
            program::dump(path, options, nowhere);
            if (reader == 4) fuzz::readByNumber(path);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    constexpr std::size_t kChoice = 3;
    if (size < kChoice) return 0;
    auto chosen = imported().lower_bound(static_cast<uint16_t>(data[0] << 8 | data[1]));
    if (chosen == imported().end()) chosen = imported().begin();
    const StoredDataset& dataset = chosen->second;
    std::set<const StoredFile*> changed;
    for (std::size_t at = kChoice; at + kStep <= size; at += kStep) {
        const StoredFile& file = dataset.files[data[at] % dataset.files.size()];
        change(file, data + at);
        changed.insert(&file);
    }
    std::vector<std::string> kinds;
    try {
        kinds = datasets::kindsOf(dataset.path);
    } catch (const std::runtime_error&) {}
    for (const std::string& kind : kinds) {
        try {
            read(dataset.path, kind,
                 data[2] < 200 ? data[2] % kFirstExport
                               : kFirstExport + data[2] % static_cast<int>(kExports.size()));
        } catch (const std::runtime_error&) {
            // What it says is for a user.
        }
    }
    for (const StoredFile* file : changed) scratch().write(file->name, file->bytes);
    return 0;
}
