#include "host/qxbase.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

class Annotation : public ImportTest {
  protected:
    static std::string integers(const std::vector<int64_t>& values) {
        std::string line;
        for (const int64_t value : values) {
            const std::string digits = std::to_string(value);
            line += std::string(10 - digits.size(), ' ') + digits;
        }
        return line + '\n';
    }
    // The lines of a record in a subclass between its first line and its leader points.
    static std::string tables() {
        return integers({1, 2, 3, 4, 5, 6, 7}) + integers({8, 9, 10, 11, 12, 13, 14}) +
               integers({15, 16, 17, 18, 19, -20}) + integers({1, -2}) + "\n\n" +
               " 2.5000000E-01\n 1.2500000E+00 0.0000000E+00 3.0000000E+00\n";
    }
    static std::string endOfGroup() { return integers({-1, 0, 0, 0, 0, 0, 0}); }
    static std::string point(int number) {
        return " " + std::to_string(number) + ".0000000E+00 5.0000000E-01\n";
    }
    static std::string file(const std::string& lines) { return "EXP  0 X\n" + lines + "EOS\n"; }
};

TEST_F(Annotation, InSubclassesKeepsItsFields) {
    given(file("TX7  2\nNAMES\n" + integers({7, 1, 2, -2, 4, 1, 82, 99}) + tables() + point(1) +
               point(2) + point(3) + point(4) + std::string(80, 'x') + "\nyz and more\n" +
               endOfGroup() + "no Names\n" + endOfGroup() + "JABBERWOCKY  \n"));
    ASSERT_EQ(import(), 1);
    const auto dataset = records("dataset")[0];
    EXPECT_EQ(dataset["counts"], json::parse(R"({"annotation/NAMES":1,"annotation/no Names":0})"));
    const auto record = records("annotation")[0];
    EXPECT_EQ(
        record,
        json::parse(
            R"({"class":"annotation","subclass":"NAMES","number":1,"userId":7,"groupCode":1,)"
            R"("symbolSize":0.25,"textSymbol":4,"pointCount":2,"lineCount":1,"textLength":82,)"
            R"("leaderCount":-2,"lineStart":[1,-2,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0],)"
            R"("lineTableB":[1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,-20],)"
            R"("textHeight":1.25,"extraValues":[0.0,3.0],"text":")" +
            std::string(80, 'x') +
            R"(yz","leaderPoints":[[1.0,0.5],[2.0,0.5],[0.0,0.0],[0.0,0.0],[0.0,0.0]],)"
            R"("extraWord1":99,"extraWord2":0,"points":[[3.0,0.5],[4.0,0.5]]})"));
}

TEST_F(Annotation, TheEighthIntegerAndTheWideRealsBelongToTheirForm) {
    const std::string wide = " 1.00000000000000E-01 5.00000000000000E-01\n";
    given(file("TX6  3\nA\n" + integers({7, 1, 1, 0, 4, 1, 0, 99}) + integers({}) + "\n\n\n\n\n" +
               " 2.5000000E-01\n 1.00000000000000E-01\n" + wide + "\n" + endOfGroup() +
               "JABBERWOCKY  \n"));
    ASSERT_EQ(import(), 1);
    const auto record = records("annotation")[0];
    EXPECT_EQ(record["extraWord1"], 0);
    EXPECT_EQ(record["textHeight"], 0.1);
    EXPECT_EQ(record["points"], json::parse("[[0.1,0.5]]"));
}

TEST_F(Annotation, OfTheOldestFormGetsItsAnchorFromItsSecondPoint) {
    const std::string reals =
        " 2.0000000E+00 3.0000000E+00 4.0000000E+00 5.0000000E+00 2.5000000E+00\n"
        " 3.5000000E+00 4.5000000E+00 5.5000000E+00 1.0000000E+00 2.0000000E+00\n"
        " 3.0000000E+00 1.5000000E+00 2.5000000E+00 3.5000000E+00 9.0000000E+00\n"
        " 7.5000000E-01\n";
    given(file("TXT  2\n" + integers({3, 4, -2, 5, 0}) + reals + "a line is read all the same\n" +
               integers({3, 0, 9, 5, 400}) + reals + "1\n2\n3\n4\n5\n" +
               integers({3, 2147483647, 0, 5, 4}) + reals + "text\n" + integers({3, -1, 0, 5, 4}) +
               reals + "text\n" + integers({-1, 0, 0, 0, 0})));
    ASSERT_EQ(import(), 1);
    const auto found = records("annotation");
    ASSERT_EQ(found.size(), 4U);
    EXPECT_EQ(found[0]["subclass"], "");
    EXPECT_EQ(found[0]["points"],
              json::parse("[[2.0,2.5],[2.0,2.5],[3.0,3.5],[4.0,4.5],[5.0,5.5]]"));
    EXPECT_EQ(found[0]["leaderPoints"],
              json::parse("[[1.0,1.5],[2.0,2.5],[3.0,3.5],[0.0,0.0],[0.0,0.0]]"));
    EXPECT_EQ(found[0]["leaderCount"], -2);
    EXPECT_EQ(found[0]["text"], "");
    EXPECT_EQ(found[0]["textHeight"], 9.0);
    EXPECT_EQ(found[0]["symbolSize"], 0.75);
    EXPECT_EQ(found[0]["lineTableB"][0], 1);
    EXPECT_EQ(found[1]["points"], json::parse("[[2.0,2.5]]"));
    EXPECT_EQ(found[1]["leaderCount"], 5);
    EXPECT_EQ(found[1]["textLength"], 320);
    // A count alone makes no points.
    EXPECT_EQ(found[2]["pointCount"], 500);
    EXPECT_EQ(found[3]["pointCount"], 0);
    EXPECT_EQ(complaints(), (std::vector<std::string>{"Annotation subclass: , only 5 leader points "
                                                      "and 320 characters are kept",
                                                      "Annotation: only 500 points are kept"}));
}

TEST_F(Annotation, WithoutAFirstPointTakesTheSecond) {
    const std::string missing = "           NaN           NaN\n";
    given(file("TX7  2\nA\n" + integers({1, 1, 3, 0, 4, 1, 0, 0}) + tables() + missing + point(2) +
               point(3) + "\n" + integers({2, 1, 1, 0, 4, 1, 0, 0}) + tables() + missing + "\n" +
               endOfGroup() + "JABBERWOCKY  \n"));
    ASSERT_EQ(import(), 1);
    const auto found = records("annotation");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0]["points"], json::parse("[[2.0,0.5],[2.0,0.5],[3.0,0.5]]"));
    EXPECT_EQ(found[1]["points"], json::parse("[[0.0,0.0]]"));
}

TEST_F(Annotation, WarningsComeOnceInASubclass) {
    const std::string overflowed = "**********" + integers({1, 0, -7, 4, 1, 330, 0});
    std::string lines = overflowed + tables();
    for (int leader = 1; leader <= 7; ++leader) lines += point(leader);
    lines += "1\n2\n3\n4\n5\n";
    lines += lines;
    given(file("TX7  2\nA\n" + lines + endOfGroup() + "B\n" + lines + endOfGroup() +
               "JABBERWOCKY  \n"));
    ASSERT_EQ(import(), 1);
    std::vector<Message> expected = {{QX_INFORM, " Creating Coverage " + path("DS")}};
    for (const std::string name : {"A", "B"}) {
        expected.push_back({QX_INFORM, "Annotation subclass: " + name +
                                           ", Unavoidable loss of data for User-ID, set to 0"});
        expected.push_back(
            {QX_WARN, "Use IDEDIT command with ANNO." + name + " option to recover lost data."});
        expected.push_back({QX_WARN, "Annotation subclass: " + name +
                                         ", only 5 leader points and 320 characters are kept"});
    }
    EXPECT_EQ(messages(), expected);
    const auto found = records("annotation");
    ASSERT_EQ(found.size(), 4U);
    EXPECT_EQ(found[3]["userId"], 0);
    EXPECT_EQ(found[3]["leaderCount"], -5);
    EXPECT_EQ(found[3]["leaderPoints"][4], json::parse("[5.0,0.5]"));
    EXPECT_EQ(found[3]["textLength"], 320);
}

TEST_F(Annotation, FailuresEndTheImportAndKeepWhatCameBefore) {
    const std::string good = integers({1, 1, 1, 0, 4, 1, 0, 0}) + tables() + point(1) + "\n";
    struct Case {
        std::string section;
        std::string lines;
        std::string message;
    };
    const Case cases[] = {
        {"TX6  2\nA\n", integers({1, 1, -1, 0, 4, 1, 0}), "Invalid point count (IMPTX6)"},
        {"TX7  2\nA\n", integers({1, 1, 1, 0, 4, 1, -1}), "Invalid text length (IMPTX7)"},
        {"TX7  2\nA\n", integers({1, 1, 1, 0, 4, 1, 1}) + integers({1, 40000}),
         "Could not read \"     40000\" in columns 11 to 20 of line 16 of "},
    };
    int number = 0;
    for (const Case& each : cases) {
        given("EXP  0 X\n" + each.section + good + each.lines);
        const std::string dataset = "DS" + std::to_string(++number);
        EXPECT_EQ(import(dataset), 0);
        ASSERT_EQ(complaints().size(), 1U);
        EXPECT_TRUE(complaints()[0].starts_with(each.message)) << complaints()[0];
        EXPECT_EQ(records("annotation", dataset).size(), 1U);
    }
    for (const auto& [line, message] :
         {std::pair{integers({1, -2, 0, 0, 0}), "Invalid point count (IMPTXT)"},
          {integers({1, 0, 0, 0, -4}), "Invalid text length (IMPTXT)"}}) {
        given("EXP  0 X\nTXT  2\n" + line);
        EXPECT_EQ(import("DS" + std::to_string(++number)), 0);
        EXPECT_EQ(complaints(), std::vector<std::string>{message});
    }
}

TEST_F(Annotation, IsAbandonedWhereThereIsNoCoverage) {
    // A shade set goes on to the next section.
    given(file("CS7  2\nEOS\nTX7  2\nA\nTXT  2\nTOL  2\n" + endOfGroup() + "LOG  2\nEOL\n"));
    ASSERT_EQ(import(), 1);
    EXPECT_EQ(complaints(), std::vector<std::string>{"Unable to create " + path("DS") + "."});
}

TEST_F(Annotation, OfADamagedFileIsReadAsFarAsItGoes) {
    const std::string one = integers({1, 1, 1, 0, 4, 1, 4, 0}) + tables() + point(1) + "text\n";
    given(file("TX7  2\nA\n" + one + one + endOfGroup() + "JABBERWOCKY  \n"));
    ASSERT_EQ(import(), 1);
    const std::string stored = path("DS") + "/txt.A";
    const std::string bytes = fileBytes(stored);
    for (std::size_t length = 0; length < bytes.size(); length += 11) {
        writeFile(stored, bytes.substr(0, length));
        EXPECT_LE(records("annotation").size(), 1U);
    }
    constexpr std::size_t kPointCount = 128 + 4 + 16;
    for (const char damage : {'\x7f', '\xff', '\x01'}) {
        std::string damaged = bytes;
        damaged[kPointCount] = damage;
        writeFile(stored, damaged);
        EXPECT_TRUE(records("annotation").empty());
    }
}

}  // namespace
}  // namespace intake::testing
