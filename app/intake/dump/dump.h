// intake dump: every record of a dataset as JSON Lines (docs/dump-format.md).
#ifndef APP_INTAKE_DUMP_DUMP_H
#define APP_INTAKE_DUMP_DUMP_H

#include <ostream>
#include <string>
#include <vector>

#include "app/intake/json_line.h"
#include "datasets/workspace.h"

namespace program {

using datasets::Dataset;

struct DumpOptions {
    std::vector<std::string> classes;  // only these; all if empty
    std::string kind;                  // what to take the dataset for, "" to find out
};

// Writes the dump of the dataset at a path. Throws a std::runtime_error for a path that is none.
void dump(const std::string& path, const DumpOptions& options, std::ostream& stream);

// Where the parts of a dump go, with the choice of classes.
class Dump {
  public:
    Dump(std::ostream& stream, const DumpOptions& options) : output_(stream), options_(options) {}
    bool wants(std::string_view className) const;
    JsonOutput& output() { return output_; }

  private:
    JsonOutput output_;
    const DumpOptions& options_;
};

// The first line of a dataset that has nothing more to say there than what it is.
void dumpDatasetLine(Dump& dump, const Dataset& dataset);

// One routine for each kind of dataset, each in its own file, its dataset line first.
void dumpCoverage(Dump& dump, const Dataset& dataset);
void dumpTin(Dump& dump, const Dataset& dataset);
void dumpLattice(Dump& dump, const Dataset& dataset);
void dumpGrid(Dump& dump, const Dataset& dataset);
void dumpStack(Dump& dump, const Dataset& dataset);
void dumpSymbolSet(Dump& dump, const Dataset& dataset);
void dumpFont(Dump& dump, const Dataset& dataset);
void dumpPlot(Dump& dump, const Dataset& dataset);
void dumpMap(Dump& dump, const Dataset& dataset);
void dumpInfoDatafile(Dump& dump, const Dataset& dataset);
void dumpTextFile(Dump& dump, const Dataset& dataset);

// What stands beside a dataset of any kind: its log, projection and metadata, one object each; the
// tables that belong to it with their records and metadata; and the spatial indexes of a coverage.
void dumpSideTexts(Dump& dump, const std::string& dataset);
void dumpTables(Dump& dump, const std::string& dataset);
void dumpIndexes(Dump& dump, const std::string& coverage);

}  // namespace program

#endif
