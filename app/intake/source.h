// The interchange file that a command is given, in whatever it came.
#ifndef APP_INTAKE_SOURCE_H
#define APP_INTAKE_SOURCE_H

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "app/intake/temporary_folder.h"

namespace program {

// What the user gave as FILE: a path, "-" for standard input, or either with "::" and the name of a
// file in it.
struct SourceOptions {
    std::string file;
    uint64_t mostBytes = uint64_t{64} << 30;  // that may be expanded
};

// Several files may be meant. The text lists them; the names are those that FILE takes, none where
// they came on standard input, which does not come again.
struct Undecided : std::runtime_error {
    Undecided(const std::string& text, std::vector<std::string> files)
        : std::runtime_error(text), names(std::move(files)) {}
    std::vector<std::string> names;
};

// What was given is there and holds no interchange file, or not the one that is asked for.
struct NotInIt : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class Source {
  public:
    // Finds the file. One that is in a container, or comes on standard input, is expanded to a
    // temporary folder that goes with the Source. Throws a std::runtime_error whose text is for the
    // user, an Undecided where the user has to choose.
    explicit Source(const SourceOptions& options);

    // For the library: of the first volume, the others are found from its name.
    const std::string& path() const { return path_; }
    // What holds it: "gzip", "tar in gzip"; "" for a file that lies there as it is.
    const std::string& container() const { return container_; }
    // A message of the library with the user's names in it instead of temporary ones.
    std::string shown(std::string_view message) const;

    struct Volume {
        std::string name;
        std::string path;
        uint64_t bytes;
    };
    std::vector<Volume> volumes() const;
    // Whether its first line is one that an interchange file begins with. The library passes over
    // what stands before the first section, as when a later volume is taken for the first.
    bool beginsWell() const;

  private:
    void takeStandardInput(uint64_t mostBytes);
    void expand(const SourceOptions& options, const std::string& shownAs,
                const std::string& wanted);
    void name(const std::string& temporary, const std::string& shown) {
        names_.emplace_back(temporary, shown);
    }

    std::unique_ptr<TemporaryFolder> folder_;
    std::string path_;
    std::string container_;
    std::vector<std::pair<std::string, std::string>> names_;
    std::vector<Volume> expanded_;
};

}  // namespace program

#endif
