// Many outputs of one format in one file: their layers, one behind the other.
#ifndef FORMATS_GATHERER_H
#define FORMATS_GATHERER_H

#include <memory>
#include <string>

namespace formats {

// Each layer gets the rows of all layers of its name, geometry and reference system, with two
// columns in front of its own: source_file and source_fid, the row's number there. A column of a
// name that is there with another type gets one of its own. The table "sources" has a row for each
// source. Failures are std::runtime_errors that name the file.
class Gatherer {
  public:
    virtual ~Gatherer() = default;
    // Adds all layers of a file, or none: what was added of the same source before goes. The source
    // is UTF-8.
    virtual void add(const std::string& path, const std::string& source) = 0;
    // ... of a file that was gathered itself, whose rows keep their sources.
    virtual void addGathered(const std::string& path) = 0;
    // Makes what readers want beside the rows: spatial indexes and extents. Nothing is added behind
    // it.
    virtual void finish() = 0;
};

class GathererMaker {
  public:
    virtual ~GathererMaker() = default;
    // Opens a file to add to, or makes it. What a process left that was killed at it is in order
    // again.
    virtual std::unique_ptr<Gatherer> open(const std::string& path) const = 0;
};

}  // namespace formats

#endif
