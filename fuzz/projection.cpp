// Projection texts: parsed, and understood or not.
#include "crs/meaning.h"
#include "fuzz/scratch.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const crs::Meaning meaning =
        crs::understand(crs::parseProjectionText({reinterpret_cast<const char*>(data), size}));
    fuzz::require(meaning.stop.size() < 300, "what is said of a text is short");
    if (!meaning.stop.empty()) return 0;
    fuzz::require(meaning.unit.size > 0, "a unit is understood");
    fuzz::require(meaning.datum != nullptr || meaning.spheroid.semiMajor > 6e6, "a base is");
    const bool conversion = meaning.method != nullptr || meaning.registered != 0;
    fuzz::require(meaning.geographic != conversion, "so is what is done with it");
    fuzz::require(
        meaning.method == nullptr || meaning.values.size() == meaning.method->parameters.size(),
        "each parameter has its value");
    return 0;
}
