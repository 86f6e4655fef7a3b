// The lines of an annotation's text, each with the places that it runs along.
#ifndef DATASETS_ANNOTATION_LINES_H
#define DATASETS_ANNOTATION_LINES_H

#include <span>
#include <string_view>
#include <vector>

#include "datasets/features.h"

namespace datasets {

struct TextLine {
    std::string_view text;  // without trailing blanks
    std::span<const Point> points;
};

// The lines that are to be placed, in their order, valid as long as the annotation is. Where the
// tables of the annotation do not part its text and its points, all of it is one line; without
// points there is none.
std::vector<TextLine> placedLines(const Annotation& annotation);

}  // namespace datasets

#endif
