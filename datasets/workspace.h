// What stands behind a path, and what a workspace holds.
#ifndef DATASETS_WORKSPACE_H
#define DATASETS_WORKSPACE_H

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace datasets {

struct Dataset {
    std::string path;
    std::string name;  // the last part of the path
    std::string kind;  // a label: "Coverage", "Info Datafile", ...
};

// Every kind that fits what is stored at the path, found through the companions; a symbol set, a
// font or a text file does not say what it is, so there may be several. Empty if nothing is there.
std::vector<std::string> kindsOf(const std::string& path);

struct NoDataset : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The dataset at a path. kind, if it is not empty, says what it is taken for. Throws a
// std::runtime_error whose text is for the user: a NoDataset where there is none or the kind does
// not fit, another where more than one kind fits and none was said.
Dataset findDataset(const std::string& path, const std::string& kind);

// The names in a folder by their bytes, "." and ".." not among them; nothing if the path is none.
std::optional<std::vector<std::string>> namesIn(const std::string& folder);

// What a workspace holds beside its tables (tables.h), by name, with the kinds that fit. Empty for
// a path that is no folder.
struct Stored {
    std::string path;
    std::string name;
    std::vector<std::string> kinds;
};
std::vector<Stored> datasetsIn(const std::string& workspace);

}  // namespace datasets

#endif
