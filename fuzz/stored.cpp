// Damaged datasets: the seeds of the import are imported once, then each input is a list of changes
// to the stored files of one of them, which is dumped.
#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <vector>

#include "app/intake/dump/dump.h"
#include "fuzz/scratch.h"
#include "host/qxbase.h"
#include "intakedl.h"

namespace {

namespace fs = std::filesystem;

struct StoredFile {
    std::string name;  // relative to the workspace
    std::string bytes;
};

struct StoredDataset {
    std::vector<fs::path> folders;
    std::vector<StoredFile> files;
};

const fuzz::Scratch& scratch() {
    static const fuzz::Scratch folder;
    return folder;
}

StoredDataset storedBy(const fs::path& seed) {
    scratch().clear();
    ImportFile(seed.c_str(), scratch().path("DS").c_str(), 1);
    StoredDataset dataset;
    for (const auto& entry : fs::recursive_directory_iterator(scratch().root())) {
        const fs::path name = fs::relative(entry.path(), scratch().root());
        if (entry.is_directory()) dataset.folders.push_back(name);
        if (entry.is_regular_file()) {
            dataset.files.push_back({name.string(), fuzz::fileBytes(entry.path())});
        }
    }
    // The order of a folder's entries is the file system's, an input's meaning is not.
    std::sort(
        dataset.files.begin(), dataset.files.end(),
        [](const StoredFile& left, const StoredFile& right) { return left.name < right.name; });
    return dataset;
}

const std::vector<StoredDataset>& datasets() {
    static const std::vector<StoredDataset> all = [] {
        mesink_([](int32_t, const char*, void*) {}, nullptr);
        std::vector<fs::path> seeds;
        for (const auto& entry : fs::directory_iterator(INTAKE_SEEDS))
            seeds.push_back(entry.path());
        std::sort(seeds.begin(), seeds.end());
        std::vector<StoredDataset> result;
        for (const fs::path& seed : seeds) result.push_back(storedBy(seed));
        std::erase_if(result, [](const StoredDataset& dataset) { return dataset.files.empty(); });
        fuzz::require(!result.empty(), "there are seeds to import");
        return result;
    }();
    return all;
}

// A change is six bytes: which file, what to do, where (24 bits), and a byte.
void change(StoredFile& file, const uint8_t* step) {
    std::string& bytes = file.bytes;
    const std::size_t wish = static_cast<std::size_t>(step[2] << 16 | step[3] << 8 | step[4]);
    const std::size_t place = bytes.empty() ? 0 : wish % bytes.size();
    const char value = static_cast<char>(step[5]);
    switch (step[1] % 5) {
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
        default:
            if (!bytes.empty()) bytes[place] = value;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    constexpr std::size_t kStep = 6;
    if (size < 1 + kStep) return 0;
    StoredDataset dataset = datasets()[data[0] % datasets().size()];
    for (std::size_t at = 1; at + kStep <= size; at += kStep) {
        change(dataset.files[data[at] % dataset.files.size()], data + at);
    }
    scratch().clear();
    for (const fs::path& folder : dataset.folders)
        fs::create_directories(scratch().root() / folder);
    for (const StoredFile& file : dataset.files) scratch().write(file.name, file.bytes);
    const std::string path = scratch().path("DS");
    std::ostream nowhere(nullptr);
    try {
        for (const std::string& kind : program::kindsOf(path)) {
            try {
                program::DumpOptions options;
                options.kind = kind;
                program::dump(path, options, nowhere);
            } catch (const std::runtime_error&) {}
        }
    } catch (const std::runtime_error&) {}
    return 0;
}
