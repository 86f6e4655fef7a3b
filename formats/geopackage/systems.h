// The reference systems of a GeoPackage: gpkg_spatial_ref_sys.
#ifndef FORMATS_GEOPACKAGE_SYSTEMS_H
#define FORMATS_GEOPACKAGE_SYSTEMS_H

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "crs/reference_system.h"
#include "formats/geopackage/database.h"

namespace formats::geopackage {

class Systems {
  public:
    // Writes the three rows that each GeoPackage has.
    explicit Systems(Database& database);

    // The srs_id of a system: -1 and 0 where nothing is known, the code of the EPSG registry where
    // there is one, else a number of our own from 100,000, beyond those of the registry.
    int32_t idOf(const crs::ReferenceSystem& system);

  private:
    Database& database_;
    std::map<std::string, int32_t> ids_;  // by definition
    int32_t nextOwn_ = 100'000;
};

}  // namespace formats::geopackage

#endif
