// What reports of batches come to.
#ifndef APP_INTAKE_REPORT_SUMS_H
#define APP_INTAKE_REPORT_SUMS_H

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <unordered_map>
#include <vector>

#include "app/intake/batch/hash_table.h"
#include "app/intake/report/lines.h"

namespace program {

class Sums {
  public:
    // Takes one input's line.
    void add(const nlohmann::json& object);
    // Looks for the inputs of a list (path_list.h) that have no line, and belong to none.
    void lookFor(const std::string& list);

    LineCounts lines;

    uint64_t count(const std::string& status) const;
    uint64_t missing() const { return missing_; }

    nlohmann::ordered_json object() const;
    void print(std::ostream& stream) const;

  private:
    struct Counts {
        uint64_t inputs = 0;
        std::map<std::string, uint64_t> byStatus;
    };
    struct Saying {
        uint64_t count = 0;
        std::string level;
        std::string path;  // of the first example, and its words
        std::string text;
    };
    struct Slow {
        double seconds;
        uint64_t size;
        std::string path;
    };
    void addMessage(const std::string& path, const nlohmann::json& message);
    std::vector<const Saying*> commonest() const;

    Counts all_;
    std::map<std::string, Counts> kinds_;
    std::map<std::string, uint64_t> failures_;
    std::unordered_map<std::string, Saying> sayings_;
    std::vector<Slow> slowest_;
    uint64_t bytes_ = 0;
    uint64_t outputs_ = 0;
    uint64_t outputBytes_ = 0;
    double seconds_ = 0;
    uint64_t peak_ = 0;
    HashTable<Nothing> paths_;
    uint64_t missing_ = 0;
    std::vector<std::string> missingPaths_;  // the first ones
};

}  // namespace program

#endif
