#include <algorithm>
#include <random>

#include "tests/support/program_test.h"

namespace intake::testing {
namespace {

class Packing : public ProgramTest {
  protected:
    // Packs a file and unpacks it again; what came back, without the header line.
    std::string roundTrip(const std::string& file, const std::vector<std::string>& options) {
        for (const auto& each : std::filesystem::directory_iterator(path("")))
            if (each.path().stem() == "packed" || each.path().stem() == "plain")
                std::filesystem::remove(each);
        std::vector<std::string> words = {"pack", file, "@packed.e00"};
        words.insert(words.end(), options.begin(), options.end());
        const Outcome packed = run(words);
        EXPECT_EQ(packed.status, 0) << packed.errors;
        const Outcome unpacked = run({"unpack", "@packed.e00", "@plain.e00"});
        EXPECT_EQ(unpacked.status, 0) << unpacked.errors;
        return withoutHeader(fileBytes(path("plain.e00")));
    }
    static std::string withoutHeader(const std::string& text) {
        return text.starts_with("EXP") ? text.substr(text.find('\n') + 1) : text;
    }
};

const std::vector<std::string> kForms[] = {
    {"--level", "1"}, {"--level", "2"}, {"--lines-per-volume", "40"}};

TEST_F(Packing, RandomLinesComeBack) {
    // Pieces that the compressed form treats apart, put together at random.
    const std::string pieces[] = {" ",   "   ",  std::string(70, ' '),
                                  "0",   "12.5", "1.2345678E+03",
                                  "~",   "}",    "~}",
                                  "-7",  "E+05", "123456789012345.5",
                                  "\t",  "x",    "00000",
                                  "EOS", "\xe9", ".99E-12"};
    std::mt19937 random(7);
    std::string text;
    for (int line = 0; line < 3000; ++line) {
        std::string made = "|";
        const std::size_t length = random() % 8 == 0 ? random() % 299 : random() % 80;
        while (made.size() < length) made += pieces[random() % std::size(pieces)];
        // A line and its "~", which are doubled, fit the compressed form up to here.
        while (made.size() + static_cast<std::size_t>(std::count(made.begin(), made.end(), '~')) >
               300)
            made.pop_back();
        text += made.substr(0, made.find_last_not_of(' ') + 1) + '\n';
    }
    text += "EOS\n";
    std::string returns;
    for (const char character : text)
        returns += character == '\n' ? "\r\n" : std::string(1, character);
    given("EXP  0 SOMETHING\n" + text, "in.e00");
    given("EXP  0 SOMETHING\r\n" + returns, "cr.e00");
    given(text, "headerless.e00");
    for (const auto& form : kForms) {
        EXPECT_TRUE(roundTrip("@in.e00", form) == text) << form[1];
        EXPECT_TRUE(roundTrip("@cr.e00", form) == text) << form[1];
        EXPECT_TRUE(roundTrip("@headerless.e00", form) == text) << form[1];
    }
}

TEST_F(Packing, EveryFormOfASampleIsTheSameDataset) {
    const std::string sample = INTAKE_SOURCE_DIR "/samples/wcr.e00";
    ASSERT_EQ(run({"import", sample, "@A"}).status, 0);
    const std::string dump = run({"dump", "@A"}).output;
    int number = 0;
    for (const auto& form : kForms) {
        const std::string name = "@p" + std::to_string(++number) + ".e00";
        std::vector<std::string> words = {"pack", sample, name};
        words.insert(words.end(), form.begin(), form.end());
        ASSERT_EQ(run(words).status, 0);
        const std::string workspace = "@" + std::to_string(number);
        std::filesystem::create_directory(path(workspace.substr(1)));
        EXPECT_LE(run({"import", name, workspace + "/A"}).status, 0);
        EXPECT_TRUE(run({"dump", workspace + "/A"}).output == dump) << name;
    }
    EXPECT_TRUE(std::filesystem::exists(path("p3.e09")));
}

TEST_F(Packing, AFailureIsToldOnceAndLeavesNothing) {
    const std::string long301 = "EXP  0 X\nARC  2\n" + std::string(301, 'x') + "\nEOS\n";
    const std::string tildes = "EXP  0 X\n" + std::string(200, '~') + "\nEOS\n";
    struct Case {
        std::string text;
        std::string error;
    };
    const Case cases[] = {
        {"", "fatal: Could not read version number (RDVER)\n"},
        {"EXP  0 X\n", "fatal: The file holds no lines\n"},
        {"EXP  1 X\nARC  2", "fatal: ERROR, next volume " + path("in.e01") + " does not exist.\n" +
                                 "intake: the file ends before its end mark, a line EOS: it was "
                                 "cut off, or volumes of it "
                                 "are missing\n"},
        {long301, "fatal: A line of " + path("in.e00") + " is longer than 300 columns: line 3\n"},
        {tildes, "fatal: Line 1 does not fit the compressed form: " + std::string(200, '~') + "\n"},
    };
    for (const Case& each : cases) {
        given(each.text);
        const Outcome outcome = run({"pack", "@in.e00", "@out.e00"});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.errors, each.error);
        EXPECT_FALSE(std::filesystem::exists(path("out.e00")));
    }
    EXPECT_EQ(run({"pack", "@missing.e00", "@out.e00"}).errors,
              "error: Could not open " + path("missing.e00") + "\n");

    // A name that has no next volume is told as its own.
    given("EXP  0 X\nARC  2\n", "noext");
    const Outcome cut = run({"import", "@noext", "@DS"});
    EXPECT_EQ(cut.status, 1);
    EXPECT_NE(cut.errors.find("fatal: ERROR, next volume " + path("noext") +
                              " does not exist.\nintake: " + path("noext") +
                              " ends before its end mark, a line EOS: it was cut off\n"),
              std::string::npos)
        << cut.errors;

    // A volume that is in the way stays; those before it go.
    given("EXP  0 X\n1\n2\n3\n4\n5\nEOS\n");
    writeFile(path("out.e02"), "precious");
    const Outcome outcome = run({"unpack", "@in.e00", "@out.e00", "--lines-per-volume", "2"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.errors.ends_with("fatal: ERROR: Next volume " + path("out.e02") +
                                         " already exists.\n"));
    EXPECT_FALSE(std::filesystem::exists(path("out.e00")));
    EXPECT_FALSE(std::filesystem::exists(path("out.e01")));
    EXPECT_EQ(fileBytes(path("out.e02")), "precious");
}

TEST_F(Packing, TooManyVolumesAreToldBeforeTheFirst) {
    const auto count = [&] {
        int volumes = 0;
        for (const auto& each : std::filesystem::directory_iterator(path("")))
            volumes += each.path().stem() == "out" ? 1 : 0;
        return volumes;
    };
    const struct {
        int lines;  // of the file, behind its header line
        const char* first;
        int volumes;
        int least;
    } cases[] = {{200, "@out.e00", 100, 2},  {201, "@out.e00", 68, 3}, {300, "@out.e00", 76, 4},
                 {1234, "@out.e00", 95, 13}, {60, "@out.e90", 9, 7},   {30, "@out.e99", 1, 31}};
    for (const auto& each : cases) {
        std::string text = "EXP  0 X\n";
        for (int line = 1; line < each.lines; ++line) text += std::to_string(line) + '\n';
        given(text + "EOS\n");
        const auto unpack = [&](int lines) {
            return run(
                {"unpack", "@in.e00", each.first, "--lines-per-volume", std::to_string(lines)});
        };
        const Outcome refused = unpack(each.least - 1);
        EXPECT_EQ(refused.status, 2) << each.lines;
        if (each.least > 2) {
            EXPECT_NE(refused.errors.find("from --lines-per-volume " + std::to_string(each.least)),
                      std::string::npos)
                << refused.errors;
        }
        EXPECT_EQ(count(), 0);
        const Outcome done = unpack(each.least);
        EXPECT_EQ(done.status, 0) << done.errors;
        EXPECT_EQ(count(), each.volumes) << each.lines;
        ASSERT_EQ(run({"unpack", each.first, "@back.e00"}).status, 0);
        EXPECT_TRUE(withoutHeader(fileBytes(path("back.e00"))) == withoutHeader(text + "EOS\n"));
        for (const auto& file : std::filesystem::directory_iterator(path("")))
            std::filesystem::remove(file);
    }
}

}  // namespace
}  // namespace intake::testing
