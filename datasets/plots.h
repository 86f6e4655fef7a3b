// Plots, recorded drawings, and maps, which are folders of them.
#ifndef DATASETS_PLOTS_H
#define DATASETS_PLOTS_H

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "datasets/range.h"
#include "host/cpp/fixed_text.h"
#include "host/qxbase/plots.h"

namespace datasets {

bool isPlot(const std::string& path);

struct PlotHead {
    std::array<float, 4> bounds{};  // xmin, ymin, xmax, ymax in plot units, as the plot says them
    qx::FixedText<QX_PLOT_TITLE> title;

    // Whether the plot says its bounds.
    bool hasBounds() const;
};
// The head of a plot; zeros and blanks if it cannot be read.
PlotHead plotHead(const std::string& plot);

struct PlotRecord {
    int32_t code = 0;
    std::array<float, 2> reals{};
    std::array<int32_t, 2> integers{};
    qx::FixedText<QX_PLOT_TEXT> text;
};

class PlotCursor {
  public:
    using Element = PlotRecord;
    PlotCursor() = default;
    explicit PlotCursor(std::string_view plot) : handle_(Handle<ptclos_>::opened(ptopen_, plot)) {}
    explicit operator bool() const { return bool(handle_); }
    int32_t count() const;
    bool next();
    const PlotRecord& current() const { return record_; }

  private:
    Handle<ptclos_> handle_;
    PlotRecord record_;
};

// The records of a plot in their order; what they mean is told where they are drawn.
inline Range<PlotCursor> plotRecords(std::string_view plot) { return PlotCursor(plot); }

// Whether the path is a directory that holds plot files and nothing else.
bool isMap(const std::string& path);

// The file names of a map's elements, in their order, and the path of one.
std::vector<std::string> mapElements(const std::string& map);
std::string elementFile(const std::string& map, const std::string& element);

}  // namespace datasets

#endif
