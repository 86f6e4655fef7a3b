#include "host/qxfeat/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>

double d_sigdig(const double* value, const int32_t* digits) {
    // More digits than this never change a number.
    constexpr int32_t kMostDigits = 18;
    if (!std::isfinite(*value)) return *value;
    char text[40];
    const auto printed =
        std::to_chars(text, text + sizeof text, *value, std::chars_format::scientific,
                      std::clamp(*digits, 1, kMostDigits) - 1);
    double rounded = *value;
    // What rounds up beyond the largest number stays as it was.
    std::from_chars(text, printed.ptr, rounded);
    return rounded;
}
