#include "app/intake/workspace/list.h"

#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <set>

#include "app/intake/show/show.h"
#include "app/intake/summary.h"
#include "app/intake/utf8.h"
#include "app/intake/workspace/sizes.h"
#include "datasets/tables.h"
#include "datasets/workspace.h"

namespace program {

namespace {

struct Row {
    std::string name;
    std::vector<std::string> kinds;
    Size size;
    std::string content;
};

std::string kindText(const Row& row) {
    std::string text;
    for (const std::string& kind : row.kinds) text += (text.empty() ? "" : " or ") + kind;
    return text;
}

std::string contentAt(const std::string& path, const std::vector<std::string>& kinds) {
    // What may be several things is none for sure.
    if (kinds.size() != 1) return {};
    try {
        return contentOf(describe(path, kinds.front()));
    } catch (const std::runtime_error&) {
        return "cannot be read";
    }
}

void print(const std::vector<Row>& rows, std::ostream& output) {
    std::size_t nameWidth = 0;
    std::size_t kindWidth = 0;
    for (const Row& row : rows) {
        nameWidth = std::max(nameWidth, shown(row.name).size());
        kindWidth = std::max(kindWidth, kindText(row).size());
    }
    for (const Row& row : rows) {
        output << std::left << std::setw(static_cast<int>(nameWidth)) << shown(row.name) << "  "
               << std::setw(static_cast<int>(kindWidth)) << kindText(row) << "  "
               << timeText(row.size.changed) << "  " << std::right << std::setw(10)
               << bytesText(row.size.bytes);
        if (!row.content.empty()) output << "  " << row.content;
        output << '\n';
    }
}

Description asJson(const std::vector<Row>& rows) {
    Description list = Description::array();
    for (const Row& row : rows) {
        Description& each = list.emplace_back();
        each["name"] = toUtf8(row.name);
        each["kinds"] = row.kinds;
        each["changed"] = row.size.changed;
        each["bytes"] = row.size.bytes;
        if (!row.content.empty()) each["content"] = row.content;
    }
    return list;
}

}  // namespace

void listWorkspace(const std::string& workspace, bool json, Console& console) {
    std::error_code ignored;
    if (!std::filesystem::is_directory(workspace, ignored)) {
        throw datasets::NoDataset("there is no folder " + workspace);
    }
    const WorkspaceSizes sizes(workspace);
    std::vector<Row> stored;
    std::set<std::string, std::less<>> names;
    for (const datasets::Stored& each : datasets::datasetsIn(workspace)) {
        names.insert(each.name);
        stored.push_back(
            {each.name, each.kinds, sizes.of(each.path), contentAt(each.path, each.kinds)});
    }
    std::vector<Row> tables;
    for (const datasets::TablePlace& place : datasets::tablesIn(workspace)) {
        if (names.contains(place.owner()) || names.contains(place.name)) continue;
        const auto table = datasets::table(place);
        tables.push_back({place.name,
                          {"Info Datafile"},
                          table ? sizes.of(table) : Size(),
                          table ? std::to_string(table.count()) + " records" : "cannot be read"});
    }
    if (json) {
        Description object;
        object["workspace"] = toUtf8(workspace);
        object["datasets"] = asJson(stored);
        object["tables"] = asJson(tables);
        console.output << object.dump() << '\n';
        return;
    }
    print(stored, console.output);
    if (tables.empty()) return;
    console.output << (stored.empty() ? "" : "\n") << "Tables that belong to no dataset:\n";
    print(tables, console.output);
}

}  // namespace program
