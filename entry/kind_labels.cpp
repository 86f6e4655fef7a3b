#include <array>

#include "entry/import_state.h"

namespace intake {

FixedText<16> kindLabel(int32_t kind) {
    constexpr std::array<std::string_view, kHighestKind + 1> kLabels = {
        "",        "Coverage",  "Info Datafile", "Text File",      "Plot File",     "TIN",
        "Lattice", "Font File", "Lineset File",  "Markerset File", "Shadeset File", "Textset File",
        "Map",     "Grid",      "Auto",          "Stack"};
    if (kind < 0 || static_cast<uint32_t>(kind) > kHighestKind) return {};
    return kLabels[static_cast<std::size_t>(kind)];
}

}  // namespace intake
