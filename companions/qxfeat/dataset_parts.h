// What belongs to a dataset in its workspace.
#ifndef COMPANIONS_QXFEAT_DATASET_PARTS_H
#define COMPANIONS_QXFEAT_DATASET_PARTS_H

#include <string>
#include <string_view>
#include <vector>

#include "companions/qxfeat/catalogue.h"

namespace qxfeat {

struct DatasetParts {
    std::string workspace;
    std::string name;
    bool stored = false;          // it has a file or folder of its name
    bool hasFolders = false;      // there are folders in that
    bool ownedByAnother = false;  // it is a table that belongs to a dataset
    std::vector<Listing> tables;

    bool nothing() const { return !stored && tables.empty(); }
};

// The parts of the dataset at a path. Those of a damaged catalogue are not known.
DatasetParts partsOf(std::string_view dataset);

// Whether a dataset can have the name: one that is no path, and not that of the tables' folder.
bool isDatasetName(std::string_view name);

}  // namespace qxfeat

#endif
