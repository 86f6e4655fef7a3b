// Properties of the current surface, by the numbers of the command layer.
#ifndef TIN_PROPERTIES_H
#define TIN_PROPERTIES_H

#include <cstdint>

namespace intake {

enum TinProperty : int32_t {
    kNodeCount = 3,             // int32_t
    kTriangleCount = 4,         // int32_t
    kHullCount = 5,             // int32_t; where it is 0, the second one
    kBox = 6,                   // four doubles
    kFifthReal = 7,             // double
    kSixthReal = 8,             // double
    kLowestZ = 9,               // float
    kHighestZ = 10,             // float
    kNoDataZ = 11,              // float; the same for every surface, and not to be set
    kFormatVersion = 12,        // float, such as 6.1; not to be set
    kSecondTriangleCount = 13,  // int32_t; where it is 0, the first one
    kSecondNodeCount = 14,      // int32_t; where it is 0, the first one
    kSecondHullCount = 15       // int32_t
};

// Reads a property of the current surface, and sets it, without the other count's standing in. Any
// other number does nothing, and so does every number while no surface is open.
void tifget(int32_t kind, void* value);
void tifset(const void* value, int32_t kind);

}  // namespace intake

#endif
