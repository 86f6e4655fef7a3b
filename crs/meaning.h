// What a projection text means, as far as it can be told without a registry of systems.
#ifndef CRS_MEANING_H
#define CRS_MEANING_H

#include <string>
#include <vector>

#include "crs/datums.h"
#include "crs/projection_text.h"
#include "crs/projections.h"
#include "crs/units.h"

namespace crs {

struct Meaning {
    // Why it is not wholly understood, as one sentence; empty if it is. Then nothing below holds
    // but geographic, heightUnits and the shifts.
    std::string stop;

    bool geographic = false;
    std::string heightUnits;
    double xShift = 0;  // in the unit of x and y
    double yShift = 0;

    Unit unit;

    // Either a datum, or a spheroid alone, on which latitudes and longitudes lie in a way that is
    // not known.
    const Datum* datum = nullptr;
    Spheroid spheroid{};

    // Of a projected system: the code of one that only its unit and the shifts may turn into
    // another, or else a conversion. Shifts are already in its values.
    int32_t registered = 0;
    std::string title;  // "UTM zone 17N"
    const Method* method = nullptr;
    std::vector<double> values;  // of the method's parameters: degrees, metres, factors
};

Meaning understand(const ProjectionText& text);

}  // namespace crs

#endif
