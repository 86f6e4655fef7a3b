// intake draw: a picture of a dataset.
#ifndef APP_INTAKE_DRAW_DRAW_H
#define APP_INTAKE_DRAW_DRAW_H

#include <functional>
#include <string>

#include "app/intake/draw/canvas.h"
#include "app/intake/draw/legend.h"
#include "app/intake/draw/scale_bar.h"
#include "app/intake/draw/view.h"
#include "datasets/workspace.h"

namespace program {

using datasets::Dataset;

struct DrawOptions {
    std::string dataset;
    std::string kind;      // as --kind has it
    std::string picture;   // ends in .svg or .png
    std::string colourBy;  // an item of the polygons' table; empty: all polygons alike
    double longerSide = View::kLongerSide;  // of the map, in pixels
};

// An existing file is replaced when the picture is whole; else nothing is left behind. Throws a
// std::runtime_error whose text is for the user, and an Interrupted within an Interrupts.
void draw(const DrawOptions& options);

// A picture before its page: how much there is to see, and what draws it.
struct Picture {
    Extent extent;
    std::function<void(Canvas& canvas, const View& view)> draw;
    // On strips below and beside it, where there is something to say.
    MapUnits units = {};
    Legend legend = {};
    // Of a page in pixels that is no map; then the view has no meaning.
    double pageWidth = 0;
    double pageHeight = 0;
};

// One routine for each kind that can be drawn, each in its own file.
Picture pictureOfPlot(const Dataset& dataset);
Picture pictureOfMap(const Dataset& dataset);
Picture pictureOfCoverage(const Dataset& dataset, const std::string& colourBy);
Picture pictureOfRaster(const Dataset& dataset);
Picture pictureOfTin(const Dataset& dataset);
Picture pictureOfSymbolSet(const Dataset& dataset);

}  // namespace program

#endif
