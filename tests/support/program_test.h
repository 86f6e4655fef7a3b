// The fixture of tests of the program: commands run in this process.
#ifndef TESTS_SUPPORT_PROGRAM_TEST_H
#define TESTS_SUPPORT_PROGRAM_TEST_H

#include <sstream>
#include <string>
#include <vector>

#include "app/intake/command_line.h"
#include "tests/support/import_test.h"

namespace intake::testing {

struct Outcome {
    int status;
    std::string output;
    std::string errors;
    json object() const { return json::parse(output); }
};

class ProgramTest : public ImportTest {
  protected:
    // A word that begins with "@" stands for a file or dataset of the workspace.
    Outcome run(std::vector<std::string> words, bool terminal = false) const {
        for (std::string& word : words) {
            if (word.starts_with('@')) word = path(word.substr(1));
        }
        std::ostringstream output;
        std::ostringstream errors;
        program::Console console{output, errors, terminal};
        const int status = program::run(words, console);
        return {status, output.str(), errors.str()};
    }
};

}  // namespace intake::testing

#endif
