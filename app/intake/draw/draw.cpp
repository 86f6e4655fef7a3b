#include "app/intake/draw/draw.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>

#include "app/intake/module.h"
#include "datasets/stacks.h"

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

// One line a kind.
// clang-format off
constexpr Kind kKinds[] = {
    {"Coverage", pictureOfCoverage},
    {"Plot File", pictureOfPlot},
    {"Map", pictureOfMap},
    {"TIN", pictureOfTin},
    {"Lattice", pictureOfRaster},
    {"Grid", pictureOfRaster},
    {"Stack", pictureOfStack},
};
// clang-format on

Picture pictureOf(const Dataset& dataset) {
    for (const Kind& kind : kKinds) {
        if (dataset.kind == kind.label) return kind.picture(dataset);
    }
    noPicture(dataset);
}

void drawTo(const std::string& file, bool svg, const Picture& picture, double longerSide) {
    const View view(picture.extent, longerSide);
    std::ofstream stream;
    if (svg) {
        stream.open(file, std::ios::binary | std::ios::trunc);
        if (!stream) throw std::runtime_error(file + ": could not be made");
    }
    const auto canvas = svg ? svgCanvas(stream, view.width(), view.height())
                            : loadModule<Pictures>("png").png(file, view.width(), view.height());
    picture.draw(*canvas, view);
    canvas->finish();
}

}  // namespace

void draw(const std::string& path, const std::string& kind, const std::string& picture,
          double longerSide) {
    const bool svg = picture.ends_with(".svg");
    if (!svg && !picture.ends_with(".png")) {
        throw std::runtime_error(picture + ": the name of a picture ends in .svg or .png");
    }
    const Picture content = pictureOf(datasets::findDataset(path, kind));
    const std::string unfinished = picture + ".part";
    try {
        drawTo(unfinished, svg, content, longerSide);
        if (std::rename(unfinished.c_str(), picture.c_str()) != 0) {
            throw std::runtime_error(picture + ": could not be made");
        }
    } catch (...) {
        std::remove(unfinished.c_str());
        throw;
    }
}

}  // namespace program
