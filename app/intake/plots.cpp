#include "app/intake/plots.h"

#include <algorithm>

#include "host/cpp/call.h"
#include "host/qxbase.h"

namespace program {

using qx::call;

namespace {

// The names in a directory; false if the path is none.
bool listDirectory(const std::string& path, std::vector<std::string>& names) {
    int32_t directory = 0;
    int32_t status = 0;
    call(dopen_, directory, std::string_view(path), status);
    if (status != 0) return false;
    for (;;) {
        qx::Name name;
        call(dread_, directory, name, status);
        if (status != 0) break;
        names.emplace_back(name.view());
    }
    call(dclose_, directory);
    return true;
}

}  // namespace

bool isPlot(const std::string& path) {
    int32_t plot = 0;
    int32_t status = 0;
    call(ptopen_, plot, std::string_view(path), status);
    if (status == 0) call(ptclos_, plot);
    return status == 0;
}

bool isMap(const std::string& path) {
    std::vector<std::string> names;
    return listDirectory(path, names) &&
           std::all_of(names.begin(), names.end(),
                       [&](const std::string& name) { return isPlot(elementFile(path, name)); });
}

std::vector<std::string> mapElements(const std::string& map) {
    std::vector<std::string> names;
    listDirectory(map, names);
    const auto order = [&](const std::string& name) {
        int32_t number = 0;
        int32_t status = 0;
        call(ptord_, std::string_view(elementFile(map, name)), number, status);
        return number;
    };
    std::vector<std::pair<int32_t, std::string>> elements;
    for (const std::string& name : names) elements.emplace_back(order(name), name);
    std::sort(elements.begin(), elements.end());
    names.clear();
    for (auto& [number, name] : elements) names.push_back(std::move(name));
    return names;
}

std::string elementFile(const std::string& map, const std::string& element) {
    qx::Name file;
    call(ejoin_, std::string_view(map), std::string_view(element), file);
    return std::string(file.view());
}

}  // namespace program
