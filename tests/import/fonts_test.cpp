#include <filesystem>

#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

class Fonts : public ImportTest {
  protected:
    // A section of that many whole records, every real the number of its record, then more lines.
    void givenFont(int count, int records, const std::vector<std::string>& more = {}) {
        char head[32];
        std::snprintf(head, sizeof head, "FONT1 %10d", count);
        std::vector<std::string> lines = {"EXP  0 X", "FNT  2", head};
        for (int record = 1; record <= records; ++record) {
            const std::string real = " " + std::to_string(record) + ".0000000E+00";
            for (int each = 0; each < 5; ++each) lines.push_back(real + real + real + real);
        }
        lines.insert(lines.end(), more.begin(), more.end());
        lines.insert(lines.end(), {"EOF", "EOS"});
        given(lines);
    }
    std::vector<double> firstReals(const std::string& dataset) {
        std::vector<double> firsts;
        for (const json& record : records("fontRecord", dataset, "Font File")) {
            firsts.push_back(record["reals"][0]);
        }
        return firsts;
    }
};

TEST_F(Fonts, RecordsFillAPreallocatedFileInLowerCase) {
    const std::string directory = std::filesystem::current_path();
    givenFont(3, 2, {" 9.0000000E+00 9.0000000E+00 9.0000000E+00 9.0000000E+00"});
    ASSERT_EQ(import("FONT"), 1);
    // Two records came whole; the third was cut short and stays zero.
    EXPECT_EQ(firstReals("FONT"), (std::vector<double>{1, 2, 0}));
    EXPECT_TRUE(std::filesystem::exists(path("font")));
    // An existing font is overwritten from its first record on.
    givenFont(3, 1);
    ASSERT_EQ(import("FONT"), 1);
    EXPECT_EQ(firstReals("FONT"), (std::vector<double>{1, 2, 0}));
    EXPECT_EQ(std::filesystem::current_path(), directory);
}

TEST_F(Fonts, FailuresAreTold) {
    givenFont(1, 2);
    EXPECT_EQ(import("MORE"), 0);
    EXPECT_EQ(complaints(),
              (std::vector<std::string>{"Error in writing record 2 to MORE\nIGL Error The record "
                                        "number is outside the records of the file.",
                                        "Error in importing"}));
    EXPECT_EQ(firstReals("MORE"), std::vector<double>{1});

    givenFont(0, 0);
    EXPECT_EQ(import("NONE"), 0);
    EXPECT_EQ(complaints()[0], "Error in opening " + path("NONE") +
                                   ":\nIGL Error The number of records is not above 0.");
    // What no font holds is not made.
    givenFont(1000001, 0);
    EXPECT_EQ(import("HUGE"), 0);
    EXPECT_EQ(complaints()[0], "Error in opening " + path("HUGE") +
                                   ":\nIGL Error The file could not be opened or made.");
    EXPECT_FALSE(std::filesystem::exists(path("huge")));
    // Nor is one that is there opened for as many, nor what is no font.
    writeFile(path("huge"), "");
    EXPECT_EQ(import("HUGE"), 0);
    EXPECT_EQ(fileBytes(path("huge")), "");
    givenFont(1, 1);
    const std::string header =
        "QXRECORD" + std::string("\0\0\0\1", 4) + std::string(23, '\0') + '\4';
    for (const std::string& other : {std::string("text"), header + std::string(124, '\0')}) {
        writeFile(path("other"), other);
        EXPECT_EQ(import("OTHER"), 0);
        EXPECT_EQ(fileBytes(path("other")), other);
    }
    EXPECT_EQ(import("TOOLONG"), 0);
    EXPECT_EQ(complaints()[0], "TOOLONG is longer than 6 characters - IGL does't allow that!");
    EXPECT_EQ(import("no/FONT"), 0);
    EXPECT_EQ(complaints()[0], path("no") + " is not a usable directory.");
}

TEST_F(Fonts, ANextVolumeIsFoundFromWhereTheImportBegan) {
    givenFont(1, 1);
    const std::string whole = fileBytes(path("in.e00"));
    given(whole.substr(0, 60), "in.e00");
    given(whole.substr(60), "in.e01");
    std::filesystem::create_directory(path("below"));
    const std::filesystem::path old = std::filesystem::current_path();
    std::filesystem::current_path(path(""));
    EXPECT_EQ(import("below/FONT"), 1);
    std::filesystem::current_path(old);
    EXPECT_EQ(firstReals("below/FONT"), std::vector<double>{1});
}

}  // namespace
}  // namespace intake::testing
