#include <sys/wait.h>

#include <algorithm>
#include <cctype>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "entry/section_table.h"
#include "host/qxbase.h"
#include "tests/machine/sweep.h"

namespace intake::testing {
namespace {

// A seed of each kind of section, and of what is stored in more than one way.
std::vector<std::string> samples() {
    std::vector<std::string> names = {"arcs_volumes",   "cover_indexes", "cover_regions",
                                      "ifo_alone",      "ifo_indexed",   "ifo_two_older",
                                      "grd_statistics", "metadata"};
    for (const SectionRow& row : sectionTable()) {
        names.emplace_back(row.code);
        std::transform(row.code.begin(), row.code.end(), names.back().begin(),
                       [](unsigned char letter) { return std::tolower(letter); });
    }
    return names;
}

class FailingMachine : public SweepTest, public ::testing::WithParamInterface<std::string> {
  protected:
    void SetUp() override { begin(seed(GetParam())); }

    // Has the first call of a kind fail, then the next, until an import is left alone.
    template <class Check>
    void sweep(const std::string& call, const std::string& what, Check check) {
        for (int number = 1;; number = next(number)) {
            const std::string fault = call + ' ' + std::to_string(number) + what;
            const Ended ended = importAnew(fault);
            SCOPED_TRACE(fault + ": " + ended.failed);
            if (ended.signal == 0 && ended.failed.empty()) break;
            check(ended);
        }
    }
};

// What a call is interrupted in, or does by half, is gone on with.
TEST_P(FailingMachine, MakesNothingOfInterruptionsAndHalves) {
    for (const char* what : {" EINTR", " short"}) {
        for (const char* call : {"read", "write", "open", "make", "truncate", "lock", "close"}) {
            sweep(call, what, [&](const Ended& ended) {
                EXPECT_EQ(ended.signal, 0);
                EXPECT_EQ(ended.result, sound_.result);
                EXPECT_EQ(ended.messages, sound_.messages);
                EXPECT_EQ(stored(), soundFiles_);
            });
        }
    }
}

// Whatever is not as it should be is told, and a lost write ends in 0.
TEST_P(FailingMachine, TellsWhatFails) {
    const struct {
        const char* call;
        const char* what;
        bool losesWrites;
    } plans[] = {
        {"file", " EIO", false},     {"open", " EMFILE", false},   {"make", " EMFILE", true},
        {"change", " ENOSPC", true}, {"change", "+ ENOSPC", true}, {"close", " EIO", true},
        {"read", "+ EIO", false},    {"memory", " ENOMEM", false}, {"memory", "+ ENOMEM", false}};
    for (const auto& plan : plans) {
        sweep(plan.call, plan.what, [&](const Ended& ended) {
            ASSERT_EQ(ended.signal, 0);
            EXPECT_EQ(ended.leaked, 0);
            EXPECT_GE(ended.result, 0);
            const bool same = stored() == soundFiles_ && ended.result == sound_.result;
            const bool told = ended.worst() >= QX_WARN && ended.messages != sound_.messages;
            EXPECT_TRUE(same || told) << ::testing::PrintToString(ended.messages);
            if (plan.losesWrites && !same) {
                EXPECT_EQ(ended.result, 0) << ::testing::PrintToString(ended.messages);
            }
            expectSoundWorkspace();
        });
    }
}

TEST_P(FailingMachine, KillsAndLeavesWholeTables) {
    sweep("file", " kill", [&](const Ended& ended) {
        ASSERT_EQ(ended.signal, SIGKILL);
        expectSoundWorkspace();
        for (const auto& [name, records] : tables()) {
            const auto found = soundTables_.find(name);
            EXPECT_TRUE(found != soundTables_.end() && found->second == records) << name;
        }
        const Ended after = importNow("", "NEXT", seed("metadata"));
        EXPECT_EQ(after.result, 1);
        EXPECT_EQ(after.worst(), QX_INFORM);
    });
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(INTAKE_COVERAGE)
// The program, with the faults preloaded: it ends by itself, and not without a word. What counts
// coverage would need memory when it does.
TEST_F(SweepTest, TheProgramEndsWithAWord) {
    begin(seed("metadata"));
    importAnew("");
    const std::string intake = INTAKE_BINARY_DIR "/bin/intake ";
    const std::string dataset = path("now/space/DS");
    const std::string commands[] = {
        "import --json --force " + path("now/in.e00") + " " + path("now/space/NEW"),
        "show " + dataset, "dump " + dataset, "draw " + dataset + " " + path("out.svg")};
    for (const std::string& command : commands) {
        for (const char* fault : {"memory %d ENOMEM", "memory %d+ ENOMEM", "file %d EIO"}) {
            for (int number = 1; number < 3000; number = next(number)) {
                std::filesystem::remove_all(path("now/space/NEW"));
                char text[64];
                std::snprintf(text, sizeof text, fault, number);
                const std::string line =
                    "LD_PRELOAD=" INTAKE_BINARY_DIR "/lib/libintake_faults.so INTAKE_FAULT='" +
                    std::string(text) + "' INTAKE_FAULT_BELOW=" + path("now") + ' ' + intake +
                    command + " >" + path("output") + " 2>" + path("errors");
                const int status = std::system(line.c_str());
                ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) <= 3) << line;
                EXPECT_TRUE(status == 0 || fileBytes(path("errors")) != "") << line;
            }
        }
    }
}
#endif

INSTANTIATE_TEST_SUITE_P(EverySample, FailingMachine, ::testing::ValuesIn(samples()),
                         [](const auto& sample) { return sample.param; });

}  // namespace
}  // namespace intake::testing
