// What a picture is drawn on: a page with its origin at the top left, y downwards, in pixels.
#ifndef APP_INTAKE_DRAW_CANVAS_H
#define APP_INTAKE_DRAW_CANVAS_H

#include <cstdint>
#include <memory>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace program {

struct Place {
    double x = 0;
    double y = 0;
};

struct Colour {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
};

// Pixels from the top left, row by row, four bytes each: blue, green, red, and opacity (0 or 255).
struct Image {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> pixels;
};

class Canvas {
  public:
    virtual ~Canvas() = default;
    virtual void line(std::span<const Place> places, Colour colour, double width) = 0;
    // Fills the area inside the places.
    virtual void area(std::span<const Place> places, Colour colour) = 0;
    // Fills what lies inside an odd number of the rings.
    virtual void rings(std::span<const std::vector<Place>> rings, Colour colour) = 0;
    virtual void dot(Place place, double radius, Colour colour) = 0;
    // A text in UTF-8 with the left end of its baseline at a place, turned counter-clockwise.
    virtual void text(Place place, double height, double degrees, std::string_view text,
                      Colour colour) = 0;
    // An image stretched over a rectangle.
    virtual void image(Place topLeft, double width, double height, const Image& image) = 0;
    // Completes the picture; nothing is drawn after it. What could not be written is thrown as a
    // std::system_error, here or by what draws.
    virtual void finish() = 0;
};

// A picture as SVG text on a stream, which must outlive the canvas.
std::unique_ptr<Canvas> svgCanvas(std::ostream& stream, double width, double height);

// What the module "png" makes.
class Pictures {
  public:
    virtual ~Pictures() = default;
    // A picture as a PNG file.
    virtual std::unique_ptr<Canvas> png(const std::string& path, double width,
                                        double height) const = 0;
    // An image as the bytes of a PNG file.
    virtual std::string bytes(const Image& image) const = 0;
};

}  // namespace program

#endif
