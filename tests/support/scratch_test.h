// The fixture of tests that use the folder for temporary files: nothing may be left in it.
#ifndef TESTS_SUPPORT_SCRATCH_TEST_H
#define TESTS_SUPPORT_SCRATCH_TEST_H

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "tests/support/program_test.h"

namespace intake::testing {

class ScratchTest : public ProgramTest {
  protected:
    ScratchTest() {
        std::filesystem::create_directory(path("tmp"));
        setenv("TMPDIR", path("tmp").c_str(), 1);
    }
    ~ScratchTest() override {
        EXPECT_TRUE(std::filesystem::is_empty(path("tmp")));
        unsetenv("TMPDIR");
        if (!before_.empty()) setenv("TMPDIR", before_.c_str(), 1);
    }

    static std::string sample(const std::string& name) {
        return std::string(INTAKE_SOURCE_DIR "/samples/") + name;
    }
    // The one message of a command that was ended, without its level.
    static std::string theError(const Outcome& outcome) {
        const std::string& text = outcome.errors;
        EXPECT_EQ(outcome.status, 1) << text;
        EXPECT_TRUE(text.starts_with("error: ")) << text;
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << text;
        return text.substr(0, text.find('\n')).substr(std::min<std::size_t>(7, text.size()));
    }

  private:
    std::string before_ = std::getenv("TMPDIR") ? std::getenv("TMPDIR") : "";
};

}  // namespace intake::testing

#endif
