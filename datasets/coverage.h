// A coverage as a whole, and the subclasses that part its annotation and regions.
#ifndef DATASETS_COVERAGE_H
#define DATASETS_COVERAGE_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "datasets/point.h"
#include "datasets/range.h"
#include "host/qxfeat/subclasses.h"

namespace datasets {

enum class Precision { none, single, twofold };

// In how many digits a coverage keeps its coordinates; none if the path is no coverage.
Precision precisionOf(std::string_view path);

// Where a coverage lies, as the heads of its feature files tell; nothing if it has no features.
std::optional<Box> extentOf(std::string_view coverage);

// What is kept apart for each subclass, by the code of its file.
enum class Subclassed : int32_t { annotation = 16, regionPairs = 89, regions = 90 };

class SubclassCursor {
  public:
    using Element = std::string;
    SubclassCursor(std::string_view coverage, Subclassed what);
    explicit operator bool() const { return bool(handle_); }
    bool next();
    const std::string& current() const { return name_; }

  private:
    Handle<cclose_> handle_;
    std::string name_;
};

// The names of the subclasses that have such a file, in the order in which they were made; the part
// without a name is "".
using Subclasses = Range<SubclassCursor>;
inline Subclasses subclasses(std::string_view coverage, Subclassed what) {
    return {coverage, what};
}

}  // namespace datasets

#endif
