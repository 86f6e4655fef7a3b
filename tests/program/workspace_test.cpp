#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tests/support/program_test.h"

namespace intake::testing {
namespace {

namespace fs = std::filesystem;

std::string seed(const std::string& name) {
    return INTAKE_SOURCE_DIR "/fuzz/seeds/import/" + name + ".e00";
}

class Workspace : public ProgramTest {
  protected:
    void import(const std::string& name, const std::string& dataset) {
        const Outcome outcome = run({"import", seed(name), '@' + dataset, "--quiet"});
        ASSERT_LE(outcome.status % 3, 0) << outcome.errors;
    }
    Outcome answering(std::vector<std::string> words, const std::string& answers) const {
        for (std::string& word : words) {
            if (word.starts_with('@')) word = path(word.substr(1));
        }
        std::istringstream input(answers);
        std::ostringstream output;
        std::ostringstream errors;
        program::Console console{output, errors, true, false, &input};
        const int status = program::run(words, console);
        return {status, output.str(), errors.str()};
    }
    std::vector<std::string> tablesOf(const std::string& dataset) const {
        std::vector<std::string> names;
        const json shown = run({"show", "--json", '@' + dataset}).object();
        for (const json& table : shown["tables"]) names.push_back(table["name"]);
        return names;
    }
    std::vector<std::string> filesIn(const std::string& folder) const {
        std::vector<std::string> names;
        for (const auto& each : fs::directory_iterator(path(folder))) {
            names.push_back(each.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }
};

TEST_F(Workspace, IsListedWithWhatBelongsToNothing) {
    import("cover_regions", "ROADS");
    import("ifo_alone", "COUNTRIES");
    import("grid", "HEIGHTS");
    import("ifo", "STREETS");
    fs::remove_all(path("STREETS"));
    const json found = run({"list", "--json", "@"}).object();
    ASSERT_EQ(found["datasets"].size(), 2U) << found;
    EXPECT_EQ(found["datasets"][0]["name"], "HEIGHTS");
    EXPECT_EQ(found["datasets"][0]["kinds"], json::array({"Grid"}));
    EXPECT_EQ(found["datasets"][1]["name"], "ROADS");
    EXPECT_GT(found["datasets"][1]["bytes"], 1000);
    EXPECT_GT(found["datasets"][1]["changed"], 1700000000);
    std::vector<std::string> alone;
    for (const json& table : found["tables"]) alone.push_back(table["name"]);
    EXPECT_EQ(alone.front(), "COUNTRIES");
    EXPECT_TRUE(std::any_of(alone.begin(), alone.end(),
                            [](const std::string& name) { return name.starts_with("STREETS."); }));
    const std::string text = run({"list", "@"}).output;
    EXPECT_NE(text.find("HEIGHTS  Grid"), std::string::npos) << text;
    EXPECT_NE(text.find("Tables that belong to no dataset:\nCOUNTRIES"), std::string::npos) << text;
    EXPECT_EQ(run({"list", "@nowhere"}).status, 1);
}

TEST_F(Workspace, GivesUpADatasetWhenAsked) {
    import("cover_regions", "ROADS");
    import("ifo_alone", "COUNTRIES");
    import("metadata", "ROADS.OLD");
    const auto kept = tablesOf("ROADS.OLD");
    // Nobody to ask, nobody who agrees, nothing of the name, a table of a dataset.
    EXPECT_EQ(run({"remove", "@ROADS"}).status, 2);
    EXPECT_EQ(answering({"remove", "@ROADS"}, "\n").status, 0);
    EXPECT_EQ(run({"remove", "--yes", "@NONE"}).status, 1);
    const auto tables = tablesOf("ROADS");
    ASSERT_FALSE(tables.empty());
    EXPECT_EQ(run({"remove", "--yes", '@' + tables.front()}).status, 1);
    // A link, the folder of the tables, a folder that holds others, one that is no dataset.
    fs::create_directories(path("folder/sub"));
    fs::create_directory_symlink(path("ROADS"), path("LINK"));
    fs::create_directory(path("ROADS/deeper"));
    for (const char* name : {"@LINK", "@info", "@folder", "@ROADS", "@.", "@ROADS/.."}) {
        const Outcome outcome = run({"remove", "--yes", name});
        EXPECT_EQ(outcome.status, 1) << name;
        EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1)
            << outcome.errors;
    }
    EXPECT_EQ(tablesOf("ROADS"), tables);
    fs::remove(path("ROADS/deeper"));
    const Outcome removed = answering({"remove", "@ROADS", "@COUNTRIES"}, "y\nyes\n");
    EXPECT_EQ(removed.status, 0);
    EXPECT_NE(removed.errors.find("Remove Coverage " + path("ROADS") + ", "), std::string::npos);
    EXPECT_FALSE(fs::exists(path("ROADS")));
    // What another dataset owns is left.
    EXPECT_EQ(tablesOf("ROADS.OLD"), kept);
    EXPECT_EQ(run({"list", "--json", "@"}).object()["tables"].size(), 0U);
}

TEST_F(Workspace, RenamesADatasetAsAnImportWouldHaveNamedIt) {
    const std::vector<std::string> samples = {"cover_regions", "ifo_suffixes", "ifo_redefined",
                                              "ifo_alone",     "grid",         "tin_whole",
                                              "set_cl7",       "text"};
    for (const std::string& sample : samples) {
        SCOPED_TRACE(sample);
        fs::create_directory(path(sample));
        import(sample, sample + "/OLD");
        import(sample, sample + "/NEW");
        const std::string wanted = run({"dump", '@' + sample + "/NEW"}).output;
        EXPECT_EQ(run({"rename", '@' + sample + "/OLD", "NEW"}).status, 1);
        ASSERT_EQ(run({"remove", "--yes", '@' + sample + "/NEW"}).status, 0);
        const Outcome renamed = run({"rename", '@' + sample + "/OLD", "NEW"});
        ASSERT_EQ(renamed.status, 0) << renamed.errors;
        EXPECT_EQ(run({"dump", '@' + sample + "/NEW"}).output, wanted);
        EXPECT_EQ(run({"show", '@' + sample + "/OLD"}).status, 1);
        for (const char* name : {"", ".", "..", "info", "a/b", "../NEW", ".intake"}) {
            EXPECT_EQ(run({"rename", '@' + sample + "/NEW", name}).status, 1) << name;
        }
    }
    import("cover_single", "A");
    EXPECT_EQ(run({"rename", "@A", "@B"}).status, 0);
    EXPECT_TRUE(fs::exists(path("B")));
}

TEST_F(Workspace, KeepsTheOldDatasetUntilTheNewOneIsWhole) {
    import("cover_regions", "DS");
    const std::string old = run({"dump", "@DS"}).output;
    given(
        "EXP  0 X\nARC  2\n         1         1         1         1         1         1         "
        "1\n");
    const Outcome cut = run({"import", "--replace", "@in.e00", "@DS"});
    EXPECT_EQ(cut.status, 1);
    EXPECT_NE(cut.errors.find("the " + path("DS") + " that was there stays as it was"),
              std::string::npos)
        << cut.errors;
    EXPECT_EQ(cut.errors.find(".intake"), std::string::npos) << cut.errors;
    EXPECT_EQ(run({"dump", "@DS"}).output, old);
    EXPECT_EQ(run({"import", seed("cover_double"), "@DS"}).status, 2);
    const Outcome replaced = run({"import", "--replace", seed("cover_double"), "@DS"});
    EXPECT_EQ(replaced.status, 0) << replaced.errors;
    fs::create_directory(path("other"));
    import("cover_double", "other/DS");
    EXPECT_EQ(run({"dump", "@DS"}).output, run({"dump", "@other/DS"}).output);
    // A font lies under another name, and the grids of a stack lie beside it.
    fs::create_directory(path("X"));
    for (const std::string sample : {"fnt", "stk_tables"}) {
        import(sample, "X/" + sample);
        const auto files = filesIn("X");
        EXPECT_EQ(run({"import", "--replace", seed(sample), "@X/" + sample}).status, 0) << sample;
        EXPECT_EQ(filesIn("X"), files);
    }
}

TEST_F(Workspace, IsAsSmallAfterAThousandImportsAsAfterOne) {
    import("cover_regions", "DS");
    import("cover_single", "STAYS");
    const auto size = fs::file_size(path("info/catalog"));
    const auto files = filesIn("info").size();
    for (int each = 0; each < 500; ++each) {
        ASSERT_EQ(run({"remove", "--yes", "@DS"}).status, 0);
        import("cover_regions", "DS");
        ASSERT_EQ(run({"import", "--replace", "--quiet", seed("cover_regions"), "@DS"}).status, 0);
    }
    EXPECT_LE(fs::file_size(path("info/catalog")), size);
    EXPECT_EQ(filesIn("info").size(), files);
    EXPECT_EQ(run({"list", "--json", "@"}).object()["tables"].size(), 0U);
}

// A table whose name has no point is that of its coverage.
TEST_F(Workspace, ShowsATableThatHasTheNameOfItsCoverage) {
    given(
        "EXP  0 X\nARC  2\n        -1         0         0         0         0         0         0\n"
        "IFO  2\nSRC                                1   1   4         1\n"
        "A                 4-1   14-1  10-1 50-1  -1  -1-1                   1-\n"
        "          7\nEOI\nEOS\n");
    ASSERT_EQ(run({"import", "--quiet", "@in.e00", "@DS"}).status, 0);
    EXPECT_EQ(tablesOf("DS"), std::vector<std::string>{"DS"});
    EXPECT_NE(run({"dump", "@DS", "--class", "record"}).output.find("\"A\":7"), std::string::npos);
    EXPECT_EQ(run({"list", "--json", "@"}).object()["tables"].size(), 0U);
    EXPECT_EQ(run({"rename", "@DS", "NEW"}).status, 0);
    EXPECT_EQ(tablesOf("NEW"), std::vector<std::string>{"NEW"});
    EXPECT_EQ(run({"remove", "--yes", "@NEW"}).status, 0);
    EXPECT_EQ(filesIn("info"), (std::vector<std::string>{"catalog", "lock"}));
}

// The library's own words, and behind them what the system said.
TEST_F(Workspace, SaysWhyNothingCanBeMade) {
    writeFile(path("file"), "x");
    const struct {
        const char* sample;
        const char* words;
    } kinds[] = {{"cover_single", "Unable to create coverage."},
                 {"tin_whole", "Unable to create TIN."},
                 {"grid", "Unable to create "},
                 {"lattice", "Cannot create lattice "},
                 {"set_cl7", "Cannot create "},
                 {"plot", "Unable to create "}};
    for (const auto& kind : kinds) {
        SCOPED_TRACE(kind.sample);
        const Outcome missing = run({"import", seed(kind.sample), "@none/deeper/DS"});
        EXPECT_NE(missing.status, 0);
        EXPECT_NE(missing.errors.find(kind.words), std::string::npos) << missing.errors;
        EXPECT_NE(missing.errors.find(": there is no folder " + path("none/deeper")),
                  std::string::npos)
            << missing.errors;
        const Outcome inTheWay = run({"import", seed(kind.sample), "@file/DS"});
        EXPECT_NE(inTheWay.status, 0);
        EXPECT_NE(inTheWay.errors.find("Not a directory"), std::string::npos) << inTheWay.errors;
    }
    const Outcome there = run({"import", "--force", seed("cover_single"), "@file"});
    EXPECT_NE(there.errors.find("could not write " + path("file") + ": File exists"),
              std::string::npos)
        << there.errors;
}

constexpr int kNoDisk = 77;

// A disk that may only be read, with a dataset on it.
TEST_F(Workspace, MayBeOneThatIsOnlyRead) {
    fs::create_directory(path("disk"));
    const pid_t child = ::fork();
    if (child == 0) {
        const bool own = ::unshare(CLONE_NEWNS) == 0 || ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0;
        if (!own || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("tmpfs", path("disk").c_str(), "tmpfs", 0, "size=1m") != 0) {
            ::_exit(kNoDisk);
        }
        import("cover_regions", "disk/DS");
        const std::string old = run({"dump", "@disk/DS"}).output;
        if (::mount("none", path("disk").c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0) {
            ::_exit(kNoDisk);
        }
        for (const std::vector<std::string>& words :
             {std::vector<std::string>{"import", seed("cover_single"), "@disk/NEW"},
              {"import", "--replace", seed("cover_single"), "@disk/DS"},
              {"remove", "--yes", "@disk/DS"},
              {"rename", "@disk/DS", "NEW"}}) {
            const Outcome outcome = run(words);
            EXPECT_EQ(outcome.status, 1);
            EXPECT_NE(outcome.errors.find("Read-only file system"), std::string::npos)
                << outcome.errors;
        }
        EXPECT_EQ(run({"dump", "@disk/DS"}).output, old);
        EXPECT_EQ(run({"list", "@disk"}).status, 0);
        ::_exit(HasFailure() ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    if (WIFEXITED(status) && WEXITSTATUS(status) == kNoDisk) GTEST_SKIP() << "no disk to mount";
    EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace intake::testing
