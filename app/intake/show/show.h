// intake show: what a dataset is, how large, where, and what it holds.
#ifndef APP_INTAKE_SHOW_SHOW_H
#define APP_INTAKE_SHOW_SHOW_H

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>

#include "datasets/workspace.h"

namespace program {

using datasets::Dataset;

// What is shown, as one object: kind and name, then what the kind has of precision, extent
// [xmin, ymin, xmax, ymax], sizes and counts, tables with their items, and files with their bytes.
// All of it comes from the heads of the stored files: no record is read, however many there are,
// but for the small sets of symbols, whose numbers are looked at.
using Description = nlohmann::ordered_json;

// The description of the dataset at a path. kind says what it is taken for, "" to find out. Throws
// as findDataset does.
Description describe(const std::string& path, const std::string& kind);

// Takes one head line of the dataset's dump (docs/dump-format.md) into its description.
void describeHead(const nlohmann::json& head, Description& description);
// The classes that describeHead knows.
const std::vector<std::string>& headClasses();

// The files of a dataset with their bytes: [{name, bytes}, ...] by name.
Description filesOf(const Dataset& dataset);

// Prints a description as text: a line a value, a block an object, columns for a list of objects.
void print(const Description& description, std::ostream& stream);

}  // namespace program

#endif
