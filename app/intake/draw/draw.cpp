#include "app/intake/draw/draw.h"

#include <fstream>
#include <stdexcept>
#include <system_error>

#include "app/intake/interrupts.h"
#include "app/intake/module.h"
#include "datasets/stacks.h"
#include "formats/output.h"

namespace program {

namespace {

[[noreturn]] void noPicture(const Dataset& dataset) {
    throw std::runtime_error(dataset.path + ": a " + dataset.kind + " has no picture");
}

// The first of its grids stands for a stack.
Picture pictureOfStack(const Dataset& dataset) {
    const std::vector<Dataset> grids = datasets::memberGrids(dataset.path);
    if (grids.empty()) noPicture(dataset);
    return pictureOfRaster(grids.front());
}

struct Kind {
    const char* label;
    Picture (*picture)(const Dataset& dataset);
};

// One line a kind that has one picture; a coverage has as many as it has items.
// clang-format off
constexpr Kind kKinds[] = {
    {"Plot File", pictureOfPlot},
    {"Map", pictureOfMap},
    {"TIN", pictureOfTin},
    {"Lattice", pictureOfRaster},
    {"Grid", pictureOfRaster},
    {"Stack", pictureOfStack},
    {"Lineset File", pictureOfSymbolSet},
    {"Markerset File", pictureOfSymbolSet},
    {"Shadeset File", pictureOfSymbolSet},
    {"Textset File", pictureOfSymbolSet},
};
// clang-format on

Picture pictureOf(const Dataset& dataset, const std::string& colourBy) {
    if (dataset.kind == "Coverage") return pictureOfCoverage(dataset, colourBy);
    if (!colourBy.empty()) {
        throw std::runtime_error(dataset.path + ": a " + dataset.kind +
                                 " has no polygons to colour");
    }
    for (const Kind& kind : kKinds) {
        if (dataset.kind == kind.label) return kind.picture(dataset);
    }
    noPicture(dataset);
}

// A page with the picture at its top left, the legend beside and the scale bar below it.
struct Page {
    Page(const Picture& picture, const View& view)
        : isSheet(picture.pageWidth > 0),
          width(isSheet ? picture.pageWidth : view.width()),
          height(isSheet ? picture.pageHeight : view.height()),
          bar(picture.units, width, view.scale()) {
        if (bar) {
            barPlace = {View::kMargin, height};
            height += ScaleBar::kHeight;
            width = std::max(width, bar.width() + 2 * View::kMargin);
        }
        if (!picture.legend.entries.empty()) {
            legendPlace = {width, View::kMargin};
            width += picture.legend.width() + View::kMargin;
            height = std::max(height, picture.legend.height() + 2 * View::kMargin);
        }
    }

    bool isSheet;
    double width;
    double height;
    ScaleBar bar;
    Place barPlace;
    Place legendPlace;
};

void drawTo(const std::string& file, bool svg, const Picture& picture, double longerSide) {
    const View view(picture.extent, longerSide);
    const Page page(picture, view);
    std::ofstream stream;
    if (svg) {
        stream.open(file, std::ios::binary | std::ios::trunc);
        if (!stream) throw std::runtime_error(file + ": could not be made");
    }
    const auto canvas = svg ? svgCanvas(stream, page.width, page.height)
                            : loadModule<Pictures>("png").png(file, page.width, page.height);
    picture.draw(*canvas, view);
    page.bar.draw(*canvas, page.barPlace);
    picture.legend.draw(*canvas, page.legendPlace);
    canvas->finish();
}

}  // namespace

void draw(const DrawOptions& options) {
    const std::string& picture = options.picture;
    const bool svg = picture.ends_with(".svg");
    if (!svg && !picture.ends_with(".png")) {
        throw std::runtime_error(picture + ": the name of a picture ends in .svg or .png");
    }
    const Picture content =
        pictureOf(datasets::findDataset(options.dataset, options.kind), options.colourBy);
    formats::Part part(picture, formats::Part::Kind::kFile, true);
    try {
        drawTo(part.path(), svg, content, options.longerSide);
    } catch (const std::system_error& error) {
        formats::failed(picture, error.code().value());
    }
    throwIfInterrupted();
    part.putInPlace();
}

}  // namespace program
