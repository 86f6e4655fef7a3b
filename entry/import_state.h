// What the driver knows while an import runs.
#ifndef ENTRY_IMPORT_STATE_H
#define ENTRY_IMPORT_STATE_H

#include "stream/types.h"

namespace intake {

// Kinds of dataset.
enum Kind : int32_t {
    kNoKind = 0,
    kCoverage = 1,
    kInfoDatafile = 2,
    kTextFile = 3,
    kPlotFile = 4,
    kTin = 5,
    kLattice = 6,
    kFontFile = 7,
    kLinesetFile = 8,
    kMarkersetFile = 9,
    kShadesetFile = 10,
    kTextsetFile = 11,
    kMap = 12,
    kGrid = 13,
    kAuto = 14,
    kStack = 15
};
inline constexpr uint32_t kHighestKind = kStack;

// The label of a kind; blank for none.
FixedText<16> kindLabel(int32_t kind);

struct ImportState {
    Name DSNAME;         // the name given to every section routine; rewritten in a stack
    Name targetName;     // the name as the caller gave it
    int32_t SECNUM = 0;  // section number of the section at hand
    int32_t SECPRC = 0;  // its precision code
    int32_t HDRPRC = 0;  // without a file header: the code that the section header itself said
    int32_t PRCHNT = 0;  // what the precision pass found, 0 for nothing
    int32_t IMPKND = 0;  // the kind of dataset being made
    int32_t INFKND = 0;  // the kind as the table routines see it
    Status IMPSTS = kSuccess;  // status of the last operation
    bool TINOPN = false;       // ENV has opened the TIN layer
    bool INSTCK = false;       // the grids that follow are those of a stack
    bool STKEND = false;       // the stack routine's answer: nothing more to do
    bool IMPSKP = false;       // skip the side sections of the grid at hand
    Handle STKUNT = 0;         // channel of the scratch list of grid names, 0 while there is none
    Name STKNAM;               // path of that list
    bool IMPFST = true;        // no section has been read yet
};

}  // namespace intake

#endif
