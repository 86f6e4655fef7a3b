#include <bit>
#include <filesystem>

#include "host/qxbase.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using SymbolSets = ImportTest;

// A word as it is stored.
std::string word(uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 255);
    return bytes;
}
std::string word(float value) { return word(std::bit_cast<uint32_t>(value)); }

// A record by hand: a number is an integer, a letter before it a real, quotes a name.
std::string storedRecord(const std::string& words) {
    std::string bytes;
    for (std::size_t index = 0; index < words.size();) {
        if (words[index] == ' ') {
            ++index;
        } else if (words[index] == '\'') {
            bytes += words.substr(index + 1, 16);
            index += 18;
        } else {
            const bool real = words[index] == 'r';
            const std::size_t end = std::min(words.find(' ', index), words.size());
            const std::string number = words.substr(index + real, end - index - real);
            bytes +=
                real ? word(std::stof(number)) : word(static_cast<uint32_t>(std::stoi(number)));
            index = end;
        }
    }
    return bytes;
}

// Right-justified integers of ten columns, reals of fourteen.
std::string line(const std::string& values) {
    std::string text;
    for (std::size_t index = 0; index < values.size();) {
        if (values[index] == '\'') return text + values.substr(index + 1);
        const std::size_t end = std::min(values.find(' ', index), values.size());
        const bool real = values[index] == 'r';
        char field[32];
        if (real) {
            std::snprintf(field, sizeof field, "%14s",
                          (values.substr(index + 1, end - index - 1) + ".0000000E+00").c_str());
        } else {
            std::snprintf(field, sizeof field, "%10s", values.substr(index, end - index).c_str());
        }
        text += field;
        index = end + 1;
    }
    return text;
}

struct Version {
    const char* code;
    const char* kind;
    std::vector<std::string> lines;
    std::string stored;
};

const Version kVersions[] = {
    {"CLN",
     "Lineset File",
     {"1 2 3 4 13 'DASHED", "r5 r6 r7 r8"},
     "1 2 3 4 r5 r6 r7 r8 'DASHED          ' 13"},
    {"CL6",
     "Lineset File",
     {"1 2 3 4 5 6 'SOLID", "538976288 -1 1145132097 15 19 20", "r7 r8 r9 r1", "r6 r7 r8"},
     "1 2 3 4 5 6 r7 r8 r9 r1 'SOLID           ' 15 r6 r7 r8 19 20"},
    {"CL7",
     "Lineset File",
     {"1 2 3 4 5 6 '", "12 13 14 15 19 20", "r7 r8 r9 r1", "r6 r7 r8", "r1 r2 r3"},
     "1 2 3 4 5 6 r7 r8 r9 r1 '                ' 15 r6 r7 r8 19 20 r1 r2 r3"},
    {"CMK", "Markerset File", {"1 2 3 4 5", "r6 r7"}, "1 2 3 4 5 r6 r7"},
    {"CM6",
     "Markerset File",
     {"1 2 3 4 5 6 7", "13 14", "r8 r9 r1 r2 r3"},
     "1 2 3 4 5 6 7 r8 r9 r1 r2 r3 13 14"},
    {"CM7",
     "Markerset File",
     {"1 2 3 4 5 6 7", "14 15 16 18 19 20 99", "r8 r9 r1 r2", "r3 r4 r7 r9"},
     "1 2 3 4 5 6 7 r8 r9 r1 r2 r3 r4 14 15 16 r7 18 19 20"},
    {"CSH",
     "Shadeset File",
     {"1 2 3 4 5 6", "r7 r8 r9", "r1 r2 r3 r4"},
     "1 2 3 4 5 6 r7 r8 r9 r1 r2 r3 r4"},
    {"CS6",
     "Shadeset File",
     {"1 2 3 4 5 6 7", "8 9 21 22", "r1 r2 r3 r4", "r5 r6 r7 r8", "r9 r1 r2"},
     "1 2 3 4 5 6 7 8 9 r1 r2 r3 r4 r5 r6 r7 r8 r9 r1 r2 21 22"},
    {"CS7",
     "Shadeset File",
     {"1 2 3 4 5 6 7", "8 9 21 22", "r1 r2 r3 r4", "r5 r6 r7 r8", "r9 r1 r2", "23 24 25 'HATCH"},
     "1 2 3 4 5 6 7 8 9 r1 r2 r3 r4 r5 r6 r7 r8 r9 r1 r2 21 22 23 24 25 'HATCH           '"},
    {"CTX", "Textset File", {"1 2 3 4 5", "r6 r7 r8 r9", "r1 r2"}, "1 2 3 4 5 r6 r7 r8 r9 r1 r2"},
    {"CTX",
     "Textset File",
     {"1 2 3 4 5 6 7", "r8 r9 r1 r2", "r3 r4 r5 15 16"},
     "1 2 3 4 5 6 7 r8 r9 r1 r2 r3 r4 r5 15 16"},
    {"CT7",
     "Textset File",
     {"1 2 3 4 5 6 7", "r8 r9 r1 r2", "r3 r4 r5 15 16", "17 19 20 21 22", "r8"},
     "1 2 3 4 5 6 7 r8 r9 r1 r2 r3 r4 r5 15 16 17 r8 19 20 21 22"},
};

TEST_F(SymbolSets, EveryVersionIsStoredWordForWordAndFoundByTrial) {
    int number = 0;
    for (const Version& version : kVersions) {
        std::vector<std::string> lines = {"EXP  0 X", version.code + std::string("  2")};
        // Two symbols, so that a wrong record length does not go by.
        for (int copy = 0; copy < 2; ++copy) {
            for (const std::string& each : version.lines) lines.push_back(line(each));
        }
        lines.insert(lines.end(), {"EOS", "EOS"});
        given(lines);
        const std::string name = "S" + std::to_string(++number);
        ASSERT_EQ(import(name), 1) << version.code;
        EXPECT_TRUE(complaints().empty()) << version.code;
        const std::string record = storedRecord(version.stored);
        EXPECT_EQ(fileBytes(path(name)), record + record) << version.code;
        const json set = records("symbolSet", name, version.kind).at(0);
        EXPECT_EQ(set["recordBytes"], record.size());
        EXPECT_EQ(set["recordCount"], 2);
    }
}

TEST_F(SymbolSets, TheFirstSymbolOfAnOlderTextSetDecidesItsForm) {
    // Form 52: the first record alone has line 3 in words 10 and 11 too.
    const std::vector<std::string> symbol = {line("1 2 3 4 5 6 7"), line("r8 r9 r1 r2"),
                                             line("r3 r4")};
    std::vector<std::string> lines = {"EXP  0 X", "CTX  2"};
    for (int copy = 0; copy < 2; ++copy) lines.insert(lines.end(), symbol.begin(), symbol.end());
    lines.insert(lines.end(), {"EOS", "EOS"});
    given(lines);
    ASSERT_EQ(import("F52"), 1);
    EXPECT_EQ(fileBytes(path("F52")), storedRecord("1 2 3 4 5 6 7 r8 r9 r3 r4 r3 r4 "
                                                   "1 2 3 4 5 6 7 r8 r9 r1 r2 r3 r4"));

    // Five integers with a third line of 62 columns: form 64 with a first record of its own.
    given({"EXP  0 X", "CTX  2", line("1 2 3 4 5"), line("r6 r7 r8 r9"), line("r3 r4 r5 15 16"),
           line("1 2 3 4 5 6 7"), line("r8 r9 r1 r2"), line("r3 r4 r5 15 16"), "EOS", "EOS"});
    ASSERT_EQ(import("F64"), 1);
    EXPECT_EQ(fileBytes(path("F64")), storedRecord("1 2 3 4 5 r6 r7 r8 r9 0 0 r3 r4 r5 15 16 "
                                                   "1 2 3 4 5 6 7 r8 r9 r1 r2 r3 r4 r5 15 16"));

    given({"EXP  0 X", "CTX  2", "EOS", "EOS"});
    ASSERT_EQ(import("NONE"), 1);
    EXPECT_FALSE(std::filesystem::exists(path("NONE")));
}

TEST_F(SymbolSets, TheNameAsIntegersIsReadThoughNothingOfItIsKept) {
    for (const char* code : {"CL6", "CL7"}) {
        given({"EXP  0 X", code + std::string("  2"), line("1 2 3 4 5 6 'SOLID"), "EOI", "EOS",
               "EOS"});
        EXPECT_EQ(import(code), 0);
        EXPECT_EQ(complaints(),
                  std::vector<std::string>{
                      "Could not read \"EOI\" in columns 1 to 10 of line 4 of " + path("in.e00")});
        EXPECT_EQ(fileBytes(path(code)), "");
    }
}

TEST_F(SymbolSets, EmptyExistingAndUnmakeableSets) {
    given({"EXP  0 X", "CMK  2", "EOS", "EOS"});
    ASSERT_EQ(import("EMPTY"), 1);
    EXPECT_EQ(fileBytes(path("EMPTY")), "");
    EXPECT_EQ(import("EMPTY"), 0);
    EXPECT_EQ(complaints(),
              (std::vector<std::string>{path("EMPTY") + " already exists", "Error in importing"}));
    EXPECT_EQ(import("no/where"), 0);
    EXPECT_EQ(complaints(), (std::vector<std::string>{"Cannot create " + path("no/where"),
                                                      "Error in importing"}));
    // Unlike its siblings CS7 goes on to the next section, which a cut file does not have.
    given({"EXP  0 X", "CS7  2", "EOS"});
    EXPECT_EQ(import("CUT"), 0);
    EXPECT_EQ(complaints(), std::vector<std::string>{"ERROR, next volume " + path("in.e01") +
                                                     " does not exist."});
}

}  // namespace
}  // namespace intake::testing
