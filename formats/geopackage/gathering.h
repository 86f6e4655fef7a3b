// Gathers GeoPackages in one.
#ifndef FORMATS_GEOPACKAGE_GATHERING_H
#define FORMATS_GEOPACKAGE_GATHERING_H

#include "formats/gatherer.h"

namespace formats::geopackage {

class Gathering : public GathererMaker {
  public:
    std::unique_ptr<Gatherer> open(const std::string& path) const override;
};

}  // namespace formats::geopackage

#endif
