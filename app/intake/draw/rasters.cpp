// A lattice or grid as shaded relief, one image.
#include <array>
#include <bit>
#include <limits>

#include "app/intake/draw/draw.h"
#include "app/intake/draw/palette.h"
#include "app/intake/draw/relief.h"
#include "host/cpp/call.h"
#include "host/qxgridio.h"

namespace program {

namespace {

using qx::call;

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

double heightOf(int32_t cell, const QxRaster& raster, float noData) {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    if (raster.cellType != QX_FLOATING_CELLS) return cell != QX_MISSING_INTEGER ? cell : kNone;
    const auto value = std::bit_cast<float>(cell);
    return value != noData && std::isfinite(value) ? value : kNone;
}

// Every step-th cell of a row, none with data where the row was not written. A row is read in
// pieces, since it may claim to be far wider than what is stored; cells that lie far apart are read
// one by one.
void readRow(int32_t handle, const QxRaster& raster, int32_t row, int32_t step,
             std::vector<double>& values) {
    constexpr int32_t kFarApart = 256;
    std::array<int32_t, 4096> cells;
    const auto most = static_cast<int32_t>(cells.size());
    const int32_t piece = step < kFarApart ? most - most % step : 1;
    float noData = 0;
    call(fltndt_, noData);
    int32_t status = row < raster.rowsWritten ? 0 : -1;
    for (int32_t column = 0; column < raster.columns; column += std::max(piece, step)) {
        const int32_t count = std::min(piece, raster.columns - column);
        if (status == 0) {
            call(rasrd_, handle, row, column, count, static_cast<void*>(cells.data()), status);
        }
        // What cannot be read has no data, nor has what is behind it in its row.
        for (int32_t each = 0; each < count; each += step) {
            const int32_t cell = cells[static_cast<std::size_t>(each)];
            values.push_back(status == 0 ? heightOf(cell, raster, noData)
                                         : std::numeric_limits<double>::quiet_NaN());
        }
    }
}

Heights readHeights(int32_t handle, const QxRaster& raster) {
    Heights heights;
    const int32_t step = (std::max({raster.columns, raster.rows, 1}) - 1) / kLongestSide + 1;
    // Either may be negative in a file.
    heights.columns = (std::max(raster.columns, 0) + step - 1) / step;
    heights.rows = (std::max(raster.rows, 0) + step - 1) / step;
    heights.values.reserve(static_cast<std::size_t>(heights.columns) *
                           static_cast<std::size_t>(heights.rows));
    for (int32_t row = 0; row < raster.rows; row += step) {
        readRow(handle, raster, row, step, heights.values);
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
    Picture picture;
    const int32_t kind = dataset.kind == "Lattice" ? QX_LATTICE : QX_GRID;
    int32_t handle = 0;
    int32_t status = 0;
    QxRaster raster{};
    call(rasopn_, handle, std::string_view(dataset.path), kind, status);
    if (status == 0) {
        call(rasdes_, handle, raster, status);
        const auto image = std::make_shared<Image>(shaded(readHeights(handle, raster)));
        call(rascls_, handle);
        picture.extent.add(raster.lowerLeft[0], raster.lowerLeft[1]);
        picture.extent.add(raster.upperRight[0], raster.upperRight[1]);
        picture.draw = [=](Canvas& canvas, const View& view) {
            if (image->pixels.empty()) return;
            const Place topLeft = view.place(raster.lowerLeft[0], raster.upperRight[1]);
            const Place bottomRight = view.place(raster.upperRight[0], raster.lowerLeft[1]);
            canvas.image(topLeft, bottomRight.x - topLeft.x, bottomRight.y - topLeft.y, *image);
        };
    } else {
        picture.draw = [](Canvas&, const View&) {};
    }
    return picture;
}

}  // namespace program
