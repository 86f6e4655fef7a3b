#include <algorithm>
#include <cmath>
#include <limits>

#include "app/intake/show/show.h"

namespace program {

namespace {

using nlohmann::json;

void take(const json& head, Description& description, std::initializer_list<const char*> keys) {
    for (const char* key : keys) {
        if (head.contains(key)) description[key] = head[key];
    }
}

void describeDataset(const json& head, Description& description) {
    take(head, description, {"kind", "name", "precision", "extent"});
    if (head.contains("counts")) description["features"] = head["counts"];
}

void describeTin(const json& head, Description& description) {
    description["extent"] = head["box"];
    take(head, description, {"nodeCount", "triangleCount", "hullCount", "zRange"});
}

// A real of the dump, where a text stands for one that is not finite.
double realOf(const json& value) {
    if (value.is_number()) return value.get<double>();
    const double infinity = std::numeric_limits<double>::infinity();
    if (value == "Infinity") return infinity;
    return value == "-Infinity" ? -infinity : std::numeric_limits<double>::quiet_NaN();
}

Description describeReal(double value) {
    if (std::isfinite(value)) return value;
    return std::isnan(value) ? "NaN" : value > 0 ? "Infinity" : "-Infinity";
}

void describeLattice(const json& head, Description& description) {
    const auto far = [&](std::size_t axis, const char* count) {
        return describeReal(realOf(head["origin"][axis]) +
                            (realOf(head[count]) - 1) * realOf(head["spacing"][axis]));
    };
    description["extent"] = {head["origin"][0], head["origin"][1], far(0, "columns"),
                             far(1, "rows")};
    take(head, description, {"columns", "rows", "spacing", "range"});
}

void describeGrid(const json& head, Description& description) {
    description["extent"] = head["bounds"];
    take(head, description, {"columns", "rows", "cellType", "cellSize"});
}

void describeStack(const json& head, Description& description) {
    take(head, description, {"members"});
}

void describeSet(const json& head, Description& description) {
    take(head, description, {"recordBytes", "recordCount"});
}

// A plot by itself, or an element of a map.
void describePlot(const json& head, Description& description) {
    if (!head.contains("element")) {
        description["extent"] = head["bounds"];
        take(head, description, {"title"});
        return;
    }
    for (Description& element : description["elements"]) {
        if (element["file"].get<std::string>() != head["element"].get<std::string>()) continue;
        take(head, element, {"title", "bounds"});
    }
}

void describeMap(const json& head, Description& description) {
    Description& elements = description["elements"] = Description::array();
    for (const json& file : head["elements"]) elements.push_back({{"file", file}});
}

const char* itemType(const json& type) {
    constexpr const char* kTypes[] = {"?",      "date",           "character",   "integer",
                                      "number", "binary integer", "binary float"};
    const auto code = type.get<int64_t>();
    return kTypes[code >= 1 && code <= 6 ? code : 0];
}

void describeTable(const json& head, Description& description) {
    Description table;
    take(head, table, {"name", "recordCount", "recordLength"});
    Description& items = table["items"] = Description::array();
    for (const json& item : head["items"]) {
        Description shown;
        shown["name"] = item["name"];
        shown["type"] = itemType(item["type"]);
        take(item, shown, {"start", "width", "outputWidth", "decimals", "redefined"});
        items.push_back(std::move(shown));
    }
    description["tables"].push_back(std::move(table));
}

struct Describer {
    const char* className;
    void (*describe)(const json& head, Description& description);
};

constexpr Describer kDescribers[] = {
    {"dataset", describeDataset}, {"tin", describeTin},     {"lattice", describeLattice},
    {"grid", describeGrid},       {"stack", describeStack}, {"symbolSet", describeSet},
    {"font", describeSet},        {"plot", describePlot},   {"map", describeMap},
    {"table", describeTable},
};

}  // namespace

const std::vector<std::string>& headClasses() {
    static const std::vector<std::string> classes = [] {
        std::vector<std::string> names;
        for (const Describer& each : kDescribers) names.emplace_back(each.className);
        return names;
    }();
    return classes;
}

void describeHead(const json& head, Description& description) {
    for (const Describer& each : kDescribers) {
        if (head["class"] == each.className) each.describe(head, description);
    }
}

}  // namespace program
