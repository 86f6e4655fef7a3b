#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <thread>

#include "host/qxbase.h"
#include "tests/support/sample_test.h"

namespace intake::testing {
namespace {

// An import by the program as it is installed, with what it tells as it tells it.
class Running {
  public:
    Running(const std::vector<std::string>& words, int input) {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0) return;
        child_ = ::fork();
        if (child_ == 0) {
            ::dup2(input, STDIN_FILENO);
            ::dup2(ends[1], STDERR_FILENO);
            std::vector<char*> arguments = {const_cast<char*>("intake")};
            for (const std::string& word : words)
                arguments.push_back(const_cast<char*>(word.c_str()));
            arguments.push_back(nullptr);
            ::execv(INTAKE_BINARY_DIR "/bin/intake", arguments.data());
            ::_exit(99);
        }
        ::close(ends[1]);
        errors_ = ::fdopen(ends[0], "r");
    }
    ~Running() { std::fclose(errors_); }

    // The next line that tells of an event; null at the end.
    json next() {
        char line[4096];
        return std::fgets(line, sizeof line, errors_) ? json::parse(line) : json();
    }
    // Bytes that it has told and nobody has read.
    int unread() const {
        int count = 0;
        ::ioctl(::fileno(errors_), FIONREAD, &count);
        return count;
    }
    bool ended() const {
        siginfo_t information{};
        ::waitid(P_PID, static_cast<id_t>(child_), &information, WEXITED | WNOHANG | WNOWAIT);
        return information.si_pid != 0;
    }
    void send(int signal) const { ::kill(child_, signal); }
    int wait() const {
        int status = 0;
        ::waitpid(child_, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

  private:
    pid_t child_ = 0;
    FILE* errors_ = nullptr;
};

class Stop : public SampleTest {
  protected:
    // Arcs of some 750 bytes each, and as many labels.
    void givenMany(int arcs) {
        std::string arc =
            "         1         1         1         2         3         4        24\n";
        for (int line = 0; line < 12; ++line) {
            arc += " 1.0000000E+00 2.0000000E+00 3.0000000E+00 4.0000000E+00\n";
        }
        std::string text = "EXP  0 X\nARC  2\n";
        text.reserve(text.size() + static_cast<std::size_t>(arcs) * arc.size());
        for (int count = 0; count < arcs; ++count) text += arc;
        text += "        -1         0         0         0         0         0         0\nLAB  2\n";
        for (int count = 0; count < arcs; ++count) {
            text +=
                "         1         0 1.0000000E+00 2.0000000E+00\n"
                " 1.0000000E+00 2.0000000E+00 1.0000000E+00 2.0000000E+00\n";
        }
        given(text + "        -1         0 0.0000000E+00 0.0000000E+00\nEOS\n");
    }
};

TEST_F(Stop, ASignalEndsAnImportWhereItStandsAndKeepsWhatWasRead) {
    givenMany(250000);  // two hundred million bytes
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const std::string dataset = "DS" + std::to_string(signal);
        // The file comes on standard input, and lies in a temporary folder meanwhile.
        const int input = ::open(path("in.e00").c_str(), O_RDONLY | O_CLOEXEC);
        Running import({"import", "--progress", "json", "-", path(dataset)}, input);
        ::close(input);
        json event;
        do {
            event = import.next();
        } while (!event.is_null() && !(event["event"] == "progress" && event["read"] > 60000000));
        import.send(signal);
        std::string error;
        json last;
        while (!(event = import.next()).is_null()) {
            last = event;
            if (event["event"] == "message" && event["level"] == "error") error = event["text"];
        }
        EXPECT_EQ(import.wait(), 128 + signal);
        EXPECT_TRUE(error.starts_with("The import was stopped in line ") &&
                    error.ends_with(" of standard input. What was imported until there stays."))
            << error;
        EXPECT_EQ(last["status"], 128 + signal);
        const std::string stored = run({"show", "--json", "@" + dataset}).output;
        const auto arcs = json::parse(stored)["features"]["arc"].get<int64_t>();
        EXPECT_GT(arcs, 60000);
        EXPECT_LT(arcs, 250000);
    }
}

TEST_F(Stop, WhereOnlyTemporaryFilesAreMadeItEndsAtOnce) {
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    Running import({"import", "-", path("DS")}, ends[0]);
    // It has begun to wait once its folder is there.
    while (std::filesystem::is_empty(temporary())) std::this_thread::yield();
    import.send(SIGTERM);
    EXPECT_EQ(import.wait(), 128 + SIGTERM);
    EXPECT_FALSE(std::filesystem::exists(path("DS")));
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST_F(Stop, AnExportOrAPictureThatIsStoppedLeavesNothing) {
    givenMany(70000);
    ASSERT_EQ(import(), 1);
    const auto left = [&](std::string_view name) {
        const std::filesystem::directory_iterator all(path("."));
        return std::ranges::any_of(all, [&](const auto& entry) {
            return entry.path().filename().string().starts_with(name);
        });
    };
    const struct {
        const char *command, *source, *out;
    } cases[] = {
        {"export", "DS", "out.gpkg"}, {"convert", "in.e00", "out.gpkg"}, {"draw", "DS", "out.svg"}};
    for (const auto& [command, source, out] : cases) {
        Running stopped({command, path(source), path(out)}, STDIN_FILENO);
        while (!left(out) && !stopped.ended()) std::this_thread::yield();
        stopped.send(SIGINT);
        EXPECT_EQ(stopped.wait(), 130) << command;
        EXPECT_FALSE(left(out)) << command;
        EXPECT_TRUE(std::filesystem::is_empty(temporary())) << command;
    }
}

TEST_F(Stop, ASecondSignalEndsAnImportThatCannotGoOn) {
    // The names of a stack's members lie in a temporary file too.
    std::string text = "EXP  0 X\nSTK  2\n         1         1\nA\nEOK\n";
    for (int section = 0; section < 2000; ++section) text += "LOG  2\nEOL\n";
    given(text + "EOS\n");
    const int input = ::open(path("in.e00").c_str(), O_RDONLY | O_CLOEXEC);
    Running import({"import", "--progress", "json", "-", path("DS")}, input);
    ::close(input);
    // It waits for somebody to read what it tells, once nothing more comes.
    for (auto [before, equal] = std::pair(import.unread(), 0); equal < 5 && !import.ended();) {
        std::this_thread::sleep_for(std::chrono::milliseconds(60));
        const auto now = import.unread();
        equal = now == before && now >= 60000 ? equal + 1 : 0;
        before = now;
    }
    import.send(SIGINT);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(import.ended());
    import.send(SIGTERM);
    EXPECT_EQ(import.wait(), 128 + SIGTERM);
}

TEST_F(Stop, AHostAsksForItAndTakesItBack) {
    given("EXP  0 X\nLOG  2\nEOL\nEOS\n");
    const int32_t yes = 1;
    const int32_t no = 0;
    prgstp_(&yes);
    EXPECT_EQ(import(), 0);
    EXPECT_EQ(complaints(),
              std::vector<std::string>{"The import was stopped in line 1 of " + path("in.e00") +
                                       ". What was imported until there stays."});
    prgstp_(&no);
    EXPECT_EQ(import("OTHER"), 1);
}

TEST_F(Stop, AnImportEndsAtTheNextLine) {
    givenMany(2000);
    ASSERT_EQ(run({"pack", "@in.e00", "@packed.e00"}).status, 0);
    // Asked for in the second section, whose first lines have been read into memory by then.
    prgset_(
        [](int32_t event, const char* code, int64_t, int64_t, void*) {
            const int32_t yes = event == QX_SECTION_BEGINS && std::string(code) == "LAB";
            if (yes != 0) prgstp_(&yes);
        },
        nullptr);
    for (const std::string file : {"in.e00", "packed.e00"}) {
        const int32_t no = 0;
        prgstp_(&no);
        EXPECT_EQ(import(file.substr(0, 2), file), 0);
        const std::string line = file == "in.e00" ? "26004" : "";
        EXPECT_EQ(complaints().size(), 1U);
        EXPECT_TRUE(complaints()[0].starts_with("The import was stopped in line " + line));
        EXPECT_EQ(records("arc", file.substr(0, 2)).size(), 2000U);
        EXPECT_EQ(records("lab", file.substr(0, 2)).size(), 0U);
        prgstp_(&no);
    }
    prgset_(nullptr, nullptr);
}

TEST_F(Stop, EventsTellAllThereIsToTell) {
    const Outcome outcome = run({"import", "--progress", "json", sample("wold.e00"), "@DS"});
    std::istringstream lines(outcome.errors);
    std::vector<json> events;
    for (std::string line; std::getline(lines, line);) events.push_back(json::parse(line));
    ASSERT_GE(events.size(), 4U);
    const auto bytes = std::filesystem::file_size(sample("wold.e00"));
    EXPECT_EQ(events[0], (json{{"event", "start"},
                               {"file", sample("wold.e00")},
                               {"dataset", path("DS")},
                               {"bytes", bytes}}));
    int64_t read = 0;
    for (const json& event : events) {
        if (event["event"] != "progress") continue;
        EXPECT_GE(event["read"], read);
        read = event["read"];
        EXPECT_EQ(event["bytes"], bytes);
    }
    EXPECT_GT(read, static_cast<int64_t>(bytes / 2));
    EXPECT_EQ(events.back()["event"], "end");
    EXPECT_EQ(events.back()["kind"], "Coverage");
    EXPECT_TRUE(events.back()["content"].get<std::string>().starts_with(
        "Coverage " + path("DS") + ": 230 arcs, 112 labels, 113 centroids, 113 polygons"));
}

}  // namespace
}  // namespace intake::testing
