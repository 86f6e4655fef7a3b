// Archives and compressed files by libarchive.
#include "app/intake/module.h"
#include "containers/expander.h"

INTAKE_MODULE(containers::Archive, containers::Expander)
