#include "tests/support/columns.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using Lines = std::vector<std::string>;

// LNK, ADP and ADI.
class Links : public ImportTest {
  protected:
    static std::string entries(std::initializer_list<int> values) {
        constexpr int kWidths[] = {10, 6, 6, 1};
        std::string text;
        char field[16];
        int index = 0;
        for (const int value : values) {
            std::snprintf(field, sizeof field, "%*d", kWidths[index++ % 4], value);
            text += field;
        }
        return text;
    }
};

TEST_F(Links, AreReadInBothPrecisionsUpToTheirWholeEndLine) {
    given(Lines{"EXP  0 X", "LNK  2", reals(2, {1.5, 2.5, 3.5, 4.5}), "END OF LINK DATA", "LNK  2",
                "END OF LINK DATA", "LNK  3", reals(3, {0.5, 0.25}), reals(3, {4, 8}),
                "END OF LINK DATA", "EOS"});
    ASSERT_EQ(import(), 1);
    const auto links = records("link");
    ASSERT_EQ(links.size(), 2U);
    EXPECT_EQ(links[0],
              json::parse(R"({"class":"link","number":1,"from":[1.5,2.5],"to":[3.5,4.5]})"));
    EXPECT_EQ(links[1], json::parse(R"({"class":"link","number":2,"from":[0.5,0.25],"to":[4,8]})"));

    given(Lines{"EXP  0 X", "LNK  3", "END OF LINK DATA", "EOS"});
    ASSERT_EQ(import("EMPTY"), 1);
    EXPECT_EQ(records("dataset", "EMPTY")[0]["counts"], (json{{"link", 0}}));

    given(Lines{"EXP  0 X", "LNK  2", "END OF LINK DATA and more"});
    EXPECT_EQ(import("MORE"), 0);
    EXPECT_EQ(complaints(),
              Lines{"Could not read \"END OF LINK DA\" in columns 1 to 14 of line 3 of " +
                    path("in.e00")});
}

TEST_F(Links, AddressTextsLieDifferentlyInTheFirstRecord) {
    given(Lines{"EXP  0 X", "ADP  2", "MAIN ST         5", "MAIN ST         5",
                "!!!!!!!!         7", "!!!!!!!!        -1", "EOS"});
    ASSERT_EQ(import(), 1);
    const auto texts = records("addressText");
    ASSERT_EQ(texts.size(), 3U);
    EXPECT_EQ(texts[0],
              (json{{"class", "addressText"}, {"number", 1}, {"text", "MAIN ST"}, {"value", 5}}));
    EXPECT_EQ(texts[1]["text"], "MAIN ST");
    EXPECT_EQ(texts[2]["value"], 7);
    const std::string stored = fileBytes(path("DS/adp")).substr(128, 24);
    EXPECT_EQ(stored, std::string("\0\0\0\5MAIN ST MAIN ST \0\0\0\5", 24));
}

TEST_F(Links, AnEmptyAddressTableEndsQuietlyInEitherForm) {
    for (const char* end : {"        -1!!!!!!!!", "!!!!!!!!        -1"}) {
        given(Lines{"EXP  0 X", "ADP  2", end, "LNK  2", "END OF LINK DATA", "EOS"});
        const std::string dataset = end[0] == '!' ? "READ" : "WRITTEN";
        ASSERT_EQ(import(dataset), 1);
        EXPECT_TRUE(complaints().empty());
        EXPECT_EQ(records("dataset", dataset)[0]["counts"],
                  (json{{"link", 0}, {"addressText", 0}}));
    }
    // Behind the first record a line that does not decode is a failure.
    given(Lines{"EXP  0 X", "ADP  2", "MAIN ST         5", "        -1!!!!!!!!"});
    EXPECT_EQ(import("LATE"), 0);
    EXPECT_EQ(complaints(), Lines{"Could not read \"-1!!!!!!!!\" in columns 9 to 18 of line 4 of " +
                                  path("in.e00")});
    EXPECT_EQ(records("addressText", "LATE").size(), 1U);
}

TEST_F(Links, AddressIntegersKeepWhatTheLastLineLeavesOut) {
    const std::string line = entries({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 2});
    const std::string other = entries({21, 22, 23, 1, 25, 26, 27, 2, 29, 30, 31, 3});
    given(Lines{"EXP  0 X",
                "ADI  2",
                "        12",
                "of this line nothing is decoded",  // never filled: zero
                "         4",
                entries({1, 17, 4, 0}),
                "         0",
                "        13",
                line,
                entries({77}) + "     what stands here is not read",
                "        16",
                other,
                entries({91, 92, 93, 5}),
                "        24",
                line,
                other,  // its last 12 are not stored
                "        12",
                other,  // nor are these
                "         7",
                entries({61, 62, 63, 6, 65, 66, 67}),  // one whole entry
                "        -1",
                "EOS"});
    ASSERT_EQ(import(), 1);
    const char* expected[] = {
        "[[0,0,0,0],[0,0,0,0],[0,0,0,0]]",
        "[[1,17,4,0]]",
        "[]",
        "[[1,2,3,4],[5,6,7,8],[9,10,11,2]]",
        "[[21,22,23,1],[25,26,27,2],[29,30,31,3],[91,92,93,5]]",
        "[[1,2,3,4],[5,6,7,8],[9,10,11,2],[91,92,93,5],[0,0,0,0],[0,0,0,0]]",
        "[[1,2,3,4],[5,6,7,8],[9,10,11,2]]",
        "[[61,62,63,6]]",
    };
    const auto stored = records("addressIntegers");
    ASSERT_EQ(stored.size(), std::size(expected));
    for (std::size_t index = 0; index < stored.size(); ++index) {
        EXPECT_EQ(stored[index]["entries"], json::parse(expected[index])) << "record " << index + 1;
    }

    const std::pair<Lines, std::string> failures[] = {
        {{"        -2"}, "Invalid entry count (IMPADI)"},
        // The count is followed only as lines come.
        {{"2147483647", line}, "ERROR, next volume " + path("in.e01") + " does not exist."},
        {{"        13", line, "         x"},
         "Could not read \"         x\" in columns 1 to 10 of line 7 of " + path("in.e00")},
    };
    int number = 0;
    for (const auto& [body, message] : failures) {
        Lines lines = {"EXP  0 X", "ADI  2", "         4", line};
        lines.insert(lines.end(), body.begin(), body.end());
        given(lines);
        const std::string dataset = "BAD" + std::to_string(++number);
        EXPECT_EQ(import(dataset), 0);
        EXPECT_EQ(complaints(), Lines{message});
        EXPECT_EQ(records("addressIntegers", dataset).size(), 1U);
    }
}

}  // namespace
}  // namespace intake::testing
