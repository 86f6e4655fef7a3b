// From a dataset's coordinates to the page.
#ifndef APP_INTAKE_DRAW_VIEW_H
#define APP_INTAKE_DRAW_VIEW_H

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <vector>

#include "app/intake/draw/canvas.h"

namespace program {

// The extent of what is to be drawn. Values that are not finite are left out.
struct Extent {
    double xmin = std::numeric_limits<double>::infinity();
    double ymin = std::numeric_limits<double>::infinity();
    double xmax = -std::numeric_limits<double>::infinity();
    double ymax = -std::numeric_limits<double>::infinity();

    void add(double x, double y) {
        if (!std::isfinite(x) || !std::isfinite(y)) return;
        xmin = std::min(xmin, x);
        ymin = std::min(ymin, y);
        xmax = std::max(xmax, x);
        ymax = std::max(ymax, y);
    }
    void add(const Extent& other) {
        add(other.xmin, other.ymin);
        add(other.xmax, other.ymax);
    }
    bool empty() const { return !(xmin <= xmax && ymin <= ymax); }
};

// A page whose longer side has a fixed length, with a margin on all sides.
class View {
  public:
    static constexpr double kLongerSide = 1000;
    static constexpr double kMargin = 12;

    explicit View(Extent extent, double longerSide = kLongerSide) {
        if (extent.empty()) extent = {0, 0, 1, 1};
        // Halves first: the difference of two large numbers must not overflow.
        const double halfWidth = extent.xmax / 2 - extent.xmin / 2;
        const double halfHeight = extent.ymax / 2 - extent.ymin / 2;
        const double longer = std::max(halfWidth, halfHeight);
        const double room = longerSide - 2 * kMargin;
        scale_ = longer > 0 ? room / 2 / longer : 1;
        if (!std::isfinite(scale_)) scale_ = 1;
        xmin_ = extent.xmin;
        ymax_ = extent.ymax;
        width_ = side(halfWidth);
        height_ = side(halfHeight);
    }

    double width() const { return width_; }
    double height() const { return height_; }
    // The pixels of a unit.
    double scale() const { return scale_; }
    // The pixels of a length; what is none, or is not finite, has the fallback's.
    double length(double value, double fallback) const {
        const double pixels = value * scale_;
        return pixels > 0 && std::isfinite(pixels) ? std::min(pixels, kLongerSide) : fallback;
    }
    Place place(double x, double y) const {
        return {kMargin + limited((x - xmin_) * scale_), kMargin + limited((ymax_ - y) * scale_)};
    }
    // Pairs x, y as places; those that are not finite are left out.
    std::vector<Place> places(std::span<const double> values) const {
        std::vector<Place> result;
        for (std::size_t index = 0; index + 1 < values.size(); index += 2) {
            if (std::isfinite(values[index]) && std::isfinite(values[index + 1])) {
                result.push_back(place(values[index], values[index + 1]));
            }
        }
        return result;
    }

  private:
    // A page has room for its margins and a little, however thin the dataset.
    double side(double half) const {
        constexpr double kLeast = 8;
        return std::max(2 * half * scale_, kLeast) + 2 * kMargin;
    }
    static double limited(double value) { return std::clamp(value, -1e7, 1e7); }

    double scale_;
    double xmin_;
    double ymax_;
    double width_;
    double height_;
};

}  // namespace program

#endif
