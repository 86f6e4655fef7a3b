// Reference systems by PROJ.
#include "app/intake/module.h"
#include "crs/proj_systems.h"

INTAKE_MODULE(crs::Systems, crs::ProjSystems)
