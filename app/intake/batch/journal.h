// The report of a batch as a file: what is done already, and what is added to it.
#ifndef APP_INTAKE_BATCH_JOURNAL_H
#define APP_INTAKE_BATCH_JOURNAL_H

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "app/intake/batch/hash_table.h"
#include "app/intake/batch/options.h"
#include "app/intake/batch/volumes.h"

namespace program {

// A report is there, and nothing was said of what is to become of it.
struct ReportStands : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class Journal {
  public:
    // Opens the report, for this process alone. A line that was not written to its end is taken
    // away. Throws a std::runtime_error whose text is for the user.
    Journal(const BatchOptions& options, const std::string& path);
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    // Whether an input is one to be taken, by what is asked for and what the report has of it.
    bool isWanted(std::string_view path, const Stamp& stamp) const;

    // Adds whole lines: all of them, or none and a std::runtime_error.
    void append(std::string_view lines);
    void sync();
    int descriptor() const { return file_; }

  private:
    void cutTornLine();
    void readDone();

    const BatchOptions& options_;
    std::string path_;
    int file_;
    HashTable<uint64_t> done_;
};

}  // namespace program

#endif
