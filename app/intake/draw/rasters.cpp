// A lattice or grid as shaded relief, one image.
#include <array>
#include <limits>

#include "app/intake/draw/draw.h"
#include "app/intake/draw/palette.h"
#include "app/intake/draw/relief.h"
#include "app/intake/interrupts.h"
#include "datasets/rasters.h"

namespace program {

namespace {

constexpr int32_t kLongestSide = 1600;

// Heights on a mesh that is thinned to what a picture can show; NaN where there is no data.
struct Heights {
    int32_t columns = 0;
    int32_t rows = 0;
    std::vector<double> values;
    double lowest = 0;
    double highest = 0;

    double at(int32_t row, int32_t column) const {
        row = std::clamp(row, 0, rows - 1);
        column = std::clamp(column, 0, columns - 1);
        return values[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                      static_cast<std::size_t>(column)];
    }
};

// Every step-th cell of a row, none with data where the row was not written. A row is read in
// pieces, since it may claim to be far wider than what is stored; cells that lie far apart are read
// one by one.
void readRow(const datasets::Raster& raster, int32_t row, int32_t step,
             std::vector<double>& values) {
    constexpr int32_t kFarApart = 256;
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    std::array<int32_t, 4096> cells;
    const auto most = static_cast<int32_t>(cells.size());
    const int32_t piece = step < kFarApart ? most - most % step : 1;
    const int32_t columns = raster.shape().columns;
    bool good = row < raster.shape().rowsWritten;
    for (int32_t column = 0; column < columns; column += std::max(piece, step)) {
        const int32_t count = std::min(piece, columns - column);
        good = good && raster.read(row, column, {cells.data(), static_cast<std::size_t>(count)});
        // What cannot be read has no data, nor has what is behind it in its row.
        for (int32_t each = 0; each < count; each += step) {
            const double value =
                good ? raster.value(cells[static_cast<std::size_t>(each)]).value_or(kNone) : kNone;
            values.push_back(std::isfinite(value) ? value : kNone);
        }
    }
}

Heights readHeights(const datasets::Raster& raster) {
    const QxRaster& shape = raster.shape();
    Heights heights;
    const int32_t step = (std::max({shape.columns, shape.rows, 1}) - 1) / kLongestSide + 1;
    // Either may be negative in a file.
    heights.columns = (std::max(shape.columns, 0) + step - 1) / step;
    heights.rows = (std::max(shape.rows, 0) + step - 1) / step;
    heights.values.reserve(static_cast<std::size_t>(heights.columns) *
                           static_cast<std::size_t>(heights.rows));
    for (int32_t row = 0; row < shape.rows; row += step) {
        throwIfInterrupted();
        readRow(raster, row, step, heights.values);
    }
    Extent range;
    for (const double value : heights.values) range.add(value, 0);
    if (!range.empty()) {
        heights.lowest = range.xmin;
        heights.highest = range.xmax;
    }
    return heights;
}

// The slopes are stretched so that the relief shows, whatever the units of the heights.
Image shaded(const Heights& heights) {
    Image image{heights.columns, heights.rows, {}};
    const double range = heights.highest - heights.lowest;
    const double stretch = range > 0 ? 0.15 * heights.columns / range : 0;
    for (int32_t row = 0; row < heights.rows; ++row) {
        for (int32_t column = 0; column < heights.columns; ++column) {
            const double value = heights.at(row, column);
            const auto known = [&](double other) { return std::isnan(other) ? value : other; };
            if (std::isnan(value)) {
                image.pixels.insert(image.pixels.end(), 4, 0);
                continue;
            }
            const double east =
                (known(heights.at(row, column + 1)) - known(heights.at(row, column - 1))) / 2;
            const double north =
                (known(heights.at(row - 1, column)) - known(heights.at(row + 1, column))) / 2;
            const double height = range > 0 ? (value - heights.lowest) / range : 0.5;
            const Colour colour = reliefColour(height, lightOn(east * stretch, north * stretch));
            image.pixels.insert(image.pixels.end(),
                                {colour.blue, colour.green, colour.red, uint8_t{255}});
        }
    }
    return image;
}

}  // namespace

Picture pictureOfRaster(const Dataset& dataset) {
    const datasets::Raster raster(dataset.path, dataset.kind == "Lattice" ? QX_LATTICE : QX_GRID);
    if (!raster) return {{}, [](Canvas&, const View&) {}, {}, {}, 0, 0};
    const datasets::Box box = raster.box();
    const auto image = std::make_shared<Image>(shaded(readHeights(raster)));
    Picture picture;
    picture.units = unitsOf(dataset.path);
    picture.extent.add(box[0], box[1]);
    picture.extent.add(box[2], box[3]);
    picture.draw = [=](Canvas& canvas, const View& view) {
        if (image->pixels.empty()) return;
        const Place topLeft = view.place(box[0], box[3]);
        const Place bottomRight = view.place(box[2], box[1]);
        canvas.image(topLeft, bottomRight.x - topLeft.x, bottomRight.y - topLeft.y, *image);
    };
    return picture;
}

}  // namespace program
