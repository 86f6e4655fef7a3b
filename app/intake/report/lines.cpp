#include "app/intake/report/lines.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "app/intake/batch/hash_table.h"
#include "app/intake/batch/stable_hash.h"

namespace program {

namespace {

// The end of a text in quotes that begins at a place; npos where it has none.
std::size_t endOfText(std::string_view line, std::size_t quote) {
    for (std::size_t at = quote + 1; at < line.size(); ++at) {
        if (line[at] == '\\') {
            ++at;
        } else if (line[at] == '"') {
            return at;
        }
    }
    return std::string_view::npos;
}

// What is the same in all lines of an input, without a look at the rest: its path, in both forms.
std::string_view identityOf(std::string_view line) {
    constexpr std::string_view kPath = "{\"path\":\"";
    constexpr std::string_view kBytes = ",\"path_bytes\":\"";
    if (!line.starts_with(kPath)) return {};
    std::size_t end = endOfText(line, kPath.size() - 1);
    if (end == std::string_view::npos) return {};
    if (line.substr(end + 1).starts_with(kBytes)) end = endOfText(line, end + kBytes.size());
    return end == std::string_view::npos ? std::string_view() : line.substr(0, end);
}

bool isOfReport(const nlohmann::json& object) {
    constexpr const char* kTexts[] = {"path", "kind", "status"};
    constexpr const char* kNumbers[] = {"size", "seconds", "peak_bytes"};
    constexpr const char* kLists[] = {"messages", "outputs"};
    if (!object.is_object()) return false;
    for (const char* const key : kTexts) {
        if (!object.contains(key) || !object[key].is_string()) return false;
    }
    for (const char* const key : kNumbers) {
        if (!object.contains(key) || !object[key].is_number()) return false;
    }
    for (const char* const key : kLists) {
        if (!object.contains(key) || !object[key].is_array()) return false;
        for (const auto& each : object[key]) {
            if (!each.is_object()) return false;
        }
    }
    return true;
}

template <class Take>
void eachLine(const std::vector<std::string>& files, Take take) {
    uint64_t number = 0;
    for (const std::string& file : files) {
        errno = 0;
        std::ifstream lines(file, std::ios::binary);
        if (!lines) throw std::runtime_error(file + ": " + std::strerror(errno));
        for (std::string line; std::getline(lines, line);) take(line, ++number);
        // A folder opens, and cannot be read.
        if (lines.bad()) throw std::runtime_error(file + ": " + std::strerror(errno));
    }
}

}  // namespace

LineCounts readReports(const std::vector<std::string>& files,
                       const std::function<void(const nlohmann::json& object)>& take) {
    LineCounts counts;
    HashTable<uint64_t> last;
    eachLine(files, [&](const std::string& line, uint64_t number) {
        const std::string_view identity = identityOf(line);
        // One that was not written to its end replaces none.
        if (!identity.empty() && line.ends_with('}')) last[stableHash(identity)] = number;
    });
    eachLine(files, [&](const std::string& line, uint64_t number) {
        ++counts.read;
        const std::string_view identity = identityOf(line);
        const uint64_t* const known = last.find(stableHash(identity));
        if (line.ends_with('}') && !identity.empty() && known && *known != number) {
            ++counts.replaced;
            return;
        }
        const auto object = nlohmann::json::parse(line, nullptr, false);
        if (identity.empty() || !isOfReport(object)) {
            ++counts.damaged;
            return;
        }
        take(object);
    });
    return counts;
}

}  // namespace program
