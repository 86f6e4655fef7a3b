// Lines of fixed columns, as the writer of an interchange file lays them out.
#ifndef TESTS_SUPPORT_COLUMNS_H
#define TESTS_SUPPORT_COLUMNS_H

#include <cstdio>
#include <initializer_list>
#include <string>

namespace intake::testing {

// Integers of ten columns.
inline std::string integers(std::initializer_list<int> values) {
    std::string text;
    char field[16];
    for (const int value : values) {
        std::snprintf(field, sizeof field, "%10d", value);
        text += field;
    }
    return text;
}

// Reals of 14 columns in a section of precision 2, of 21 in any other.
inline std::string reals(int precision, std::initializer_list<double> values) {
    std::string text;
    char field[32];
    for (const double value : values) {
        std::snprintf(field, sizeof field, precision == 2 ? "%14.7E" : "%21.14E", value);
        text += field;
    }
    return text;
}

}  // namespace intake::testing

#endif
