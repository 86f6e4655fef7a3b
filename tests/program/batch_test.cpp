#include <fcntl.h>
#include <sched.h>
#include <sqlite3.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <thread>

#include "app/intake/batch/sha256.h"
#include "tests/support/containers.h"
#include "tests/support/sample_test.h"

namespace intake::testing {
namespace {

namespace fs = std::filesystem;

class Batch : public SampleTest {
  protected:
    // Of arcs that are between no polygons, or all around one.
    static std::string coverage(int arcs, const std::string& polygon = "0") {
        std::string text = "EXP  0 X\nARC  2\n";
        for (int number = 1; number <= arcs; ++number) {
            text += "         1         1         1         2         " + polygon +
                    "         0         2\n"
                    " 1.0000000E+00 2.0000000E+00 3.0000000E+00 4.0000000E+00\n";
        }
        return text +
               "        -1         0         0         0         0         0         0\nEOS\n";
    }
    void put(const std::string& name, const std::string& bytes) const {
        fs::create_directories(fs::path(path(name)).parent_path());
        writeFile(path(name), bytes);
    }
    // A program of its own; gives its process.
    pid_t begin(
        std::vector<std::string> words, const std::function<void()>& before = [] {}) const {
        const pid_t child = ::fork();
        if (child != 0) return child;
        const int nothing = ::open(path("told").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
        ::dup2(nothing, STDERR_FILENO);
        if (::chdir(path("").c_str()) != 0) ::_exit(98);
        before();
        words.insert(words.begin(), {"intake", "batch"});
        std::vector<char*> arguments;
        for (std::string& word : words) arguments.push_back(word.data());
        arguments.push_back(nullptr);
        ::execv(INTAKE_BINARY_DIR "/bin/intake", arguments.data());
        ::_exit(99);
    }
    static int end(pid_t process) {
        int status = 0;
        ::waitpid(process, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    int batch(const std::vector<std::string>& words) const { return end(begin(words)); }

    // The process that is at a file, some time after it began.
    static pid_t workerOf(pid_t process) {
        const std::string number = std::to_string(process);
        for (int tries = 0; tries < 1000; ++tries) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            // The first one has outputs written.
            pid_t first = 0;
            pid_t worker = 0;
            std::ifstream("/proc/" + number + "/task/" + number + "/children") >> first >> worker;
            std::string used;
            std::ifstream stat("/proc/" + std::to_string(worker) + "/stat");
            for (int field = 0; field < 14; ++field) stat >> used;  // the time of its own
            if (worker != 0 && used != "0") return worker;
        }
        return 0;
    }

    // Whether a file of such a name grows within some time.
    bool isMaking(const std::string& out, const std::string& name) const {
        for (int tries = 0; tries < 6000; ++tries) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            std::error_code gone;
            for (fs::recursive_directory_iterator each(path(out), gone), end; !gone && each != end;
                 each.increment(gone)) {
                if (each->path().filename().string().find(name) != std::string::npos) return true;
            }
        }
        return false;
    }

    // The lines by path; the last one of each counts.
    std::map<std::string, json> report(const std::string& name = "out/report.jsonl") const {
        std::map<std::string, json> lines;
        std::ifstream stream(path(name));
        for (std::string line; std::getline(stream, line);) {
            const json object = json::parse(line);
            lines[object.value("path_bytes", object["path"].get<std::string>())] = object;
        }
        return lines;
    }
    // "whole: out/a.csv", or "failed: unreadable" of each input.
    std::map<std::string, std::string> outcomes(
        const std::string& name = "out/report.jsonl") const {
        std::map<std::string, std::string> result;
        for (const auto& [input, object] : report(name)) {
            std::string& text = result[input] = object["status"].get<std::string>() + ":";
            if (object.contains("failure")) text += " " + object["failure"].get<std::string>();
            for (const json& output : object["outputs"]) {
                const std::string exact = output.value("path_bytes", output["path"]);
                text += " " + exact;
                if (exact == output["path"]) {
                    EXPECT_TRUE(fs::exists(path(exact))) << exact;
                }
            }
        }
        return result;
    }
    // All files of a folder with their bytes.
    std::map<std::string, std::string> files(const std::string& folder) const {
        std::map<std::string, std::string> result;
        for (const auto& each : fs::recursive_directory_iterator(path(folder))) {
            if (each.is_regular_file() && each.path().extension() != ".jsonl") {
                result[fs::relative(each.path(), path(folder))] = fileBytes(each.path());
            }
        }
        return result;
    }
    using Outcomes = std::map<std::string, std::string>;
};

TEST_F(Batch, TellsEachInputAndPutsItsOutputWhereItBelongs) {
    const std::string whole = coverage(3);
    put("in/a.e00", whole);
    put("in/deep/er/a.e00", whole);
    put("in/A.E00", whole);
    put("in/a.e00.gz", packed("raw", {"gzip"}, {{"a.e00", whole}}));
    put("in/cut.e00", whole.substr(0, 300));
    put("in/hostile.e00", "EXP  0 X\nARC  9\n\xff\xfe\n" + std::string(5000, '7') + "\n");
    put("in/text.e00", "no map at all\n");
    put("in/empty.e00", "");
    put("in/broken.e00.gz", packed("raw", {"gzip"}, {{"a.e00", whole}}).substr(0, 60));
    put("in/two\nlines.e00", whole);
    put("in/stra\xdf"
        "e.e00",
        whole);
    put("in/several.zip", packed("zip", {}, {{"x.e00", whole}, {"y/z.e00", whole}}));
    const std::size_t half = whole.find('\n', whole.size() / 2) + 1;
    put("in/vol.e00", whole.substr(0, half));
    put("in/vol.e01", whole.substr(half));
    put("in/readme.txt", "other names are not looked at");
    fs::create_directory_symlink(path("in"), path("in/deep/loop"));
    fs::create_symlink("nowhere", path("in/link.e00"));
    ::mkfifo(path("in/pipe.e00").c_str(), 0600);
    EXPECT_EQ(batch({"--to", "csv", "--jobs", "2", "--out", "out", "in"}), 1);
    const Outcomes expected = {
        {"in/A.E00", "whole: out/A.csv"},
        {"in/a.e00", "whole: out/a_2.csv"},
        {"in/a.e00.gz", "whole: out/a_3.csv"},
        {"in/broken.e00.gz", "failed: unreadable"},
        {"in/cut.e00", "partial: out/cut.csv"},
        {"in/deep/er/a.e00", "whole: out/deep/er/a.csv"},
        {"in/empty.e00", "failed: not an interchange file"},
        {"in/hostile.e00", "failed: nothing readable"},
        {"in/link.e00", "failed: unreadable"},
        {"in/pipe.e00", "failed: unreadable"},
        {"in/several.zip::x.e00", "whole: out/several.zip/x.csv"},
        {"in/several.zip::y/z.e00", "whole: out/several.zip/y/z.csv"},
        {"in/stra%DFe.e00", "whole: out/stra%DFe.csv"},
        {"in/text.e00", "failed: not an interchange file"},
        {"in/two\nlines.e00", "whole: out/two\nlines.csv"},
        {"in/vol.e00", "whole: out/vol.csv"},
    };
    EXPECT_EQ(outcomes(), expected);
    EXPECT_TRUE(
        fs::exists(path("out/stra\xdf"
                        "e.csv/arcs.csv")));
    const json volumes = report()["in/vol.e00"];
    EXPECT_EQ(volumes["size"], whole.size());
    EXPECT_EQ(volumes["sha256"], report()["in/a.e00"]["sha256"]);
    EXPECT_EQ(volumes["outputs"][0]["layers"][0], json({{"name", "arcs"}, {"features", 3}}));
    EXPECT_EQ(volumes["kind"], "Coverage");
    EXPECT_EQ(volumes["sections"], json::parse(R"([{"code":"ARC","lines":7}])"));
    const std::string told = fileBytes(path("told"));
    EXPECT_NE(told.find("1 files of other names"), std::string::npos) << told;
    EXPECT_NE(told.find("1 links to folders"), std::string::npos);
    // Nothing but outputs and the report stays.
    for (const auto& each : fs::directory_iterator(path("out"))) {
        EXPECT_FALSE(each.path().filename().string().starts_with('.')) << each.path();
    }

    // Datasets are kept in workspaces, also of a list, each below its whole path.
    put("list", "in/deep/er/a.e00\nin/nothing.e00\n");
    EXPECT_EQ(batch({"--out", "kept", "@list", "in/a.e00"}), 1);
    EXPECT_EQ(outcomes("kept/report.jsonl"),
              (Outcomes{{"in/a.e00", "whole: kept/a.e00"},
                        {"in/deep/er/a.e00", "whole: kept/in/deep/er/a.e00"},
                        {"in/nothing.e00", "failed: unreadable"}}));
    EXPECT_EQ(records("arc", "kept/a.e00/a").size(), 3U);
}

TEST_F(Batch, CostsOnlyTheFileThatHangsCrashesOrEatsMemory) {
    put("in/large.e00", coverage(200000, "2"));
    put("in/fine.e00", coverage(1));
    // Its one worker is stopped or killed at the second output of the large one, which comes first.
    for (const auto& [signal, failure] : {std::pair(SIGSTOP, "timeout"), {SIGSEGV, "crash"}}) {
        const std::string out = failure;
        const pid_t process = begin(
            {"--to", "csv", "--to", "gpkg", "--timeout", "1", "--jobs", "1", "--out", out, "in"});
        const pid_t worker = workerOf(process);
        ASSERT_TRUE(isMaking(out, "large.gpkg"));
        ::kill(worker, signal);
        EXPECT_EQ(end(process), 1);
        EXPECT_EQ(outcomes(out + "/report.jsonl"),
                  (Outcomes{{"in/large.e00", "failed: " + out},
                            {"in/fine.e00", "whole: " + out + "/fine.csv " + out + "/fine.gpkg"}}));
        EXPECT_FALSE(fs::exists(path(out + "/large.csv")));
        const json large = report(out + "/report.jsonl")["in/large.e00"];
        EXPECT_EQ(large["size"], fs::file_size(path("in/large.e00")));
        EXPECT_EQ(large["sha256"].get<std::string>().size(), 64U);
    }
#if !defined(__SANITIZE_ADDRESS__)
    // The polygons of many arcs are put together in memory.
    EXPECT_EQ(batch({"--to", "csv", "--memory", "16M", "--out", "small", "in"}), 1);
    EXPECT_EQ(outcomes("small/report.jsonl"), (Outcomes{{"in/large.e00", "failed: memory"},
                                                        {"in/fine.e00", "whole: small/fine.csv"}}));
#endif
}

TEST_F(Batch, ASecondSignalEndsItAtOnce) {
    put("in/large.e00", coverage(200000, "2"));
    const pid_t process = begin({"--to", "csv", "--jobs", "1", "--out", "out", "in"});
    ::kill(workerOf(process), SIGSTOP);  // it would never be done
    ::kill(process, SIGINT);
    for (int tries = 0; fileBytes(path("told")).find("once more") == std::string::npos; ++tries) {
        ASSERT_LT(tries, 1000);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(::waitpid(process, nullptr, WNOHANG), 0);
    ::kill(process, SIGINT);
    EXPECT_EQ(end(process), 130);
    EXPECT_EQ(files(".").size(), 2U);  // the input, and what was told
    EXPECT_TRUE(fs::is_empty(temporary()));
}

TEST_F(Batch, OneThatIsKilledLeavesNoTemporaryFiles) {
    put("in/large.e00", coverage(200000, "2"));
    const pid_t process = begin({"--to", "csv", "--jobs", "1", "--out", "out", "in"});
    ASSERT_NE(workerOf(process), 0);
    EXPECT_FALSE(fs::is_empty(temporary()));
    ::kill(process, SIGKILL);
    EXPECT_EQ(end(process), -SIGKILL);
    for (int tries = 0; tries < 1000 && !fs::is_empty(temporary()); ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(fs::is_empty(temporary()));
}

TEST_F(Batch, AKindIsWholeWhereOneOfTheFormatsHoldsIt) {
    for (const char* const name : {"jkstk", "ctry", "pfont"}) {
        put("in/" + std::string(name) + ".e00", fileBytes(sample(std::string(name) + ".e00")));
    }
    EXPECT_EQ(batch({"--to", ".tif", "--to", "glb", "--to", "gpkg", "--out", "out", "in"}), 1);
    EXPECT_EQ(outcomes(), (Outcomes{{"in/ctry.e00", "whole: out/ctry.gpkg"},
                                    {"in/jkstk.e00", "whole: out/jkstk.tif out/jkstk.gpkg"},
                                    {"in/pfont.e00", "failed: no format holds it"}}));
    EXPECT_TRUE(fs::exists(path("out/jkstk.tif/JKA.tif")));
    EXPECT_EQ(batch({"--to", "gpkg", "--out", "less", "in/jkstk.e00"}), 3);
}

TEST_F(Batch, GoesOnWithAReport) {
    for (const char* const name : {"in/a.e00", "in/b.e00", "in/c.e00"}) put(name, coverage(2));
    put("in/d.e00", "nothing");
    const std::vector<std::string> words = {"--to", "csv", "--out", "out", "in"};
    const auto with = [&](const char* word) {
        std::vector<std::string> all = words;
        all.insert(all.begin(), word);
        return batch(all);
    };
    const auto lines = [&] {
        const std::string text = fileBytes(path("out/report.jsonl"));
        return std::count(text.begin(), text.end(), '\n');
    };
    EXPECT_EQ(with("--quiet"), 1);
    EXPECT_EQ(lines(), 4);
    EXPECT_EQ(batch(words), 2);  // the report stands
    // What failed is taken again; of the others one that has changed, and one that is new.
    put("in/b.e00", coverage(3));
    put("in/e.e00", coverage(1));
    std::ofstream(path("out/report.jsonl"), std::ios::app) << "{\"path\":\"in/c.e0";
    EXPECT_EQ(with("--retry"), 1);
    EXPECT_EQ(lines(), 5);
    EXPECT_EQ(with("--resume"), 1);
    EXPECT_EQ(lines(), 8);
    EXPECT_EQ(report()["in/b.e00"]["outputs"][0]["layers"][0]["features"], 3);
    fs::remove(path("in/d.e00"));
    EXPECT_EQ(with("--resume"), 0);
    EXPECT_EQ(lines(), 8);
    // Other options make other outputs.
    EXPECT_EQ(batch({"--resume", "--to", "csv", "--to", "gpkg", "--out", "out", "in"}), 0);
    EXPECT_EQ(lines(), 12);
    EXPECT_TRUE(fs::exists(path("out/a.gpkg")));
    EXPECT_EQ(with("--force"), 0);
    EXPECT_EQ(lines(), 4);
    const auto summed = [&] {
        return run({"report", "--json", "--list", "@list", "@out/report.jsonl"});
    };
    put("list", path("in/a.e00") + "\nin/a.e00\n");
    EXPECT_EQ(summed().status, 1);
    EXPECT_EQ(summed().object()["missing"], 1);
}

TEST_F(Batch, PartsMakeTheWhole) {
    for (int each = 0; each < 30; ++each) {
        put("in/" + std::to_string(each % 4) + "/x" + std::to_string(each) + ".e00", coverage(1));
        put("in/" + std::to_string(each % 4) + "/X" + std::to_string(each) + ".e00", coverage(2));
    }
    EXPECT_EQ(batch({"--to", "csv", "--out", "out", "in"}), 0);
    std::size_t inputs = 0;
    for (const char* const shard : {"0", "1", "2"}) {
        EXPECT_EQ(
            batch({"--to", "csv", "--shard", std::string(shard) + "/3", "--out", "parts", "in"}),
            0);
        const auto part = report("parts/report." + std::string(shard) + "-of-3.jsonl");
        EXPECT_GT(part.size(), 8U);
        inputs += part.size();
    }
    EXPECT_EQ(inputs, 60U);
    EXPECT_EQ(files("parts"), files("out"));
    const Outcome sums = run({"report", "--json", "@parts/report.0-of-3.jsonl",
                              "@parts/report.1-of-3.jsonl", "@parts/report.2-of-3.jsonl"});
    EXPECT_EQ(sums.object()["status"], json::parse(R"({"whole":60,"partial":0,"failed":0})"));
    for (const char* const wrong : {"3/3", "1", "1/", "-1/3", "1/0"}) {
        EXPECT_EQ(batch({"--shard", wrong, "--out", "none", "in"}), 2) << wrong;
    }
}

TEST_F(Batch, IsKilledAtAnyMomentAndComesToTheSame) {
    for (int each = 0; each < 60; ++each) {
        put("in/" + std::to_string(each) + ".e00", coverage(1 + each * 20));
    }
    EXPECT_EQ(batch({"--to", "csv", "--out", "out", "in"}), 0);
    std::mt19937 random(7);
    constexpr int kKills = 100;
    int killed = 0;
    for (int tries = 0; killed < kKills && tries < 10 * kKills; ++tries) {
        const pid_t process =
            begin({"--resume", "--to", "csv", "--jobs", "2", "--out", "often", "in"});
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 60));
        ::kill(process, tries % 4 == 0 ? SIGINT : SIGKILL);
        const int status = end(process);
        if (status != 0) ++killed;
        if (!fs::exists(path("often/report.jsonl"))) continue;
        // A line that is there tells of outputs that are there.
        std::ifstream lines(path("often/report.jsonl"));
        for (std::string line; std::getline(lines, line) && !lines.eof();) {
            const json object = json::parse(line);
            ASSERT_TRUE(fs::exists(path(object["outputs"][0]["path"].get<std::string>())));
        }
        // Not all of it is done before the killing is.
        if (outcomes("often/report.jsonl").size() > 50) fs::remove_all(path("often"));
    }
    EXPECT_EQ(killed, kKills);
    EXPECT_EQ(batch({"--resume", "--to", "csv", "--out", "often", "in"}), 0);
    EXPECT_EQ(files("often"), files("out"));
    EXPECT_EQ(report("often/report.jsonl").size(), 60U);
    fs::remove_all(temporary());  // what a program that is killed so leaves
    fs::create_directory(temporary());
}

TEST_F(Batch, EndsWhereItCannotWrite) {
    for (int each = 0; each < 40; ++each) {
        put("in/" + std::to_string(each) + ".e00", coverage(400));
    }
    put("file", "");
    EXPECT_EQ(batch({"--out", "file/below", "in"}), 1);
    EXPECT_EQ(batch({"--out", "out", "--report", "/dev/full", "in"}), 1);
    EXPECT_NE(fileBytes(path("told")).find("/dev/full: could not be written: No space left"),
              std::string::npos);
    EXPECT_EQ(batch({"--out", "out", "@none"}), 1);
    fs::create_directory(path("disk"));
    if (::mount("none", path("disk").c_str(), "tmpfs", 0, "size=200k") != 0) {
        GTEST_SKIP() << "no small disk without the right to mount one";
    }
    EXPECT_EQ(batch({"--to", "csv", "--out", "disk/out", "in"}), 1);
    for (const auto& [input, object] : report("disk/out/report.jsonl")) {
        if (object["status"] == "whole") continue;
        EXPECT_EQ(object["outputs"].size(), 0U) << object;
    }
    outcomes("disk/out/report.jsonl");
    // Where memory for workspaces runs out, they are on the disk.
    const pid_t process = begin({"--to", "csv", "--out", "other", "in"}, [&] {
        // All that the test has may be below what is mounted over.
        const bool mounted = ::unshare(CLONE_NEWNS) == 0 &&
                             ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                             ::mount(path("").c_str(), "/mnt", nullptr, MS_BIND, nullptr) == 0 &&
                             ::mount("none", "/dev/shm", "tmpfs", 0, "size=1g,nr_inodes=9") == 0 &&
                             ::chdir("/mnt") == 0 && ::setenv("TMPDIR", "/mnt", 1) == 0;
        if (!mounted) ::_exit(97);
    });
    EXPECT_EQ(end(process), 0);
    ::mount("none", path("disk").c_str(), "tmpfs", MS_REMOUNT, "size=20m");
    EXPECT_EQ(batch({"--resume", "--to", "csv", "--out", "disk/out", "in"}), 0);
    EXPECT_EQ(report("disk/out/report.jsonl").size(), 40U);
    ::mount("none", path("disk").c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=20m");
    EXPECT_EQ(batch({"--resume", "--to", "csv", "--out", "disk/out", "in"}), 1);
    ::umount(path("disk").c_str());
}

TEST_F(Batch, GathersGeoPackagesInOne) {
    for (int each = 0; each < 12; ++each) {
        put("in/" + std::to_string(each) + ".e00", coverage(1 + each));
    }
    const std::vector<std::string> words = {"--gather", "--resume", "--jobs", "2",
                                            "--out",    "out",      "in"};
    EXPECT_EQ(batch(words), 0);
    put("in/3.e00", coverage(50));
    put("in/new.e00", coverage(100));
    // One that is killed leaves what its workers gathered to the next one.
    const pid_t process = begin(words);
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    ::kill(process, SIGKILL);
    end(process);
    fs::remove_all(temporary());
    fs::create_directory(temporary());
    EXPECT_EQ(batch(words), 0);
    EXPECT_EQ(files("out").size(), 1U);
    const auto asked = [&](const std::string& sql) {
        sqlite3* database = nullptr;
        std::string answer;
        sqlite3_open(path("out/gathered.gpkg").c_str(), &database);
        sqlite3_exec(
            database, sql.c_str(),
            [](void* text, int count, char** values, char**) {
                for (int each = 0; each < count; ++each) {
                    *static_cast<std::string*>(text) +=
                        std::string(values[each] ? values[each] : "-") + ' ';
                }
                return 0;
            },
            &answer, nullptr);
        sqlite3_close(database);
        return answer;
    };
    EXPECT_EQ(asked("SELECT count(*), count(DISTINCT source_file) FROM arcs"), "224 13 ");
    EXPECT_EQ(asked("SELECT count(*), max(source_fid) FROM arcs WHERE source_file = 'in/3.e00'"),
              "50 50 ");
    EXPECT_EQ(asked("SELECT count(*), min(minx), max(maxy) FROM rtree_arcs_geom"), "224 1.0 4.0 ");
    EXPECT_EQ(asked("SELECT min_x, max_y FROM gpkg_contents WHERE table_name = 'arcs'"),
              "1.0 4.0 ");
    EXPECT_EQ(asked("PRAGMA integrity_check"), "ok ");
}

TEST_F(Batch, ReportsArePagesAndSums) {
    put("in/a.e00", coverage(2));
    put("in/</script><b>.e00", coverage(2));
    put("in/b.e00", "none");
    EXPECT_EQ(batch({"--to", "csv", "--thumbnails", "--out", "out", "in"}), 1);
    EXPECT_TRUE(fs::exists(path("out/a.thumbnail.png")));
    std::ofstream(path("out/report.jsonl"), std::ios::app) << "{\"path\":\"in/a.e00\",\"si\n[]\n";
    const Outcome sums = run({"report", "@out/report.jsonl"});
    EXPECT_EQ(sums.status, 1);
    EXPECT_NE(sums.output.find("3 inputs"), std::string::npos) << sums.output;
    EXPECT_NE(sums.output.find("2 whole, 1 failed"), std::string::npos);
    EXPECT_NE(sums.output.find("2 lines of the reports are damaged"), std::string::npos);
    fs::current_path(path(""));
    const std::string page = run({"report", "--html", "out/report.jsonl"}).output;
    fs::current_path("/");
    EXPECT_NE(page.find("\"i\":\"iVBORw0KGgo"), std::string::npos);
    EXPECT_EQ(page.find("</script><b>"), std::string::npos);
    EXPECT_EQ(page.find("http"), page.find("http-equiv"));
    EXPECT_EQ(run({"report", "@none.jsonl"}).status, 1);
    EXPECT_EQ(run({"report", "--html", "--json", "@out/report.jsonl"}).status, 2);
}

TEST(Sha256, IsThatOfTheStandardInBothWays) {
    using program::Sha256;
    const auto of = [](const std::string& text, Sha256::Way way, std::size_t piece) {
        Sha256 sum(way);
        for (std::size_t at = 0; at < text.size(); at += piece) {
            sum.add({text.data() + at, std::min(piece, text.size() - at)});
        }
        return sum.digits();
    };
    EXPECT_EQ(of("abc", Sha256::Way::kPlain, 1),
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(of("", Sha256::Way::kBest, 1),
              "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(of(std::string(1'000'000, 'a'), Sha256::Way::kPlain, 4096),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
    std::mt19937 random(1);
    for (std::size_t size = 0; size < 300; ++size) {
        std::string text(size, '\0');
        for (char& each : text) each = static_cast<char>(random());
        EXPECT_EQ(of(text, Sha256::Way::kBest, 1 + size % 70), of(text, Sha256::Way::kPlain, 1000));
    }
}

}  // namespace
}  // namespace intake::testing
