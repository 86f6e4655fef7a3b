// Datasets are removed, renamed and replaced by a program that is killed at each of its steps.
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>

#include "host/cpp/call.h"
#include "host/qxfeat.h"
#include "tests/machine/sweep.h"

namespace intake::testing {
namespace {

namespace fs = std::filesystem;

class KilledChange : public ProgramTest {
  protected:
    void SetUp() override {
        fs::create_directory(path("start"));
        ASSERT_EQ(run({"import", seed("cover_regions"), "@start/A", "--quiet"}).status, 0);
        ASSERT_EQ(run({"import", seed("ifo_two"), "@start/T", "--quiet"}).status, 0);
        ASSERT_EQ(run({"import", seed("metadata"), "@start/B", "--quiet"}).status, 0);
        ASSERT_EQ(run({"import", seed("stk_tables"), "@start/S", "--quiet"}).status, 0);
    }

    std::string dumped(const std::string& dataset) const {
        const Outcome outcome = run({"dump", "@now/" + dataset});
        return outcome.status == 0 ? outcome.output : "none";
    }
    // What can be seen of the datasets that a change may touch, and of those that it may not.
    std::vector<std::string> seen() const {
        std::vector<std::string> all;
        for (const char* each : {"A", "NEW", "T", "S"}) all.push_back(dumped(each));
        for (const auto& entry : fs::directory_iterator(path("now"))) {
            all.push_back(entry.path().filename().string());
        }
        std::sort(all.begin() + 4, all.end());
        return all;
    }
    void startAnew() const {
        fs::remove_all(path("now"));
        fs::copy(path("start"), path("now"), fs::copy_options::recursive);
    }
    // The faults strike at paths that begin with the workspace's.
    std::string inside(std::string command) const {
        for (std::size_t at = command.find('@'); at != command.npos; at = command.find('@', at)) {
            command.replace(at, 1, path("now/"));
        }
        return command;
    }
    // The program as a process of its own, with a fault or none. Its status, -1 if it was killed.
    int program(const std::string& command, const std::string& fault) const {
        const std::string faulty = "LD_PRELOAD=" INTAKE_BINARY_DIR
                                   "/lib/libintake_faults.so INTAKE_FAULT_BELOW=" +
                                   path("now") + " INTAKE_FAULT='" + fault + "' ";
        const std::string line = (fault.empty() ? "" : faulty) +
                                 "exec " INTAKE_BINARY_DIR "/bin/intake " + inside(command) + " >" +
                                 path("output") + " 2>" + path("errors");
        const int status = std::system(line.c_str());
        const bool killed = WIFSIGNALED(status) || WEXITSTATUS(status) == 128 + SIGKILL;
        return killed ? -1 : WEXITSTATUS(status);
    }
    // Every file in the folder of tables belongs to one that is listed, and each of those is whole.
    void expectNothingAstray() const {
        EXPECT_FALSE(fs::exists(path("now/.intake")));
        const Outcome listed = run({"list", "--json", "@now"});
        EXPECT_EQ(listed.status, 0) << listed.errors;
        EXPECT_EQ(listed.output.find("cannot be read"), std::string::npos) << listed.output;
        std::set<int> numbers;
        for (const auto& entry : fs::directory_iterator(path("now/info"))) {
            const std::string name = entry.path().filename().string();
            if (name.starts_with("table")) numbers.insert(std::atoi(name.c_str() + 5));
        }
        int32_t list = 0;
        int32_t count = 0;
        qx::call(inflst_, list, std::string_view(path("now/info")), "", count);
        qx::call(infend_, list);
        EXPECT_EQ(numbers.size(), static_cast<std::size_t>(count));
        for (const std::string dataset : {"A", "NEW", "S"}) {
            if (!fs::exists(path("now/" + dataset))) continue;
            for (const json& table : run({"show", "--json", "@now/" + dataset}).object()["tables"])
                EXPECT_TRUE(table["name"].get<std::string>().starts_with(dataset + '.')) << table;
        }
    }
};

TEST_F(KilledChange, LeavesTheOldOrTheNewWhole) {
    const std::string commands[] = {
        "remove --yes @A",
        "remove --yes @T",
        "rename @A NEW",
        "rename @T NEW",
        "import --quiet --replace --force " + seed("cover_double") + " @A",
        "import --quiet --replace --force " + seed("ifo_alone") + " @A",
        "import --quiet --replace --force " + seed("cover_single") + " @T",
        "import --quiet --replace --force " + seed("stk") + " @S"};
    for (const std::string& command : commands) {
        startAnew();
        const std::string other = dumped("B");
        const std::vector<std::string> old = seen();
        ASSERT_NE(program(command, ""), -1);
        expectNothingAstray();
        const std::vector<std::string> changed = seen();
        ASSERT_NE(changed, old) << command << fileBytes(path("errors"));
        bool killed = true;
        for (int step = 1; killed; step = next(step)) {
            startAnew();
            killed = program(command, "file " + std::to_string(step) + " kill") == -1;
            SCOPED_TRACE(command + ", step " + std::to_string(step));
            // The next command finishes it, or gives it up.
            ASSERT_EQ(program("list @", ""), 0) << fileBytes(path("errors"));
            expectNothingAstray();
            const std::vector<std::string> now = seen();
            EXPECT_TRUE(now == old || now == changed) << ::testing::PrintToString(now);
            EXPECT_EQ(dumped("B"), other);
            if (!killed) {
                EXPECT_GT(step, 30);
            }
        }
    }
}

// Where a step fails the change is told as failed, and the next command brings it to its end.
TEST_F(KilledChange, IsFinishedAfterAFailure) {
    for (const std::string& command :
         {std::string("remove --yes @A"), std::string("rename @A NEW"),
          "import --quiet --replace --force " + seed("cover_double") + " @A"}) {
        startAnew();
        const std::vector<std::string> old = seen();
        program(command, "");
        const std::vector<std::string> changed = seen();
        for (int step = 1; step < 1000; step = next(step)) {
            startAnew();
            const int status = program(command, "change " + std::to_string(step) + " ENOSPC");
            SCOPED_TRACE(command + ", step " + std::to_string(step));
            ASSERT_NE(status, -1);
            if (status != 0) {
                EXPECT_NE(fileBytes(path("errors")), "");
            }
            ASSERT_EQ(program("list @", ""), 0) << fileBytes(path("errors"));
            expectNothingAstray();
            const std::vector<std::string> now = seen();
            EXPECT_TRUE(now == changed || (now == old && status != 0));
            if (status == 0 && now == changed && step > 200) break;
        }
    }
}

}  // namespace
}  // namespace intake::testing
