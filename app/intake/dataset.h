// What stands behind a dataset's path.
#ifndef APP_INTAKE_DATASET_H
#define APP_INTAKE_DATASET_H

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace program {

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

}  // namespace program

#endif
