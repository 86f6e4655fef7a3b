// The boxes of a coverage's features.
#ifndef APP_INTAKE_SHOW_FEATURE_BOXES_H
#define APP_INTAKE_SHOW_FEATURE_BOXES_H

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace program {

using Box = std::array<double, 4>;  // xmin, ymin, xmax, ymax

// An open file of features, read from its first record on or from the one that was gone to.
class FeatureBoxes {
  public:
    virtual ~FeatureBoxes() = default;
    virtual int32_t count() = 0;
    virtual bool go(int32_t record) = 0;
    // The box of the next record; false behind the last.
    virtual bool next(Box& box) = 0;
};

// The features of an index kind (QX_INDEX_POINTS and so on), null if the coverage has none.
std::unique_ptr<FeatureBoxes> openFeatureBoxes(const std::string& coverage, int32_t kind,
                                               std::string_view subclass);

}  // namespace program

#endif
