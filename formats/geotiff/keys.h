// The keys by which a GeoTIFF says where on earth it lies.
#ifndef FORMATS_GEOTIFF_KEYS_H
#define FORMATS_GEOTIFF_KEYS_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "crs/reference_system.h"

namespace formats::geotiff {

struct Keys {
    // By number: the value itself, or where it stands in one of the lists below.
    struct Entry {
        uint16_t list = 0;
        uint16_t count = 1;
        uint16_t value = 0;
    };
    std::map<uint16_t, Entry> entries;
    std::vector<double> doubles;
    std::string texts;
    std::string uncoded;  // the name of a projection that has no code; its definition is a text

    // As the tag has it.
    std::vector<uint16_t> directory() const;
};

// By its code where the registry has the system, and by all of its parts where it does not. What is
// not known is undefined, with its text in the citation.
Keys keysOf(const crs::ReferenceSystem& system, bool points);

}  // namespace formats::geotiff

#endif
