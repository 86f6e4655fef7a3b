// Imports on a machine that fails, each in a process of its own.
#ifndef TESTS_MACHINE_SWEEP_H
#define TESTS_MACHINE_SWEEP_H

#include <map>
#include <string>
#include <vector>

#include "tests/support/program_test.h"

namespace intake::testing {

// The path of a seed of the fuzz targets.
std::string seed(const std::string& name);

// How an import in another process ended.
struct Ended {
    int signal = 0;      // that ended the process, 0 for none
    std::string failed;  // the call that did
    int32_t result = -1;
    int leaked = 0;  // descriptors that were left open
    std::vector<Message> messages;

    int32_t worst() const;
};

// Relative paths and bytes of files.
using Tree = std::map<std::string, std::string>;

// A workspace with another dataset in it, which is made anew for each import of a sample.
class SweepTest : public ProgramTest {
  protected:
    // The sample becomes the interchange file; "\f" in it is where the next volume begins. What its
    // import gives on a sound machine is kept.
    void begin(const std::string& sample);
    // Puts the workspace back to its start and imports with a fault (see faults.h), or none.
    Ended importAnew(const std::string& fault);
    Ended importNow(const std::string& fault, const std::string& dataset, const std::string& file);

    // What always holds afterwards: the other dataset as it was, the catalogue of whole tables, and
    // a dataset that can be read or is said not to be.
    void expectSoundWorkspace() const;
    // Names and record counts of the tables that the catalogue lists; each can be read to its end.
    std::map<std::string, int32_t> tables() const;
    Tree stored() const;

    Ended sound_;
    Tree soundFiles_;
    std::map<std::string, int32_t> soundTables_;

  private:
    std::string kind_;
    Tree other_;
};

// The number of the next call to fail: all of them with INTAKE_SWEEP=whole in the environment,
// otherwise ever fewer.
int next(int number);

}  // namespace intake::testing

#endif
