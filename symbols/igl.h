// The record files of the graphics layer, as far as fonts need them. Errors never abort: a failure
// leaves its number, routine times 100 plus a code, until IGLERR fetches it.
#ifndef SYMBOLS_IGL_H
#define SYMBOLS_IGL_H

#include <array>
#include <cstdint>
#include <span>

#include "stream/types.h"

namespace intake {

// Starts the layer: no error, no unit open. IGLEND closes the units that remain.
void IGLINI(int32_t first, int32_t second);
void IGLEND();

// The error number, 0 for none; with clear it is forgotten.
int32_t IGLERR(bool clear);
// An error number in words.
FixedText<80> IGLTXT(int32_t number);

// Opens a unit from 1 to 16 on a file of the current directory, whose name is taken in lower case.
// Of the types 1 to 6 only 5, the record file, is served. A file that exists is opened as it is;
// one that does not is made with recordCount records of zeros.
void IGLOPN(int32_t unit, const Name& name, int32_t type, int32_t recordCount,
            int32_t wordsPerRecord);

inline constexpr std::size_t kFontReals = 20;
// Stores the record of a number from 1 to the record count.
void IGLWRT(int32_t unit, int32_t record, std::span<float, kFontReals> reals);

// Closes a unit and keeps its file.
void IGLCLS(int32_t unit, bool unused);

}  // namespace intake

#endif
