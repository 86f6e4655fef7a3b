// GeoPackage 1.3: one SQLite file with features, tables, texts and spatial indexes.
#ifndef FORMATS_GEOPACKAGE_GEOPACKAGE_H
#define FORMATS_GEOPACKAGE_GEOPACKAGE_H

#include "formats/writer.h"

namespace formats::geopackage {

// A layer is a table with the key fid, the geometry geom and a column for each of the layer's. The
// spatial index of a layer is built when the layer ends. Memory is bounded whatever the number of
// features. The same calls give the same bytes where SOURCE_DATE_EPOCH holds the time still.
//
// What is not finite is no number in SQLite: such a value is missing.
class Maker : public WriterMaker {
  public:
    std::unique_ptr<Writer> make(const std::string& path, const Options& options) const override;
};

}  // namespace formats::geopackage

#endif
