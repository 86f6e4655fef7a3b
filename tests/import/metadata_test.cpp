#include <filesystem>

#include "host/qxbase/messages.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using Texts = ImportTest;

const std::string kCoverage =
    "EXP  0 X\nARC  2\n        -1         0         0         0         0         0         0\n";

std::string emptyTable(const std::string& name) {
    return name + std::string(34 - name.size(), ' ') + "   0   0   0         0\n";
}

TEST_F(Texts, MetadataIsJoinedFromItsPieces) {
    const std::string full(79, 'x');
    given(kCoverage + "MTD  2\n1<a>\n1\n0two words\n0" + full + "\n1end\n1</a>\nEOD\n" +
          "MTD  2\n1another\nEOD\nIFO  2\n" + emptyTable("S.PAT") + emptyTable("S.AAT") +
          "EOI\nIMD  2\n S.PAT\n1first\nEOD\nIMD  2\n S.AAT\n1second\nEOD\nIMD  2\n" +
          " S.PAT\n1again\nEOD\nEMD\nEOS\n");
    ASSERT_EQ(import(), 1);
    EXPECT_TRUE(complaints().empty());
    const auto found = records("metadata");
    ASSERT_EQ(found.size(), 3U);
    // The second document of the coverage is passed over, and so is what follows a table's second.
    EXPECT_EQ(found[0]["lines"], json({"<a>", "", "two words " + full + "end", "</a>"}));
    EXPECT_EQ(found[1], json({{"class", "metadata"}, {"lines", {"first"}}, {"table", "DS.PAT"}}));
    EXPECT_EQ(found[2]["lines"], json({"second"}));
}

TEST_F(Texts, MetadataOfATableThatIsNotThereIsToldAndTheOthersGetTheirs) {
    given(kCoverage + "IFO  2\n" + emptyTable("SRC.AAT") + emptyTable("SRC.PAT") +
          "EOI\nIMD  2\n SRC.NONE\n1lost\n1EOD\nEOD\nIMD  2\n SRC.AAT\n1kept\nEOD\n" +
          "IMD  2\n SRC.GONE\nEOD\nEMD\nEOS\n");
    EXPECT_EQ(import(), 1);
    const auto leftOut = [](const std::string& name) {
        return "Table " + name + " cannot be opened; its metadata is left out.";
    };
    ASSERT_EQ(messages().size(), 3U);
    EXPECT_EQ(messages()[1], (Message{QX_NONFATAL, leftOut("DS.NONE")}));
    EXPECT_EQ(complaints(), (std::vector<std::string>{leftOut("DS.NONE"), leftOut("DS.GONE")}));
    EXPECT_EQ(
        records("metadata"),
        (std::vector<json>{{{"class", "metadata"}, {"lines", {"kept"}}, {"table", "DS.AAT"}}}));
}

TEST_F(Texts, FilesKeepTheirLongLines) {
    const std::string longLine = std::string(299, '.') + "|";
    given("EXP  0 X\nASC  2\nfirst   \n\n" + longLine + "cut\nEOA here\nEOA\nEOS\n");
    ASSERT_EQ(import("notes"), 1);
    EXPECT_EQ(fileBytes(path("notes")), "first\n\n" + longLine + "\nEOA here\n");
    EXPECT_EQ(records("textFile", "notes", "Text File")[0]["lines"],
              json({"first", "", longLine, "EOA here"}));
    EXPECT_EQ(import("notes"), 0);
    EXPECT_EQ(complaints(), (std::vector<std::string>{"File " + path("notes") + " already exists.",
                                                      "Error in importing"}));
    EXPECT_EQ(import("nowhere/notes"), 0);
    EXPECT_EQ(complaints()[0], "Unable to create " + path("nowhere/notes") + ".");
}

}  // namespace
}  // namespace intake::testing
