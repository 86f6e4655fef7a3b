// The lines of reports of batches, read back.
#ifndef APP_INTAKE_REPORT_LINES_H
#define APP_INTAKE_REPORT_LINES_H

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace program {

struct LineCounts {
    uint64_t read = 0;
    uint64_t damaged = 0;   // no object, or one of another kind
    uint64_t replaced = 0;  // by a later line of the same input
};

// Calls take for the last line of each input, in the order of the files, and of the lines in them.
// A file is read twice, and what is kept of a line is 16 bytes. Throws a std::runtime_error where
// one cannot be read.
LineCounts readReports(const std::vector<std::string>& files,
                       const std::function<void(const nlohmann::json& object)>& take);

}  // namespace program

#endif
