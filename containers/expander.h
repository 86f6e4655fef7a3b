// The Archive that libarchive reads.
#ifndef CONTAINERS_EXPANDER_H
#define CONTAINERS_EXPANDER_H

#include "containers/archive.h"

namespace containers {

class Expander final : public Archive {
  public:
    Expander() = default;
    Expansion expand(const Request& request) const override;
};

}  // namespace containers

#endif
