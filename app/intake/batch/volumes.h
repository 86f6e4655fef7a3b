// The volumes of a file that lies on the disk, by their names.
#ifndef APP_INTAKE_BATCH_VOLUMES_H
#define APP_INTAKE_BATCH_VOLUMES_H

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace program {

// Whether there is a file of some name beside the one at hand.
using IsBeside = std::function<bool(const std::string& name)>;

// Whether a file, by its name and what lies beside it, may be a further volume of another one.
bool mayFollow(std::string_view name, const IsBeside& isBeside);
// ... or may have a further one.
bool mayBeFollowed(std::string_view name, const IsBeside& isBeside);

// The paths of the volumes that follow a file. One with a header line of its own is another file;
// of a compressed one that is not known here.
std::vector<std::string> furtherVolumes(const std::string& path);

// All that tells whether a file is what it was: bytes and the latest time of its volumes.
struct Stamp {
    uint64_t size = 0;
    int64_t modified = 0;  // nanoseconds since 1970
};
void addStamp(Stamp& stamp, uint64_t size, int64_t modified);

}  // namespace program

#endif
