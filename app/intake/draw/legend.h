// What the colours of a picture mean.
#ifndef APP_INTAKE_DRAW_LEGEND_H
#define APP_INTAKE_DRAW_LEGEND_H

#include <string>
#include <vector>

#include "app/intake/draw/canvas.h"

namespace program {

struct Legend {
    struct Entry {
        Colour colour;
        std::string text;  // UTF-8
    };
    std::string title;
    std::vector<Entry> entries;  // none: there is no legend

    double width() const;
    double height() const;
    void draw(Canvas& canvas, Place topLeft) const;
};

// The text, or its beginning and an ellipsis where it has more characters.
std::string shortened(const std::string& text, std::size_t characters);

// About how wide a text is drawn.
double widthOf(const std::string& text, double height);

}  // namespace program

#endif
