#include "app/intake/check/records.h"

#include <algorithm>
#include <map>
#include <string_view>

namespace program {

namespace {

// Where the count of a section stands in a description: below features, under a name that may have
// a subclass behind it, or by itself.
struct Row {
    const char* code;
    const char* feature;
    const char* count;
};

constexpr Row kRows[] = {
    {"ARC", "arc", ""},           {"LAB", "label", ""},       {"CNT", "centroid", ""},
    {"PAL", "polygon/PAL", ""},   {"PFF", "polygon/PFF", ""}, {"TOL", "tolerance", ""},
    {"TXT", "annotation", ""},    {"TX6", "annotation", ""},  {"TX7", "annotation", ""},
    {"LNK", "link", ""},          {"ADP", "addressText", ""}, {"ADI", "addressIntegers", ""},
    {"RXP", "regionPair", ""},    {"RPL", "region", ""},      {"NXY", "", "nodeCount"},
    {"NZ", "", "nodeCount"},      {"NID", "", "nodeCount"},   {"NOD", "", "triangleCount"},
    {"EDG", "", "triangleCount"}, {"HUL", "", "hullCount"},   {"LAT", "", "rows"},
    {"GRD", "", "rows"},          {"FNT", "", "recordCount"}, {"CLN", "", "recordCount"},
    {"CL6", "", "recordCount"},   {"CL7", "", "recordCount"}, {"CMK", "", "recordCount"},
    {"CM6", "", "recordCount"},   {"CM7", "", "recordCount"}, {"CSH", "", "recordCount"},
    {"CS6", "", "recordCount"},   {"CS7", "", "recordCount"}, {"CTX", "", "recordCount"},
    {"CT7", "", "recordCount"},
};

std::optional<int64_t> featuresOf(const Description& dataset, std::string_view feature) {
    if (!dataset.contains("features")) return std::nullopt;
    std::optional<int64_t> count;
    for (const auto& [name, records] : dataset["features"].items()) {
        const bool same = std::string_view(name).starts_with(feature) &&
                          (name.size() == feature.size() || name[feature.size()] == '/');
        if (same) count = count.value_or(0) + records.get<int64_t>();
    }
    return count;
}

std::optional<int64_t> recordsOfTables(const Description& dataset) {
    if (!dataset.contains("tables")) return std::nullopt;
    int64_t count = 0;
    for (const Description& table : dataset["tables"]) count += table["recordCount"].get<int64_t>();
    return count;
}

std::optional<int64_t> countOf(const Description& dataset, std::string_view code) {
    if (code == "IFO") return recordsOfTables(dataset);
    for (const Row& row : kRows) {
        if (row.code != code) continue;
        if (*row.feature != '\0') return featuresOf(dataset, row.feature);
        if (dataset.contains(row.count)) return dataset[row.count].get<int64_t>();
    }
    return std::nullopt;
}

}  // namespace

void countRecords(const Description& dataset, std::vector<FoundSection>& sections) {
    if (dataset.contains("grids")) {
        // Each grid of a stack begins with its section; what stands before belongs to the stack.
        std::vector<FoundSection> part;
        std::size_t grid = 0;
        auto begins = sections.begin();
        const auto isGrid = [](const FoundSection& section) { return section.code == "GRD"; };
        for (auto end = std::find_if(begins, sections.end(), isGrid); begins != sections.end();) {
            part.assign(begins, end);
            if (isGrid(*begins)) {
                if (grid < dataset["grids"].size()) countRecords(dataset["grids"][grid++], part);
            } else {
                Description own = dataset;
                own.erase("grids");
                countRecords(own, part);
            }
            std::copy(part.begin(), part.end(), begins);
            begins = end;
            if (begins != sections.end()) end = std::find_if(begins + 1, sections.end(), isGrid);
        }
        return;
    }
    std::map<std::string, std::size_t> last;
    for (std::size_t index = 0; index < sections.size(); ++index) {
        last[sections[index].code] = index;
    }
    for (const auto& [code, index] : last) sections[index].records = countOf(dataset, code);
}

}  // namespace program
