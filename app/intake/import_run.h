// One import by the library, with what it told on the way.
#ifndef APP_INTAKE_IMPORT_RUN_H
#define APP_INTAKE_IMPORT_RUN_H

#include <cstdint>
#include <string>
#include <string_view>

#include "app/intake/source.h"

namespace program {

// Hears what the library tells. Names of temporary files are replaced by the user's.
class ImportListener {
  public:
    virtual void message(int32_t level, const std::string& text) = 0;
    virtual void kindDecided(const std::string& kind) = 0;
    virtual void sectionBegins(const std::string& code, int64_t precision) = 0;
    virtual void sectionEnds(const std::string& code, int64_t lines) = 0;
    // The section at hand, "" for the one before, and the bytes of the volume read so far.
    virtual void progress(std::string_view code, int64_t bytes) = 0;
    // By an error, behind so many lines of a volume.
    virtual void endedIn(const std::string& volume, int64_t line) = 0;

  protected:
    ~ImportListener() = default;
};

// Runs the import, which an interrupt stops (interrupts.h). Gives what the library does: 1, or 0
// where an error ended it.
int32_t runImport(const Source& source, const std::string& dataset, bool quiet,
                  ImportListener& listener);

// The first file or folder that the last import did not make because its name cannot be one, or is
// another's, and why: "data/ROADS: there is no folder data". Empty if there was none.
std::string refusedWrite();

}  // namespace program

#endif
