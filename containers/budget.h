// How much may still be expanded.
#ifndef CONTAINERS_BUDGET_H
#define CONTAINERS_BUDGET_H

#include <string>

#include "containers/archive.h"

namespace containers {

class Budget {
  public:
    Budget(const Limits& limits, std::string file) : limits_(limits), file_(std::move(file)) {}

    // From here on the ratio counts against a file of so many bytes.
    void beginFile(uint64_t fileBytes) {
        fileBytes_ = fileBytes;
        ofFile_ = 0;
    }
    // So many more bytes were expanded. Those of the member at hand are now so many, out of so many
    // that were read for it. Throws a Failure beyond a limit.
    void take(uint64_t bytes, uint64_t ofMember, uint64_t readForMember) {
        total_ += bytes;
        ofFile_ += bytes;
        if (total_ > limits_.mostBytes) {
            throw Failure(file_ + " expands to more than " + std::to_string(limits_.mostBytes) +
                          " bytes; --max-size sets another limit");
        }
        if (beyondRatio(ofMember, readForMember) || beyondRatio(ofFile_, fileBytes_)) {
            throw Failure(file_ + " expands to more than " + std::to_string(limits_.mostRatio) +
                          " times its size, as nothing does that was not made to fill a disk");
        }
    }

  private:
    // Little is never too much.
    bool beyondRatio(uint64_t expanded, uint64_t read) const {
        constexpr uint64_t kAlwaysFree = uint64_t{16} << 20;
        return expanded > kAlwaysFree && expanded / limits_.mostRatio > read;
    }

    Limits limits_;
    std::string file_;
    uint64_t total_ = 0;
    uint64_t ofFile_ = 0;
    uint64_t fileBytes_ = 0;
};

}  // namespace containers

#endif
