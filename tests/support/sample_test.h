// The fixture of tests that take the samples of the project.
#ifndef TESTS_SUPPORT_SAMPLE_TEST_H
#define TESTS_SUPPORT_SAMPLE_TEST_H

#include <algorithm>

#include "tests/support/program_test.h"

namespace intake::testing {

class SampleTest : public ProgramTest {
  protected:
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
};

}  // namespace intake::testing

#endif
