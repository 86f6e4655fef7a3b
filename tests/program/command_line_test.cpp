#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "tests/support/program_test.h"

namespace intake::testing {
namespace {

using CommandLine = ProgramTest;

constexpr char kArcs[] =
    "EXP  0 X\nARC  2\n"
    "         1        12         1         2         3         4         1\n"
    " 1.0000000E+00 2.0000000E+00\n"
    "        -1         0         0         0         0         0         0\nEOS\n";

TEST_F(CommandLine, WrongUsageIsTwoAndSaysWhatIsWrong) {
    given(kArcs);
    ASSERT_EQ(import(), 1);
    const std::vector<std::string> cases[] = {
        {},
        {"fly"},
        {"import", "@in.e00"},
        {"import", "@in.e00", "@NEW", "--loud"},
        {"import", "@in.e00", "@DS"},
        {"dump", "@DS", "--class", "roads"},
        {"dump", "@DS", "--kind", "Roads"},
        {"show"},
        {"pack", "@in.e00", "@out.e00", "--level", "3"},
        {"pack", "@in.e00", "@out.e00", "--lines-per-volume", "1"},
        {"pack", "@in.e00", "@in.e00"},
        {"pack", "@in.e00", "@in.e01"},
        {"unpack", "@in.e00", "@plain.txt", "--lines-per-volume", "10"},
    };
    for (const auto& words : cases) {
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.status, 2) << ::testing::PrintToString(words);
        EXPECT_NE(outcome.errors, "");
        EXPECT_EQ(outcome.output, "");
    }
    EXPECT_FALSE(std::filesystem::exists(path("NEW")));
    EXPECT_FALSE(std::filesystem::exists(path("out.e00")));
}

TEST_F(CommandLine, HelpLeadsWithExamples) {
    const Outcome help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.output.starts_with("Examples:\n  intake import "));
    EXPECT_EQ(run({"import", "--help"}).status, 0);
    EXPECT_EQ(run({"help"}).output, help.output);
    for (const char* command : {"import", "help"}) {
        EXPECT_EQ(run({"help", command}).output, run({command, "--help"}).output);
        EXPECT_NE(run({"help", command}).output.find("Usage: intake " + std::string(command)),
                  std::string::npos);
    }
    EXPECT_TRUE(run({"--version"}).output.starts_with("intake "));
    EXPECT_NE(run({"--version"})
                  .output.find("\nmodules: archive, gather, geopackage, geotiff, png, proj\n"),
              std::string::npos);
}

TEST_F(CommandLine, AMisspeltWordIsToldWhatItMayHaveMeant) {
    struct Case {
        std::vector<std::string> words;
        const char* told;
    };
    const Case cases[] = {
        {{"impotr", "a", "b"}, "there is no command impotr; did you mean import?"},
        {{"Show"}, "there is no command Show; did you mean show?"},
        {{"conv", "a"}, "there is no command conv; did you mean convert?"},
        {{"help", "drwa"}, "there is no command drwa; did you mean draw?"},
        {{"fly"}, "there is no command fly"},
        {{"--verson"}, "--verson: did you mean --version?"},
        {{"import", "a", "b", "--jsno"}, "--jsno: did you mean --json?"},
        {{"import", "--quite", "--froce"},
         "--quite: did you mean --quiet?; --froce: did you mean --force?"},
        {{"dump", "a", "--clas=arc"}, "--clas: did you mean --class?"},
    };
    for (const Case& each : cases) {
        const Outcome outcome = run(each.words);
        EXPECT_EQ(outcome.status, 2);
        const std::string first = outcome.errors.substr(0, outcome.errors.find('\n'));
        EXPECT_TRUE(first.starts_with("intake: ") && first.ends_with(each.told)) << first;
    }
    // What is far from everything, and what is no option at all.
    EXPECT_EQ(run({"show", "a", "--xyzzy"}).errors.find("did you mean"), std::string::npos);
    EXPECT_EQ(run({"show", "a", "b", "--", "--jsno"}).errors.find("did you mean"),
              std::string::npos);
}

TEST_F(CommandLine, LevelsHaveTheirColoursWhereThereAreColours) {
    std::ostringstream output, errors;
    program::Console console{output, errors, true, true};
    EXPECT_EQ(program::run({"import", "--quiet", path("missing"), path("NEW")}, console), 1);
    EXPECT_TRUE(errors.str().starts_with("\033[31merror:\033[m Could not open")) << errors.str();
    EXPECT_EQ(run({"import", "@missing", "@NEW"}, true).errors.find("\033[31m"), std::string::npos);
}

TEST_F(CommandLine, AnImportTellsItsMessagesAndItsOutcome) {
    given(kArcs);
    const Outcome plain = run({"import", "@in.e00", "@DS"});
    EXPECT_EQ(plain.status, 0);
    EXPECT_EQ(plain.output, "");
    const std::string made = "inform:  Creating Coverage " + path("DS") + "\n";
    const std::string lastLine = "intake: Coverage " + path("DS") + ": 1 arc (";
    EXPECT_TRUE(plain.errors.starts_with(made + lastLine)) << plain.errors;
    EXPECT_TRUE(plain.errors.ends_with(" s); `intake show " + path("DS") + "` tells more\n"));

    const Outcome told = run({"import", "--json", "--quiet", "@in.e00", "@TOLD"});
    EXPECT_EQ(told.errors, "");
    const std::string creating = " Creating Coverage " + path("TOLD");
    EXPECT_EQ(told.object(), (json{{"file", path("in.e00")},
                                   {"dataset", path("TOLD")},
                                   {"kind", "Coverage"},
                                   {"result", 1},
                                   {"messages", {{{"level", "inform"}, {"text", creating}}}},
                                   {"sections", {{{"code", "ARC"}, {"lines", 3}}}}}));

    // What stands is imported to only by force, and the library answers.
    const Outcome refused = run({"import", "@in.e00", "@DS", "--force", "--json"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.object()["result"], 0);
    EXPECT_EQ(refused.object()["messages"][1],
              (json{{"level", "error"}, {"text", "Unable to create coverage."}}));
    EXPECT_EQ(refused.errors, "inform:  Creating Coverage " + path("DS") +
                                  "\nerror: Unable to create coverage.\nintake: could not write " +
                                  path("DS") + ": File exists\n");
    EXPECT_EQ(run({"import", "@missing.e00", "@NEW", "--quiet"}).errors,
              "error: Could not open import file..\nintake: " + path("missing.e00") +
                  " is not there: look at the name and the folder\n");
}

TEST_F(CommandLine, TheOutcomeOfAFloodOfSectionsIsCut) {
    std::string text = "EXP  0 X\n";
    for (int section = 0; section < 10002; ++section) text += "SIN  2\nEOX\n";
    given(text + "EOS\n");
    const json told = run({"import", "--json", "--quiet", "@in.e00", "@DS"}).object();
    EXPECT_EQ(told["sections"].size(), 10000U);
    EXPECT_EQ(told["leftOut"], 2);
}

TEST_F(CommandLine, ANonFatalErrorIsThree) {
    given("EXP  0 X\nNXY  2\nEOS\n");
    const Outcome outcome = run({"import", "--quiet", "--json", "@in.e00", "@DS"});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.object()["result"], 1);
    EXPECT_EQ(outcome.object()["messages"][1]["level"], "nonftl");
    EXPECT_EQ(outcome.errors, "error: The TIN section has no ENV section before it (IMPNXY).\n");
}

TEST_F(CommandLine, ControlCharactersOfAMessageAreShownEscaped) {
    given("EXP  0 X\nARC  2\n         1\x1b[2J\xc2\x9b\xe9\n");
    const Outcome outcome = run({"import", "@in.e00", "@DS"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.errors.find("fatal: Could not read \"\\x1B[2J"), std::string::npos)
        << outcome.errors;
    EXPECT_EQ(outcome.errors.find('\x1b'), std::string::npos);
    EXPECT_EQ(program::shown("a\x7f\xc2\x9b\xe9"), "a\\x7F\xc3\x82\\x9B\xc3\xa9");
    EXPECT_EQ(program::shown("\xc2\x9b"), "\\x9B");
}

TEST_F(CommandLine, ProgressIsShownOnATerminalAndClearedBeforeAMessage) {
    std::string text = "EXP  0 X\n";
    for (int section = 0; section < 2; ++section) text += std::string(kArcs).substr(9, 163);
    given(text + "        -1x\n");
    const Outcome outcome = run({"import", "@in.e00", "@DS"}, true);
    EXPECT_NE(outcome.errors.find("MB  ARC"), std::string::npos) << outcome.errors;
    EXPECT_NE(outcome.errors.find("\r\033[Kfatal: "), std::string::npos) << outcome.errors;
    EXPECT_EQ(run({"import", "@in.e00", "@OTHER"}).errors.find('\r'), std::string::npos);
}

TEST_F(CommandLine, WhatIsNoDatasetEndsShowAndDump) {
    writeFile(path("stray"), std::string(5000, '\x01'));
    std::filesystem::create_directory(path("folder"));
    writeFile(path("folder/notes"), "nothing of ours");
    for (const char* name : {"@missing", "@stray", "@folder"}) {
        for (const char* command : {"show", "dump"}) {
            const Outcome outcome = run({command, name});
            EXPECT_EQ(outcome.status, 1) << name;
            EXPECT_TRUE(outcome.errors.starts_with("intake: ") && outcome.errors.ends_with('\n'));
            EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1);
        }
    }
}

TEST_F(CommandLine, ADamagedFileIsToldBehindWhatCanBeRead) {
    ASSERT_EQ(run({"import", INTAKE_SOURCE_DIR "/samples/wcr.e00", "@DS"}).status, 0);
    const std::string arcs = fileBytes(path("DS/arc"));
    const std::string labels = fileBytes(path("DS/lab"));
    struct Case {
        const char* file;
        const char* className;
        std::string bytes;
        int64_t left;  // records that can be read
    };
    const Case cases[] = {
        {"arc", "arc", arcs.substr(0, arcs.size() - 1), 295},
        {"arc", "arc", arcs.substr(0, 100), 0},
        {"arc", "arc", std::string(arcs).replace(128 + 4 + 24, 1, "\x7f"), 0},
        {"lab", "label", labels.substr(0, labels.size() - 1), 133},
    };
    for (const Case& each : cases) {
        writeFile(path("DS/arc"), arcs);
        writeFile(path("DS/lab"), labels);
        writeFile(path("DS/") + each.file, each.bytes);
        const Outcome outcome = run({"dump", "@DS", "--class", each.className});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(std::count(outcome.output.begin(), outcome.output.end(), '\n'), each.left);
        EXPECT_EQ(outcome.errors, "error: " + path("DS/") + each.file +
                                      " is damaged and cannot be read to its end\n");
    }
}

// The program as it is installed.
TEST_F(CommandLine, TheExecutableEndsAsItsCommandsDo) {
    given(kArcs);
    const std::string intake = INTAKE_BINARY_DIR "/bin/intake ";
    const auto status = [&](const std::string& words) {
        return WEXITSTATUS(std::system((intake + words + " 2>" + path("errors")).c_str()));
    };
    EXPECT_EQ(status("--version >" + path("version")), 0);
    EXPECT_EQ(fileBytes(path("version")), run({"--version"}).output);
    EXPECT_EQ(status("import " + path("in.e00") + " " + path("DS")), 0);
    const std::string made = "inform:  Creating Coverage " + path("DS") + "\nintake: Coverage ";
    EXPECT_TRUE(fileBytes(path("errors")).starts_with(made));
    EXPECT_EQ(status("import " + path("missing") + " " + path("NEW")), 1);
    EXPECT_EQ(status("import"), 2);
    EXPECT_EQ(status("dump " + path("DS") + " >" + path("dump")), 0);
    EXPECT_EQ(fileBytes(path("dump")), run({"dump", "@DS"}).output);
    EXPECT_EQ(status("dump " + path("DS") + " >/dev/full"), 1);
    EXPECT_EQ(fileBytes(path("errors")), "intake: could not write the output\n");
    EXPECT_EQ(status("import --json --force " + path("in.e00") + " " + path("DS") + " >/dev/full"),
              1);
    // A limit of the system on sizes is told like any other failure. What counts coverage meets it
    // too, and may not leave its own files cut short.
    const std::string limited = "(ulimit -f 8; exec env GCOV_PREFIX=" + path("counts") + " " +
                                intake + "import " INTAKE_SOURCE_DIR;
    std::system((limited + "/samples/ctry.e00 " + path("BIG") + ") 2>" + path("errors")).c_str());
    EXPECT_NE(fileBytes(path("errors")).find(": File too large\n"), std::string::npos);
}

}  // namespace
}  // namespace intake::testing
