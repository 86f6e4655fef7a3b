// GeoTIFF by libtiff.
#include "formats/geotiff/geotiff.h"

#include "app/intake/module.h"

INTAKE_MODULE(formats::WriterMaker, formats::geotiff::Maker)
