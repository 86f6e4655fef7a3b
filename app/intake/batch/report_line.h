// The line of one input in the report of a batch (docs/archive.md).
#ifndef APP_INTAKE_BATCH_REPORT_LINE_H
#define APP_INTAKE_BATCH_REPORT_LINE_H

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/intake/batch/message.h"
#include "app/intake/batch/options.h"
#include "app/intake/import_run.h"

namespace program {

struct MadeOutput {
    std::string name;     // below the folder of outputs
    std::string dataset;  // of a workspace, the one in it
    uint64_t size = 0;
    std::vector<std::pair<std::string, int64_t>> layers;  // and tables, with their features
};

// What an input comes to, while it does. Listens to its import.
class Told : public ImportListener {
  public:
    std::string sha256;
    std::vector<std::string> volumes;  // the further ones
    uint64_t size = 0;
    std::string kind;
    std::string failure;  // a word, where it failed
    std::vector<MadeOutput> outputs;
    std::string thumbnail;
    double seconds = 0;
    uint64_t peakBytes = 0;

    void message(int32_t level, const std::string& text) override;
    void kindDecided(const std::string& decided) override { kind = decided; }
    void sectionBegins(const std::string&, int64_t) override {}
    void sectionEnds(const std::string& code, int64_t lines) override;
    void progress(std::string_view code, int64_t bytes) override;
    void endedIn(const std::string&, int64_t) override {}

    // A message of the program's own.
    void tell(const char* level, const std::string& text);
    // The worst so far.
    int32_t worst() const { return worst_; }
    // Names of temporary folders are nobody's business.
    void hide(const std::string& folder) { hidden_.push_back(folder); }

    // The line, with its line feed.
    std::string line(const Job& job, Outcome outcome, const BatchOptions& options) const;

  private:
    int32_t worst_ = 0;
    std::vector<std::string> hidden_;
    std::vector<std::pair<const char*, std::string>> messages_;
    std::vector<std::pair<std::string, int64_t>> sections_;
    uint64_t leftOut_ = 0;
};

// The name of a status.
const char* statusName(Outcome outcome);

// "2026-03-04T05:06:07.123456789Z"
std::string stampText(int64_t nanoseconds);

}  // namespace program

#endif
