// GeoPackages in one, by SQLite.
#include "app/intake/module.h"
#include "formats/geopackage/gathering.h"

INTAKE_MODULE(formats::GathererMaker, formats::geopackage::Gathering)
