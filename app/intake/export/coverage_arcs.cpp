#include "app/intake/export/coverage_arcs.h"

#include <algorithm>

namespace program {

CoverageArcs::CoverageArcs(const std::string& coverage) : arcs_(datasets::arcs(coverage)) {
    int32_t record = 0;
    for (const datasets::ArcFront& arc : datasets::arcFronts(coverage)) {
        ++record;
        vertexCount_ += arc.vertexCount;
        if (records_.empty() && arc.number == record) continue;
        if (records_.empty()) {
            for (int32_t each = 1; each < record; ++each) records_.push_back({each, each});
        }
        records_.push_back({arc.number, record});
    }
    // Of several arcs of one number the first is the one.
    std::stable_sort(records_.begin(), records_.end(),
                     [](const auto& one, const auto& other) { return one.first < other.first; });
}

bool CoverageArcs::vertices(int32_t number, std::span<const double>& pairs) {
    const datasets::Arc* arc = arcs_.at(recordOf(number));
    if (!arc) return false;
    pairs = datasets::coordinates(arc->vertices);
    return true;
}

int32_t CoverageArcs::recordOf(int32_t number) const {
    if (records_.empty()) return number;
    const auto found =
        std::lower_bound(records_.begin(), records_.end(), number,
                         [](const auto& each, int32_t wanted) { return each.first < wanted; });
    return found != records_.end() && found->first == number ? found->second : 0;
}

}  // namespace program
