// What an export has to tell when it is done.
#ifndef APP_INTAKE_EXPORT_REPORT_H
#define APP_INTAKE_EXPORT_REPORT_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "app/intake/console.h"

namespace program {

struct LayerReport {
    std::string name;
    int64_t features = 0;
    int64_t leftOut = 0;  // features whose geometry, or part of it, is not in the layer

    // Of a raster, which has no features.
    int32_t columns = 0;
    int32_t rows = 0;
    int32_t bands = 0;
    std::string type = {};
};

class ExportReport {
  public:
    std::vector<LayerReport> layers;

    // Something that is not in the output as it was in the dataset. Equal reasons are counted, the
    // first few examples kept: "polygons: does not close (polygon 12, 17, ...)".
    void loss(std::string_view layer, std::string_view reason, std::string_view example = {},
              int64_t count = 1);
    // Something that the user should know, of which nothing is lost.
    void note(std::string text) { notes_.push_back(std::move(text)); }
    bool lost() const { return !losses_.empty(); }

    void print(Console& console) const;
    void printJson(Console& console, std::string_view dataset, std::string_view output,
                   std::string_view format, std::string_view system) const;

  private:
    struct Loss {
        std::string layer;
        std::string reason;
        int64_t count = 0;
        std::string examples;
    };
    static std::string textOf(const Loss& loss);

    std::vector<Loss> losses_;
    std::vector<std::string> notes_;
};

}  // namespace program

#endif
