// A whole import into a workspace of its own, and a look at what it stored.
#include <ostream>
#include <stdexcept>

#include "app/intake/dump/dump.h"
#include "fuzz/scratch.h"
#include "host/qxbase.h"
#include "intakedl.h"

namespace {

const fuzz::Scratch& scratch() {
    static const fuzz::Scratch folder;
    return folder;
}

// Everything that was stored can be read, under each kind that it may be.
void dumpAll(const std::string& path) {
    std::ostream nowhere(nullptr);
    for (const std::string& kind : datasets::kindsOf(path)) {
        try {
            program::DumpOptions options;
            options.kind = kind;
            program::dump(path, options, nowhere);
        } catch (const std::runtime_error&) {
            // What it says is for a user.
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    fuzz::lastImport = {};
    mesink_([](int32_t level, const char*,
               void*) { fuzz::lastImport.worst = std::max(fuzz::lastImport.worst, level); },
            nullptr);
    scratch().clear();
    const int volumes = scratch().writeVolumes({reinterpret_cast<const char*>(data), size});
    std::filesystem::create_directory(scratch().path("workspace"));
    const std::string dataset = scratch().path("workspace/DS");
    const int32_t result = ImportFile(scratch().path("in.e00").c_str(), dataset.c_str(), 1);
    fuzz::lastImport.result = result;
    fuzz::require(result == 1 || fuzz::lastImport.worst >= QX_ERROR,
                  "an import that failed said why");
    const auto entries = std::filesystem::directory_iterator(scratch().root());
    fuzz::require(std::distance(begin(entries), end(entries)) == volumes + 1,
                  "nothing is written beside the workspace");
    // What dumps find in stored files is another target's; here it must hold for what an import
    // wrote.
    if (size % 4 == 0) dumpAll(dataset);
    return 0;
}
