#include "app/intake/summary.h"

#include <algorithm>
#include <cctype>
#include <sstream>
#include <vector>

#include "app/intake/messages.h"

namespace program {

namespace {

std::string counted(int64_t count, const std::string& one, const std::string& many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

void add(std::string& text, const std::string& more, const char* between = ", ") {
    if (more.empty()) return;
    if (!text.empty()) text += between;
    text += more;
}

struct Word {
    const char* key;
    const char* one;
    const char* many;
};

// The features of a coverage, under the names of their counts.
constexpr Word kFeatures[] = {{"arc", "arc", "arcs"},
                              {"label", "label", "labels"},
                              {"centroid", "centroid", "centroids"},
                              {"polygon", "polygon", "polygons"},
                              {"tolerance", "tolerance", "tolerances"},
                              {"annotation", "annotation", "annotations"},
                              {"link", "link", "links"},
                              {"addressText", "address text", "address texts"},
                              {"addressIntegers", "address number", "address numbers"},
                              {"regionPair", "region pair", "region pairs"},
                              {"region", "region", "regions"}};

// The single counts of the other kinds.
constexpr Word kCounts[] = {{"nodeCount", "node", "nodes"},
                            {"triangleCount", "triangle", "triangles"},
                            {"recordCount", "record", "records"}};

// The lists.
constexpr Word kLists[] = {{"members", "grid", "grids"}, {"elements", "element", "elements"}};

std::string featuresOf(const Description& features) {
    std::string text;
    for (const Word& word : kFeatures) {
        int64_t count = 0;
        for (const auto& [name, records] : features.items()) {
            // A subclass stands behind a slash.
            if (name.substr(0, name.find('/')) == word.key) count += records.get<int64_t>();
        }
        if (count != 0) add(text, counted(count, word.one, word.many));
    }
    return text;
}

std::string tablesOf(const Description& tables) {
    int64_t records = 0;
    for (const Description& table : tables) records += table["recordCount"].get<int64_t>();
    return counted(static_cast<int64_t>(tables.size()), "table", "tables") + " with " +
           counted(records, "record", "records");
}

}  // namespace

std::string contentOf(const Description& description) {
    std::string text;
    if (description.contains("features")) add(text, featuresOf(description["features"]));
    for (const Word& word : kCounts) {
        if (!description.contains(word.key)) continue;
        add(text, counted(description[word.key].get<int64_t>(), word.one, word.many));
    }
    if (description.contains("columns") && description.contains("rows")) {
        add(text, description["columns"].dump() + " x " + description["rows"].dump() + " cells");
    }
    for (const Word& word : kLists) {
        if (!description.contains(word.key)) continue;
        const auto count = static_cast<int64_t>(description[word.key].size());
        add(text, counted(count, word.one, word.many));
    }
    if (description.contains("tables")) add(text, tablesOf(description["tables"]), "; ");
    return text;
}

std::string summaryOf(const std::string& dataset, const std::string& kind) {
    std::ostringstream nowhere;
    Console silent{nowhere, nowhere};
    const Listening listening(silent);
    try {
        const std::string content = contentOf(describe(dataset, kind));
        return kind + " " + dataset + (content.empty() ? "" : ": " + content);
    } catch (const std::exception&) {
        return {};
    }
}

std::string quoted(const std::string& path) {
    const bool plain = !path.empty() && std::all_of(path.begin(), path.end(), [](char character) {
        const auto code = static_cast<unsigned char>(character);
        return std::isalnum(code) != 0 ||
               std::string_view("/._-+,:@%=").find(character) != std::string_view::npos;
    });
    if (plain && path[0] != '-') return path;
    std::string text = "'";
    for (const char character : path)
        text += character == '\'' ? "'\\''" : std::string(1, character);
    return text + "'";
}

}  // namespace program
