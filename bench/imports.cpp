// A whole import to a workspace on disk, beside a plain reader of the same lines.
#include <fstream>

#include "bench/generator.h"
#include "bench/measure.h"
#include "bench/plain_reader.h"
#include "bench/workspace.h"
#include "host/qxbase.h"
#include "stream/compressed.h"
#include "stream/reader_state.h"

namespace bench {

namespace {

// The file in the compressed form, made by the writer of the stream.
void compress(const std::string& text, const fs::path& path) {
    using namespace intake;
    baseinitC();
    reader = {};
    reader.IMPNAM = Name(path.string());
    reader.EXPCMP = 2;
    reader.EXPVER = 1;
    std::size_t start = text.find('\n') + 1;
    for (std::size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
        EXPLIN({text.data() + start, end - start});
    }
    EXPFLS();
    baseendC();
}

// One kind in one form: checked once, then timed.
void compare(const Kind& kind, bool compressed) {
    const std::string what = std::string("import/") + kind.name + (compressed ? "_compressed" : "");
    const fs::path plain = folder() / (std::string(kind.name) + ".e00");
    const fs::path packed = folder() / (std::string(kind.name) + "_packed.e00");
    const std::size_t wish = importBytes();
    // Made when it is first asked for, so that a filter does not wait for the others.
    const auto prepare = [=, &kind] {
        if (fs::exists(compressed ? packed : plain)) return;
        const std::string text = generate(kind, wish);
        std::ofstream(plain, std::ios::binary) << text;
        if (compressed) compress(text, packed);
        clearWorkspace();
        import(compressed ? packed : plain);
        require(storedBytes() > text.size() / 20, "the records are stored");
        require(readPlainly(plain, kind, folder() / "plain") > 0, "the plain reader finds records");
    };
    Comparison comparison(what, wish);
    comparison.add(
        "plain", [=, &kind] { readPlainly(plain, kind, folder() / "plain"); }, prepare);
    comparison.add(
        "intake", [=] { import(compressed ? packed : plain); },
        [=] {
            prepare();
            clearWorkspace();
        });
}

}  // namespace

void registerImports() {
    for (const Kind& each : kinds()) compare(each, false);
    compare(kind("arcs_4E14.7"), true);
}

}  // namespace bench
