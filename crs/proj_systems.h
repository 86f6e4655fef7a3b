// Systems by way of PROJ and the registry that comes with it.
#ifndef CRS_PROJ_SYSTEMS_H
#define CRS_PROJ_SYSTEMS_H

#include "crs/systems.h"

namespace crs {

class ProjSystems : public Systems {
  public:
    ReferenceSystem fromText(std::string_view projectionText) const override;
    ReferenceSystem byHand(std::string_view definition) const override;
    ToWgs84 toWgs84(const ReferenceSystem& system) const override;
};

}  // namespace crs

#endif
