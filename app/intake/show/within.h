// intake show --within: the features whose box meets a rectangle.
#ifndef APP_INTAKE_SHOW_WITHIN_H
#define APP_INTAKE_SHOW_WITHIN_H

#include "app/intake/show/show.h"
#include "datasets/point.h"

namespace program {

// The rectangle of a text "XMIN,YMIN,XMAX,YMAX". Throws a std::runtime_error if it is none.
datasets::Box parseRectangle(const std::string& text);

// For each class of features that the coverage has: [{class, subclass, found, by, records}, ...],
// by "index" or, where there is no index that could be used, "scan". Throws a std::runtime_error
// for a dataset of another kind.
Description featuresWithin(const Dataset& dataset, const datasets::Box& rectangle);

// The dataset's kind and name with the features in the rectangle of a text, as "within".
Description describeWithin(const std::string& path, const std::string& kind,
                           const std::string& rectangle);

}  // namespace program

#endif
