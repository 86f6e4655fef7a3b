#include "bench/plain_reader.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "bench/packed_lines.h"

namespace bench {

namespace {

struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Close>;

File openFile(const std::string& path, const char* mode) {
    File file(std::fopen(path.c_str(), mode));
    if (!file) throw std::runtime_error("cannot open " + path);
    return file;
}

constexpr int kLongestLine = 256;

// Cuts a line and writes its values at once; gives the integer that counts the details, if it is
// here.
int32_t convert(const char* line, const LineLayout& layout, int countField, std::FILE* output) {
    char values[2 * kLongestLine];
    char* next = values;
    const auto put = [&](const void* value, std::size_t size) {
        std::memcpy(next, value, size);
        next += size;
    };
    int32_t count = 0;
    int index = 0;
    for (const Fields& fields : layout) {
        for (int each = 0; each < fields.count; ++each, ++index, line += fields.width) {
            if (fields.type == 'I') {
                const int32_t value = plainInteger(line, fields.width);
                if (index == countField) count = value;
                put(&value, sizeof value);
            } else if (fields.type == 'E') {
                const double value = plainReal(line, fields.width);
                put(&value, sizeof value);
            } else {
                put(line, static_cast<std::size_t>(fields.width));
            }
        }
    }
    std::fwrite(values, 1, static_cast<std::size_t>(next - values), output);
    return count;
}

}  // namespace

double plainReal(const char* field, int width) {
    char text[32];
    std::memcpy(text, field, static_cast<std::size_t>(width));
    text[width] = '\0';
    return std::strtod(text, nullptr);
}

int32_t plainInteger(const char* field, int width) {
    char text[32];
    std::memcpy(text, field, static_cast<std::size_t>(width));
    text[width] = '\0';
    return static_cast<int32_t>(std::strtol(text, nullptr, 10));
}

uint64_t readPlainly(const std::string& path, const Kind& kind, const std::string& output,
                     bool packed) {
    const File input = openFile(path, "rb");
    const File result = openFile(output, "wb");
    char line[kLongestLine];
    PackedLines packedLines(input.get());
    const auto next = [&] {
        if (packed) return packedLines.next(line, 160);
        return std::fgets(line, sizeof line, input.get()) != nullptr;
    };
    const bool table = std::strncmp(kind.header, "IFO", 3) == 0;
    std::fgets(line, sizeof line, input.get());
    std::size_t passed = 1 + kind.prologue.size() + (table ? 10 : 0);
    while (passed-- > 0) next();
    const std::string end = kind.epilogue.front();
    uint64_t records = 0;
    while (next()) {
        if (std::strncmp(line, end.c_str(), std::max<std::size_t>(end.size(), 1)) == 0) break;
        if (std::strncmp(line, "EOS", 3) == 0) break;
        int32_t details = 0;
        for (std::size_t index = 0; index < kind.layout.head.size(); ++index) {
            if (index > 0) next();
            for (int joined = 1; joined < kind.layout.joinedLines; ++joined) {
                char* const behind = line + 80 * joined;
                std::fgets(behind, static_cast<int>(line + sizeof line - behind), input.get());
            }
            const int countField = index == 0 ? kind.layout.countField : -1;
            const int32_t count = convert(line, kind.layout.head[index], countField, result.get());
            if (index == 0) details = count;
        }
        for (int32_t at = 0; at < details; at += kind.layout.detailsInLine) {
            next();
            convert(line, kind.layout.detail, -1, result.get());
        }
        ++records;
    }
    return records;
}

}  // namespace bench
