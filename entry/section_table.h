// The section table: one row a section, in the order of the section codes.
#ifndef ENTRY_SECTION_TABLE_H
#define ENTRY_SECTION_TABLE_H

#include <array>
#include <cstdint>
#include <string_view>

#include "entry/import_state.h"

namespace intake {

// What the driver does when a section's routine is back.
enum class After { kNext, kEnd };

struct SectionRow {
    std::string_view code;  // without its blank
    Kind kind;              // of a file that begins with this section
    After after;
    // Runs the section's routine; its answer lands in IMPSTS. Null for EOS, which has none. The
    // driver has more to do at ENV, STK, IFO and IMD.
    void (*run)(ImportState& import);
};

// Row of a section number, null if there is none.
const SectionRow* findSectionRow(int32_t number);

const std::array<SectionRow, 47>& sectionTable();

}  // namespace intake

#endif
