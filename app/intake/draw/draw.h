// intake draw: a picture of a dataset.
#ifndef APP_INTAKE_DRAW_DRAW_H
#define APP_INTAKE_DRAW_DRAW_H

#include <functional>
#include <string>

#include "app/intake/draw/canvas.h"
#include "app/intake/draw/view.h"
#include "datasets/workspace.h"

namespace program {

using datasets::Dataset;

// Draws the dataset at a path to a file whose name ends in .svg or .png, with so many pixels on its
// longer side; an existing file is replaced when the picture is whole. Throws a std::runtime_error
// whose text is for the user.
void draw(const std::string& path, const std::string& kind, const std::string& picture,
          double longerSide = View::kLongerSide);

// A picture before its page: how much there is to see, and what draws it.
struct Picture {
    Extent extent;
    std::function<void(Canvas& canvas, const View& view)> draw;
};

// One routine for each kind that can be drawn, each in its own file.
Picture pictureOfPlot(const Dataset& dataset);
Picture pictureOfMap(const Dataset& dataset);
Picture pictureOfCoverage(const Dataset& dataset);
Picture pictureOfRaster(const Dataset& dataset);
Picture pictureOfTin(const Dataset& dataset);

}  // namespace program

#endif
