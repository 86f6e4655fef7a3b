#include "datasets/plots.h"

#include <algorithm>
#include <cmath>

#include "datasets/workspace.h"
#include "host/cpp/call.h"
#include "host/qxbase.h"

namespace datasets {

using qx::call;

bool isPlot(const std::string& path) { return bool(PlotCursor(path)); }

bool PlotHead::hasBounds() const {
    constexpr float kUnset = 8.9E27F;
    return std::all_of(bounds.begin(), bounds.end(),
                       [](float bound) { return std::fabs(bound) < kUnset; });
}

PlotHead plotHead(const std::string& plot) {
    const std::string_view path(plot);
    PlotHead head;
    auto& [xmin, ymin, xmax, ymax] = head.bounds;
    int32_t status = 0;
    call(pthdrr_, path, head.title, status);
    call(ptbndr_, path, xmin, ymin, xmax, ymax, status);
    return head;
}

int32_t PlotCursor::count() const {
    int32_t count = 0;
    call(ptrec_, handle_.number(), count);
    return count;
}

bool PlotCursor::next() {
    int32_t status = 0;
    call(ptread_, handle_.number(), record_.code, record_.reals, record_.integers, record_.text,
         status);
    return status == 0;
}

bool isMap(const std::string& path) {
    const auto names = namesIn(path);
    return names && std::all_of(names->begin(), names->end(), [&](const std::string& name) {
               return isPlot(elementFile(path, name));
           });
}

std::vector<std::string> mapElements(const std::string& map) {
    std::vector<std::pair<int32_t, std::string>> elements;
    for (const std::string& name : namesIn(map).value_or(std::vector<std::string>())) {
        int32_t number = 0;
        int32_t status = 0;
        call(ptord_, std::string_view(elementFile(map, name)), number, status);
        elements.emplace_back(number, name);
    }
    std::sort(elements.begin(), elements.end());
    std::vector<std::string> names;
    for (auto& [number, name] : elements) names.push_back(std::move(name));
    return names;
}

std::string elementFile(const std::string& map, const std::string& element) {
    qx::Name file;
    call(ejoin_, std::string_view(map), std::string_view(element), file);
    return std::string(file.view());
}

}  // namespace datasets
