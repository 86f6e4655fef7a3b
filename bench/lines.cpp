// Reading lines beside fgets, and the compressed form beside a copy of the same text.
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "bench/generator.h"
#include "bench/measure.h"
#include "host/qxbase.h"
#include "stream/compressed.h"
#include "stream/reader.h"

namespace bench {

namespace {

using namespace intake;

// A file that is there as long as the program runs.
class TemporaryFile {
  public:
    explicit TemporaryFile(const std::string& text) {
        std::string name =
            (std::filesystem::temp_directory_path() / "intake-bench-XXXXXX").string();
        const int descriptor = mkstemp(name.data());
        require(descriptor >= 0, "no file to write to");
        ::close(descriptor);
        path_ = name;
        std::ofstream(path_, std::ios::binary) << text;
    }
    ~TemporaryFile() { std::remove(path_.c_str()); }
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

std::size_t readByFgets(const std::string& path) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    char line[256];
    std::size_t lines = 0;
    while (std::fgets(line, sizeof line, file)) {
        benchmark::DoNotOptimize(line);
        ++lines;
    }
    std::fclose(file);
    return lines;
}

std::size_t readByIMPLIN(const std::string& path) {
    baseinitC();
    reader = {};
    reader.IMPNAM = Name(path);
    Status status = kSuccess;
    call(aopen_, reader.IMPUNT, reader.IMPNAM, status);
    RDVER(reader.IMPUNT);
    std::size_t lines = 1;
    Line line;
    while (!line.startsWith("EOS")) {
        IMPLIN(line);
        benchmark::DoNotOptimize(line);
        ++lines;
    }
    baseendC();
    return lines;
}

void registerLineReading(const std::string& text) {
    static const TemporaryFile file(text);
    require(readByFgets(file.path()) == readByIMPLIN(file.path()), "the number of lines");
    Comparison comparison("lines", text.size());
    comparison.add("plain", [] { readByFgets(file.path()); });
    comparison.add("IMPLIN", [] { readByIMPLIN(file.path()); }).run();
}

struct Packed {
    CompressedLine text;
    int32_t count;
};

void registerCompressedForm(const std::string& text) {
    static std::vector<Line> lines;
    static std::vector<Packed> packed;
    for (std::size_t start = 0, end; (end = text.find('\n', start)) != text.npos; start = end + 1) {
        lines.push_back(Line(std::string_view(text).substr(start, end - start)));
        Packed line{};
        CMPLIN({lines.back().data(), Line::kLength}, 2, line.text, line.count);
        packed.push_back(line);
        Line back;
        DCMLIN(line.text, {back.data(), Line::kLength}, line.count);
        require(back == lines.back(), "a line comes back from its compressed form");
    }
    const auto copy = [] {
        for (const Line& line : lines) benchmark::DoNotOptimize(Line(line.view()));
    };
    Comparison compress("compress", text.size());
    compress.add("plain", copy);
    compress.add("CMPLIN", [] {
        Packed result{};
        for (const Line& line : lines) {
            CMPLIN({line.data(), Line::kLength}, 2, result.text, result.count);
            benchmark::DoNotOptimize(result);
        }
    });
    compress.run();
    Comparison expand("expand", text.size());
    expand.add("plain", copy);
    expand.add("DCMLIN", [] {
        Line line;
        int32_t count = 0;
        for (const Packed& each : packed) {
            DCMLIN(each.text.full().substr(0, static_cast<std::size_t>(each.count)),
                   {line.data(), Line::kLength}, count);
            benchmark::DoNotOptimize(line);
        }
    });
    expand.run();
}

}  // namespace

void registerLines() {
    const std::string text = generate(kind("arcs_4E14.7"), std::size_t{1} << 20).text;
    registerLineReading(text);
    registerCompressedForm(text);
}

}  // namespace bench
