// Numbers as text, appended.
#ifndef FORMATS_NUMBERS_H
#define FORMATS_NUMBERS_H

#include <cstdint>
#include <string>

#include "formats/writer.h"

namespace formats {

void appendInteger(std::string& text, int64_t value);

// The shortest form that reads back to the same real of 8 bytes, or of 4.
void appendShortest(std::string& text, double value);
void appendShortest(std::string& text, float value);
// As the column has it.
void appendReal(std::string& text, double value, const Column& column);

// Rounded to 7 decimals, without zeros at the end.
void appendSevenDecimals(std::string& text, double value);

// 2024-02-29
void appendDate(std::string& text, const Date& date);

}  // namespace formats

#endif
