#include <cstdlib>

#include "host/qxbase.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

std::string opening(const std::vector<std::string>& names, int kind = 1) {
    std::string text = "STK  2\n         " + std::to_string(kind) + "         " +
                       std::to_string(names.size()) + "\n";
    for (const std::string& name : names) text += name + "\n";
    return text + "EOK\n";
}

std::string grid(const std::string& cell) {
    return "GRD  2\n         1         1 1 0.00000000000000E+00\n"
           " 0.10000000000000E+01 0.10000000000000E+01\n"
           " 0.00000000000000E+00 0.00000000000000E+00\n"
           " 0.10000000000000E+01 0.10000000000000E+01\n             " +
           cell + "\nEOG\n";
}

constexpr char kClosing[] = "STK  2\n         2         0\nEOK\nEOS\n";

class Stacks : public ImportTest {
  protected:
    Stacks() {
        std::filesystem::create_directory(path("scratch"));
        setScratch(path("scratch"));
    }
    ~Stacks() override {
        before_.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", before_.c_str(), 1);
    }
    static void setScratch(const std::string& directory) { setenv("TMPDIR", directory.c_str(), 1); }
    bool scratchIsEmpty() const { return std::filesystem::is_empty(path("scratch")); }
    std::string skipped(const std::string& name) const {
        return "   Grid " + path(name) + " will be skipped.";
    }

  private:
    std::string before_ = std::getenv("TMPDIR") ? std::getenv("TMPDIR") : "";
};

TEST_F(Stacks, MakeTheirGridsBesideThemAndListThem) {
    given("EXP  0 X\n" + opening({"ONE", "two"}) + grid("1") + grid("2") + kClosing);
    ASSERT_EQ(import(), 1);
    EXPECT_EQ(messages(), (std::vector<Message>{{QX_INFORM, " Creating Stack " + path("DS")}}));
    EXPECT_TRUE(scratchIsEmpty());
    EXPECT_EQ(records("stack")[0]["members"], json::parse(R"(["ONE","two"])"));
    const auto heads = records("dataset");
    ASSERT_EQ(heads.size(), 3U);
    EXPECT_EQ(heads[0]["kind"], "Stack");
    EXPECT_EQ(heads[2]["name"], "two");
    EXPECT_EQ(records("row", "two")[0]["cells"], json::parse("[2]"));
    EXPECT_TRUE(std::filesystem::is_directory(path("info")));

    // A closing section alone makes nothing, and neither does it leave its list behind.
    given(std::string("EXP  0 X\n") + kClosing);
    EXPECT_EQ(import("NONE"), 1);
    EXPECT_FALSE(std::filesystem::exists(path("NONE")));
    EXPECT_TRUE(scratchIsEmpty());
}

TEST_F(Stacks, SkippedGridsTouchNothing) {
    // A coverage and a file under the names of grids, and names that are paths.
    const std::string noArcs =
        "        -1         0         0         0         0         0         0\n";
    given("EXP  0 X\nARC  2\n" + noArcs + "EOS\n");
    ASSERT_EQ(import("ROADS"), 1);
    const std::string behind =
        "ARC  2\n         1         1         1         1         1         1         1\n"
        " 1.0000000E+00 1.0000000E+00\n" +
        noArcs +
        "MTD  2\n1<metadata/>\nEOD\nTOL  2\n         1         1 1.0000000E+00\n"
        "        -1         0\n";
    const std::vector<std::string> names = {"ROADS", "../UP", "/ABS", "DS/INNER", ".",
                                            "..",    "",      "A\tB", "LAST"};
    std::string text = "EXP  0 X\n" + opening(names);
    for (const std::string& name : names) text += grid("3") + (name == "LAST" ? "" : behind);
    given(text + kClosing);
    EXPECT_EQ(import(), 1);
    std::vector<std::string> warnings;
    for (const Message& each : messages()) {
        if (each.text.starts_with("   Grid ")) warnings.push_back(each.text);
    }
    EXPECT_EQ(warnings, (std::vector<std::string>{skipped("ROADS"), skipped("../UP"),
                                                  "   Grid /ABS will be skipped.",
                                                  skipped("DS/INNER"), skipped("."), skipped(".."),
                                                  skipped(""), skipped("A\\x09B")}));
    EXPECT_TRUE(records("arc", "ROADS").empty());
    EXPECT_FALSE(std::filesystem::exists(path("ROADS/metadata.xml")));
    EXPECT_EQ(records("row", "LAST").size(), 1U);
    EXPECT_TRUE(scratchIsEmpty());
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(path(""))) {
        found.push_back(entry.path().filename());
    }
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found,
              (std::vector<std::string>{"DS", "LAST", "ROADS", "in.e00", "info", "scratch"}));
}

TEST_F(Stacks, FailuresEndTheImportAndDropTheScratchList) {
    const std::string noName = "Stack " + path("DS") + " names no further grid (IMPSUB)";
    const std::string noEnd = "Error in the input file for stack " + path("DS");
    struct Case {
        std::string text;
        std::vector<std::string> complaints;  // the list's own name, which is made up, left out
    };
    const Case cases[] = {
        {opening({"A"}) + grid("1") + grid("2") + kClosing, {noName}},
        {opening({}, 0) + grid("1") + kClosing, {noName}},
        // Any other kind is like the one without names.
        {opening({}, 7) + grid("1") + kClosing, {noName}},
        {"STK  2\n         0         0\nEOX\n", {noEnd, "Error in importing stack "}},
        {"STK  2\n         2         0\nEOX\n", {noEnd, "Error in importing stack "}},
        {opening({"A"}) + opening({"B"}),
         {"Unable to create stack " + path("DS") + ".", "Error in importing stack "}},
        {"STK  2\n         1   9999999\nA\n",
         {"ERROR, next volume " + path("in.e01") + " does not exist."}},
    };
    for (const Case& each : cases) {
        std::filesystem::remove_all(path("DS"));
        std::filesystem::remove_all(path("A"));
        given("EXP  0 X\n" + each.text);
        EXPECT_EQ(import(), 0) << each.text;
        ASSERT_EQ(complaints().size(), each.complaints.size()) << each.text;
        for (std::size_t index = 0; index < each.complaints.size(); ++index) {
            EXPECT_TRUE(complaints()[index].starts_with(each.complaints[index]))
                << complaints()[index];
        }
        EXPECT_TRUE(scratchIsEmpty()) << each.text;
    }
    // The scratch list's name, and not the stack's, is told.
    std::filesystem::remove_all(path("DS"));
    std::filesystem::remove_all(path("info"));
    writeFile(path("info"), "a file");
    given("EXP  0 X\n" + opening({"A"}) + kClosing);
    EXPECT_EQ(import(), 0);
    ASSERT_EQ(complaints().size(), 2U);
    EXPECT_EQ(complaints()[0], "Unable to create INFO directory.");
    EXPECT_TRUE(complaints()[1].starts_with("Error in importing stack " + path("scratch/")));

    setScratch(path("nowhere"));
    EXPECT_EQ(import("DS2"), 0);
    ASSERT_EQ(complaints().size(), 1U);
    EXPECT_TRUE(complaints()[0].starts_with("Unable to create " + path("nowhere/")));
}

TEST_F(Stacks, TheEndOfTheScratchListHidesAFailureOfTheLastSection) {
    writeFile(path("A"), "a file");
    given("EXP  0 X\n" + opening({"A"}) + grid("1") +
          "LAT  2\n         1         1\n\n\n 1.0000000E+00\n\nEOS\n");
    EXPECT_EQ(import("DS2"), 1);
    EXPECT_EQ(complaints().size(), 2U);
    EXPECT_TRUE(complaints()[1].starts_with("Cannot create lattice "));
    EXPECT_TRUE(scratchIsEmpty());
}

}  // namespace
}  // namespace intake::testing
