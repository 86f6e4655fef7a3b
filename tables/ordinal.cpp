#include <cstdlib>
#include <string>

#include "tables/table.h"

namespace intake {

void ORDNAM(const int32_t& number, FixedText<16>& text) {
    const int32_t remainder = std::abs(number % 100);
    const char* ending = "th";
    if (remainder / 10 != 1) {
        if (remainder % 10 == 1) ending = "st";
        if (remainder % 10 == 2) ending = "nd";
        if (remainder % 10 == 3) ending = "rd";
    }
    text = std::string_view(std::to_string(number) + ending);
}

}  // namespace intake
