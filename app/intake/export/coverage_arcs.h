// The arcs of a coverage as areas are made of them.
#ifndef APP_INTAKE_EXPORT_COVERAGE_ARCS_H
#define APP_INTAKE_EXPORT_COVERAGE_ARCS_H

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "datasets/features.h"
#include "topology/arc_source.h"

namespace program {

// By the numbers that they were stored with.
class CoverageArcs : public topology::ArcSource {
  public:
    explicit CoverageArcs(const std::string& coverage);
    bool vertices(int32_t number, std::span<const double>& pairs) override;
    // Of all arcs.
    int64_t vertexCount() const { return vertexCount_; }

  private:
    int32_t recordOf(int32_t number) const;

    datasets::Arcs arcs_;
    int64_t vertexCount_ = 0;
    // Number and record of each; empty where they are all equal.
    std::vector<std::pair<int32_t, int32_t>> records_;
};

}  // namespace program

#endif
