// How large datasets and tables are, and when they were last changed.
#ifndef APP_INTAKE_WORKSPACE_SIZES_H
#define APP_INTAKE_WORKSPACE_SIZES_H

#include <cstdint>
#include <map>
#include <string>

#include "datasets/tables.h"

namespace program {

struct Size {
    uint64_t bytes = 0;
    int64_t changed = 0;  // seconds since 1970, of the file that was changed last

    void add(const Size& other);
};

class WorkspaceSizes {
  public:
    explicit WorkspaceSizes(const std::string& workspace);
    // Of a dataset with the tables that belong to it.
    Size of(const std::string& dataset) const;
    Size of(const datasets::Table& table) const;

  private:
    std::map<std::string, Size> tables_;  // by the front of the names of a table's files
};

// "12.3 MB", and "2026-01-31 12:00" in the time of the place.
std::string bytesText(uint64_t bytes);
std::string timeText(int64_t seconds);

}  // namespace program

#endif
