// A place in coverage units, as the records of features hold it.
#ifndef COVERAGE_POINT_H
#define COVERAGE_POINT_H

namespace intake {

struct Point {
    double x = 0;
    double y = 0;
};
static_assert(sizeof(Point) == 16);

}  // namespace intake

#endif
