// GeoPackage by SQLite.
#include "formats/geopackage/geopackage.h"

#include "app/intake/module.h"

INTAKE_MODULE(formats::WriterMaker, formats::geopackage::Maker)
