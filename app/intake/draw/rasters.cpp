// A lattice or grid as shaded relief, one image.
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

void readRow(int32_t handle, const QxRaster& raster, int32_t row, int32_t step,
             std::vector<double>& values) {
    std::vector<int32_t> cells(static_cast<std::size_t>(raster.columns));
    int32_t status = 0;
    call(rasrd_, handle, row, 0, raster.columns, static_cast<void*>(cells.data()), status);
    float noData = 0;
    call(fltndt_, noData);
    for (std::size_t column = 0; column < cells.size(); column += static_cast<std::size_t>(step)) {
        double value = cells[column];
        bool known = status == 0 && cells[column] != QX_MISSING_INTEGER;
        if (raster.cellType == QX_FLOATING_CELLS) {
            float real = 0;
            std::memcpy(&real, &cells[column], sizeof real);
            known = status == 0 && real != noData && std::isfinite(real);
            value = real;
        }
        values.push_back(known ? value : std::numeric_limits<double>::quiet_NaN());
    }
}

Heights readHeights(int32_t handle, const QxRaster& raster) {
    Heights heights;
    const int32_t step = (std::max({raster.columns, raster.rows, 1}) - 1) / kLongestSide + 1;
    heights.columns = (raster.columns + step - 1) / step;
    heights.rows = (raster.rows + step - 1) / step;
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
