// The 47 section codes and their numbers, in the order of the section table.
#ifndef STREAM_SECTION_CODES_H
#define STREAM_SECTION_CODES_H

#include <array>
#include <cstdint>
#include <string_view>

namespace intake {

struct SectionCode {
    std::string_view keyword;  // four columns of a header line: the code and a blank
    int32_t number;
};

inline constexpr std::array<SectionCode, 47> kSectionCodes = {{
    {"ARC ", 1},  {"LAB ", 2},   {"PAL ", 11},  {"PFF ", 29},  {"CNT ", 14},  {"TOL ", 22},
    {"TXT ", 16}, {"IFO ", -1},  {"ASC ", 40},  {"LNK ", 36},  {"ADP ", 42},  {"ADI ", 44},
    {"PLT ", -2}, {"ENV ", 75},  {"NXY ", 51},  {"NZ  ", 52},  {"NOD ", 53},  {"EDG ", 54},
    {"HUL ", 55}, {"NID ", 56},  {"LAT ", -3},  {"FNT ", -4},  {"CLN ", -5},  {"CMK ", -6},
    {"CSH ", -7}, {"CTX ", -8},  {"MAP ", -9},  {"SIN ", -10}, {"LOG ", 31},  {"PRJ ", 28},
    {"TMK ", 74}, {"GRD ", 13},  {"TX6 ", 76},  {"CS6 ", -11}, {"CL6 ", -12}, {"CM6 ", -13},
    {"STK ", 15}, {"CL7 ", -14}, {"CM7 ", -15}, {"CT7 ", -16}, {"CS7 ", -17}, {"RXP ", 89},
    {"RPL ", 90}, {"EOS ", 0},   {"TX7 ", 77},  {"MTD ", 78},  {"IMD ", 79},
}};

inline constexpr int32_t kEndOfFileSection = 0;
inline constexpr int32_t kGridSection = 13;

}  // namespace intake

#endif
