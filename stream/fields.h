// The rules of an integer, a real and a logical field of a fixed-column line.
//
// Integer: blanks anywhere count for nothing; what is left is an optional sign and digits, or
// nothing, which is 0.
// Real: blanks out; an optional sign and digits with an optional point, then optionally an
// exponent: E, D, e or d with an optional sign and digits, or a sign and digits alone (1.5+03).
// Without a point the last `decimals` digits are the fraction. Without an exponent the value is
// shifted down by `scale` powers of ten. The decimal value is formed exactly and rounded once.
// NaN, Inf and Infinity stand for themselves in a whole field; blank is 0.
// Logical: the first character that is not blank is T, t, F or f; blank is false. A leading point
// is allowed (.TRUE.).
//
// None of it depends on the locale or allocates.
#ifndef STREAM_FIELDS_H
#define STREAM_FIELDS_H

#include <cstdint>
#include <string_view>

#include "stream/exact_decimals.h"
#include "stream/fast_fields.h"

namespace intake {

// False if the field breaks the rule or the value does not fit; value is then untouched.
bool parseInteger(std::string_view field, int64_t& value);
bool parseInteger(std::string_view field, int32_t& value);
bool parseInteger(std::string_view field, int16_t& value);
bool parseReal(std::string_view field, int decimals, int scale, double& value);
bool parseLogical(std::string_view field, bool& value);

// The same with the fast reading first, for widths that formats known at run time have often.
template <class T>
bool readInteger(std::string_view field, T& value) {
    switch (field.size()) {
        case 6:
            if (fast::readInteger<6>(field.data(), value)) return true;
            break;
        case 10:
            if (fast::readInteger<10>(field.data(), value)) return true;
            break;
        case 11:
            if (fast::readInteger<11>(field.data(), value)) return true;
            break;
        default:
            break;
    }
    return parseInteger(field, value);
}
inline bool readReal(std::string_view field, int decimals, int scale, double& value) {
    const char* text = field.data();
    if (field.size() == 14 && decimals == 7 && fast::readReal<7>(text, value)) return true;
    if (field.size() == 21 && decimals == 14 && fast::readReal<14>(text, value)) return true;
    if (field.size() == 24 && decimals == 17 && fast::readLongReal(text, value)) return true;
    if (fast::readFixed(field, decimals, scale, value)) return true;
    return parseReal(field, decimals, scale, value);
}

// Ends the import with the one message for a field that cannot be read: the text, its columns
// (from 1) and the line of the file that was read last, or one so many lines before it.
[[noreturn]] void failedField(std::string_view field, std::size_t firstColumn,
                              int64_t linesBack = 0);

// A field at a place of a line, for formats that are only known at run time.
template <class T>
T integerField(std::string_view field, std::size_t firstColumn) {
    T value{};
    if (!readInteger(field, value)) failedField(field, firstColumn);
    return value;
}
double realField(std::string_view field, std::size_t firstColumn, int decimals, int scale = 1);

}  // namespace intake

#endif
