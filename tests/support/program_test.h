// The fixture of tests of the program: commands run in this process, with a folder for temporary
// files of their own in which nothing may be left.
#ifndef TESTS_SUPPORT_PROGRAM_TEST_H
#define TESTS_SUPPORT_PROGRAM_TEST_H

#include <cstdlib>
#include <filesystem>
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
    ProgramTest() { setenv("TMPDIR", temporary().c_str(), 1); }
    ~ProgramTest() override {
        for (const auto& left : std::filesystem::directory_iterator(temporary())) {
            ADD_FAILURE() << "left behind: " << left.path();
        }
        unsetenv("TMPDIR");
        if (!before_.empty()) setenv("TMPDIR", before_.c_str(), 1);
    }

    std::string temporary() const {
        return std::filesystem::path(temporary_.path("any")).parent_path().string();
    }

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

  private:
    const std::string before_ = std::getenv("TMPDIR") ? std::getenv("TMPDIR") : "";
    const Workspace temporary_;
};

}  // namespace intake::testing

#endif
