#include <filesystem>
#include <fstream>

#include "tests/support/program_test.h"

namespace intake::testing {
namespace {

namespace fs = std::filesystem;

class CheckWorkspace : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        for (const char* name : {"cover_regions", "grid", "ifo_alone", "ifo", "tin"}) {
            const std::string file = INTAKE_SOURCE_DIR "/fuzz/seeds/import/" + std::string(name);
            ASSERT_LE(run({"import", file + ".e00", '@' + std::string(name), "--quiet"}).status % 3,
                      0);
        }
    }
    void cut(const std::string& file, int64_t bytes) const {
        fs::resize_file(path(file), static_cast<uintmax_t>(
                                        static_cast<int64_t>(fs::file_size(path(file))) + bytes));
    }
    void overwrite(const std::string& file, std::streamoff place, const std::string& bytes) const {
        std::fstream(path(file), std::ios::in | std::ios::out | std::ios::binary).seekp(place)
            << bytes;
    }
    // The words "fault about", and the exit status.
    std::string found(const std::vector<std::string>& options = {}) const {
        std::vector<std::string> words = {"check-workspace", path(""), "--json"};
        words.insert(words.end(), options.begin(), options.end());
        const Outcome outcome = run(words);
        std::string text = std::to_string(outcome.status);
        const json object = outcome.object();
        for (const json& each : object["found"]) {
            const std::string about = each["about"];
            text += ' ' + std::string(each["fault"]) + ':' + about.substr(about.rfind('/') + 1);
            if (each["mended"]) text += '!';
        }
        return text;
    }
    std::string dumpOf(const std::string& dataset) const {
        return run({"dump", '@' + dataset}).output;
    }
    void age(const std::string& file) const {
        fs::last_write_time(path(file), fs::file_time_type::clock::now() - std::chrono::hours(1));
    }
};

TEST_F(CheckWorkspace, TellsWhatIsDamaged) {
    EXPECT_EQ(found(), "0");
    struct Row {
        const char* file;
        int64_t cut;
        const char* found;
    };
    constexpr Row kRows[] = {{"cover_regions/arc", -3, "3 records:arc"},
                             {"cover_regions/rpl.AREAS", -150, "3 head:rpl.AREAS"},
                             {"cover_regions/pat.dat.AREAS", -1, "3 table:cover_regions.PATAREAS"},
                             {"info/table2.dat", -200, "3 table:ifo_alone"},
                             {"info/table2.def", -5, "3 table:ifo_alone"},
                             {"grid/grid", -1, "3 unreadable:grid"},
                             {"grid/grid", -20, "3 head:grid"},
                             {"tin/tnxy", -1, "0 partial:tin"}};
    for (const Row& row : kRows) {
        const fs::path whole = path("whole");
        fs::copy_file(path(row.file), whole);
        cut(row.file, row.cut);
        EXPECT_EQ(found(), row.found) << row.file;
        EXPECT_EQ(found({"--repair"}), row.found) << "nothing of it can be mended";
        fs::remove(path(row.file));
        fs::rename(whole, path(row.file));
    }
    EXPECT_EQ(found(), "0");
    EXPECT_EQ(run({"check-workspace", path("nowhere")}).status, 1);
}

TEST_F(CheckWorkspace, MendsTheListOfTables) {
    const std::string whole = dumpOf("ifo") + dumpOf("cover_regions") + dumpOf("ifo_alone");
    // In the middle, at its front, and of no bytes.
    for (const std::streamoff place : {60, 0, -1}) {
        if (place < 0) {
            fs::resize_file(path("info/catalog"), 0);
        } else {
            overwrite("info/catalog", place, "XXXX");
        }
        EXPECT_EQ(found().substr(0, 14), "3 list:catalog");
        EXPECT_EQ(found({"--repair"}), "0 list:catalog!");
        EXPECT_EQ(found(), "0");
        EXPECT_EQ(dumpOf("ifo") + dumpOf("cover_regions") + dumpOf("ifo_alone"), whole);
    }
    fs::remove(path("info/table2.def"));
    EXPECT_EQ(found(), "3 missing:ifo_alone");
    age("info/table2.dat");
    EXPECT_EQ(found({"--repair"}), "0 missing:ifo_alone!");
    EXPECT_EQ(found({"--repair"}), "0 unlisted:table2.dat!");
    EXPECT_EQ(found(), "0");
}

TEST_F(CheckWorkspace, LeavesAloneWhatAnImportMayBeWriting) {
    // As a process leaves them that is killed: a number that was taken, records whose count is not
    // known yet.
    std::ofstream(path("info/table98.def"));
    std::ofstream(path("info/table99.def"));
    std::ofstream(path("info/table99.dat"));
    overwrite("cover_regions/arc", 40, std::string(8, '\xff'));
    age("info/table99.def");
    age("info/table98.def");
    const std::string left = "unlisted:table98.def unlisted:table99.dat unlisted:table99.def";
    EXPECT_EQ(found(), "0 " + left + " unfinished:arc");
    EXPECT_EQ(found({"--repair"}),
              "0 unlisted:table98.def! unlisted:table99.dat unlisted:table99.def unfinished:arc");
    age("info/table99.dat");
    EXPECT_EQ(found({"--repair"}), "0 unlisted:table99.dat! unlisted:table99.def! unfinished:arc");
    EXPECT_FALSE(fs::exists(path("info/table99.dat")));
    EXPECT_EQ(found(), "0 unfinished:arc");
}

}  // namespace
}  // namespace intake::testing
