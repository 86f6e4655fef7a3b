// A TIN object: what is known of a surface while it is open, and the channels of its members.
#ifndef TIN_SURFACE_H
#define TIN_SURFACE_H

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

#include "tin/environment.h"

namespace intake {

// How a surface is opened; apart from the first these are the modes of its member channels.
enum OpenMode : int32_t {
    kScratchMode = 0,  // no files: the object only carries numbers
    kNewMode = 1,
    kReadMode = 2,
    kUpdateMode = 3,
    kEitherMode = 4
};

inline constexpr int32_t kOldestGeneration = 60000;
inline constexpr int32_t kNamedGeneration = 60100;
inline constexpr int32_t kNewestGeneration = 70001;

struct ZRange {
    float lowest = 0;
    float highest = 0;
};

struct Tin {
    std::string path;
    TINENV environment{};
    int32_t version = kNewestGeneration;  // as an integer; the record has its word
    double zFactor = 1.0;
    float noData = -3.4028235e38F;
    int32_t mode = kReadMode;
    bool isNew = false;
    int32_t optionValue = 0;  // of option 6
    // Environment, mask, coordinates, z, triangle nodes and edges, hull; 0 for none.
    std::array<int32_t, 7> channels{};

    // Lowest and highest z times the z factor, swapped when that is negative.
    ZRange zRange() const;
    void setZRange(ZRange range);
};

// An option pair: code and value. 0 and 1 set the mode, later ones overruling earlier ones.
struct TinOption {
    int32_t code;
    int32_t value;
};

// Opens a surface, in a mode other than kScratchMode with its member files. Null for a surface that
// cannot be opened, which has then been reported and left nothing open. Freed with closeTin.
Tin* TIN_OpenTin(const std::string& path, std::span<const TinOption> options);

// Makes the surface's directory if it is not there. 0, or -2 for a failure that has been reported.
int32_t TIN_CreateBattery(const std::string& path);

// Writes the environment back where the mode allows it, closes the channels and frees the object.
void closeTin(Tin* tin);

}  // namespace intake

#endif
