// A whole import to a workspace on disk, beside plain readers of the same lines.
#include <fstream>

#include "bench/fortran_reader.h"
#include "bench/generator.h"
#include "bench/measure.h"
#include "bench/plain_reader.h"
#include "bench/process.h"
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

std::string withReturns(const std::string& text) {
    std::string result;
    result.reserve(text.size() + text.size() / 40);
    for (const char character : text) {
        if (character == '\n') result += '\r';
        result += character;
    }
    return result;
}

enum class Form { kPlain, kCompressed, kReturns };
constexpr const char* kFormNames[] = {"", "_compressed", "_returns"};

fs::path fileOf(const Kind& kind, Form form) {
    return folder() / (kind.name + std::string(kFormNames[static_cast<int>(form)]) + ".e00");
}

// Writes the file and sees what becomes of it. Returns its bytes.
std::size_t prepare(const Kind& kind, Form form) {
    const auto [text, records] = generate(kind, importBytes());
    const fs::path path = fileOf(kind, form);
    switch (form) {
        case Form::kPlain:
            std::ofstream(path, std::ios::binary) << text;
            break;
        case Form::kCompressed:
            compress(text, path);
            break;
        case Form::kReturns:
            std::ofstream(path, std::ios::binary) << withReturns(text);
            std::ofstream(fileOf(kind, Form::kPlain), std::ios::binary) << text;
            break;
    }
    clearWorkspace();
    import(path);
    require(storedBytes() > text.size() / 20, "the records are stored");
    const bool packed = form == Form::kCompressed;
    require(readPlainly(path, kind, folder() / "plain", packed) == records,
            "the plain reader finds all records");
    return fs::file_size(path);
}

// One kind in one form: checked once, then timed. A megabyte is one of the file as it stands.
void compare(const Kind& kind, Form form) {
    const fs::path file = fileOf(kind, form);
    const fs::path output = folder() / "plain";
    Comparison comparison(std::string("import/") + kind.name + kFormNames[static_cast<int>(form)]);
    comparison.around([=, &kind] { return prepare(kind, form); },
                      [=, &kind] {
                          clearWorkspace();
                          for (const Form each : {form, Form::kPlain}) {
                              fs::remove(fileOf(kind, each));
                          }
                      });
    comparison.add("C", [=, &kind] { readPlainly(file, kind, output, form == Form::kCompressed); });
    if (form == Form::kPlain && fortranReads(kind)) {
        comparison.add("Fortran", [=, &kind] { readByFortran(file, kind, output); });
    }
    if (form == Form::kReturns) {
        comparison.add(
            "newlines", [=, &kind] { import(fileOf(kind, Form::kPlain)); }, clearWorkspace);
    }
    comparison.add(
        "intake", [=] { import(file); }, clearWorkspace);
    comparison.rounds(importRounds()).run();
}

// The program beside another build of it.
void compareBuilds(const Kind& kind, Form form) {
    const std::string name =
        std::string("against/") + kind.name + kFormNames[static_cast<int>(form)];
    const auto measure = [=, &kind](benchmark::State& state) {
        try {
            prepare(kind, form);
            measureAgainst(
                state,
                {"import", fileOf(kind, form).string(), (folder() / "workspace/DS").string()},
                clearWorkspace);
        } catch (const std::exception& exception) {
            state.SkipWithError(exception.what());
        }
        clearWorkspace();
        for (const Form each : {form, Form::kPlain}) fs::remove(fileOf(kind, each));
    };
    benchmark::RegisterBenchmark(name.c_str(), measure)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(importRounds());
}

void forEachFile(void (*measure)(const Kind&, Form)) {
    for (const Kind& each : kinds()) measure(each, Form::kPlain);
    for (const char* name : {"arcs_4E14.7", "arcs_2E21.14"}) measure(kind(name), Form::kCompressed);
    measure(kind("arcs_4E14.7"), Form::kReturns);
}

}  // namespace

void registerImports() {
    forEachFile(compare);
    if (otherBuild()) forEachFile(compareBuilds);
}

}  // namespace bench
