// What there is to say of one file.
#ifndef APP_INTAKE_CHECK_FINDING_H
#define APP_INTAKE_CHECK_FINDING_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/intake/show/show.h"
#include "app/intake/source.h"

namespace program {

struct FoundSection {
    std::string code;
    int64_t precision = 0;
    int64_t lines = 0;
    std::optional<int64_t> records;  // unknown where the section was not read to its end
};

struct FoundMessage {
    int32_t level = 0;
    std::string text;
};

struct FoundPlace {
    std::string file;  // the volume
    int64_t line = 0;
    std::string columns;  // "11 to 20"; "" for the line as such
};

// Unknown is one that could not be looked at, as where a temporary file cannot be written.
enum class Verdict { kWhole, kPartial, kNone, kUnknown };

struct Finding {
    std::string file;
    std::string container;
    std::optional<bool> compressed;  // unknown where there is no first line
    std::string headerLine;          // "" for a file without one
    std::vector<Source::Volume> volumes;
    std::string kind;
    std::vector<FoundSection> sections;
    Description dataset;  // as show tells it; empty where nothing came to be
    std::vector<FoundMessage> messages;
    int64_t leftOut = 0;  // sections and messages beyond the most that are kept
    Verdict verdict = Verdict::kNone;
    std::optional<FoundPlace> place;
    std::string looksLike;  // and what to do, where it is no interchange file
    int status = 0;
};

// Imports the file into a workspace in a temporary folder. Throws an Undecided where several files
// may be meant.
Finding findOut(const SourceOptions& options);

Description asObject(const Finding& finding);
void printFinding(const Finding& finding, std::ostream& stream);

}  // namespace program

#endif
