// The GeoPackages of a batch in one.
#ifndef APP_INTAKE_BATCH_GATHERED_H
#define APP_INTAKE_BATCH_GATHERED_H

#include <string>

#include "app/intake/batch/options.h"

namespace program {

constexpr char kGatheredFormat[] = "geopackage";

// Each worker adds to a file of its own, in a folder that outlives a batch that is stopped or
// killed; in the end they become one, together with the one that was there.
class Gathered {
  public:
    // The folder is made where it is asked for, or emptied where a batch begins anew. Its name is
    // below that of the outputs.
    Gathered(const BatchOptions& options, const std::string& name);

    // "" where nothing is gathered.
    const std::string& name() const { return name_; }
    // When no worker is at it any more. Throws a std::runtime_error; all stays as it was then.
    void merge(const std::string& unplaced) const;

  private:
    const BatchOptions& options_;
    std::string name_;
};

}  // namespace program

#endif
