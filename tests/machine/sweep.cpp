#include "tests/machine/sweep.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <sstream>

#include "host/cpp/call.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "intakedl.h"
#include "tests/machine/faults.h"

namespace intake::testing {

namespace fs = std::filesystem;

namespace {

int openDescriptors() {
    int count = 0;
    for (int file = 0; file < 256; ++file) count += ::fcntl(file, F_GETFD) != -1;
    return count;
}

// A message as level, length and text, without any memory of its own.
void send(int32_t level, const char* text, void* user) {
    const int pipe = *static_cast<int*>(user);
    const int32_t head[] = {level, static_cast<int32_t>(std::strlen(text))};
    if (::write(pipe, head, sizeof head) < 0) ::_exit(1);
    if (::write(pipe, text, static_cast<std::size_t>(head[1])) < 0) ::_exit(1);
}

[[noreturn]] void importAndSend(int pipe, const std::string& fault, const std::string& folder,
                                const std::string& file, const std::string& dataset) {
    mesink_(send, &pipe);
    ::setenv("TMPDIR", (folder + "/scratch").c_str(), 1);
    const int before = openDescriptors();
    faultsArm(fault.empty() ? nullptr : fault.c_str(), folder.c_str());
    const int32_t result = ImportFile(file.c_str(), dataset.c_str(), 1);
    if (const char* failed = faultsHappened()) send(0, failed, &pipe);
    faultsArm(nullptr, nullptr);
    const int32_t end[] = {-1, 0, result, openDescriptors() - before};
    ::_exit(::write(pipe, end, sizeof end) == sizeof end ? 0 : 1);
}

std::string received(int pipe) {
    std::string all;
    char part[4096];
    for (ssize_t count; (count = ::read(pipe, part, sizeof part)) > 0;) {
        all.append(part, static_cast<std::size_t>(count));
    }
    return all;
}

Ended understood(std::string_view bytes) {
    Ended ended;
    const auto word = [&] {
        int32_t value = 0;
        if (bytes.size() < sizeof value) return value;
        std::memcpy(&value, bytes.data(), sizeof value);
        bytes.remove_prefix(sizeof value);
        return value;
    };
    while (!bytes.empty()) {
        const int32_t level = word();
        const auto length = static_cast<std::size_t>(word());
        const std::string text(bytes.substr(0, length));
        bytes.remove_prefix(text.size());
        if (level > 0) {
            ended.messages.push_back({level, text});
        } else if (level == 0) {
            ended.failed = text;
        } else {
            ended.result = word();
            ended.leaked = word();
        }
    }
    return ended;
}

Tree filesBelow(const std::string& folder) {
    Tree tree;
    for (const auto& each : fs::recursive_directory_iterator(folder)) {
        if (each.is_regular_file()) {
            tree[fs::relative(each.path(), folder).string()] = fileBytes(each.path().string());
        }
    }
    return tree;
}

}  // namespace

std::string seed(const std::string& name) {
    return INTAKE_SOURCE_DIR "/fuzz/seeds/import/" + name + ".e00";
}

int32_t Ended::worst() const {
    int32_t level = 0;
    for (const Message& message : messages) level = std::max(level, message.level);
    return level;
}

void SweepTest::begin(const std::string& sample) {
    fs::create_directories(path("now/scratch"));
    fs::create_directory(path("now/space"));
    std::istringstream text(fileBytes(sample));
    int volume = 0;
    for (std::string part; std::getline(text, part, '\f'); ++volume) {
        writeFile(path("now/in.e0") + std::to_string(volume), part);
    }
    ASSERT_EQ(ImportFile(seed("metadata").c_str(), path("now/space/OTHER").c_str(), 1), 1);
    other_ = stored();
    fs::rename(path("now"), path("start"));
    sound_ = importAnew("");
    ASSERT_EQ(sound_.signal, 0);
    ASSERT_EQ(sound_.leaked, 0);
    soundFiles_ = stored();
    soundTables_ = tables();
    // " Creating Grid PATH", from a file that gets as far.
    if (!sound_.messages.empty() && sound_.messages[0].text.starts_with(" Creating ")) {
        const std::string& text = sound_.messages[0].text;
        kind_ = text.substr(10, text.find(' ' + path("now")) - 10);
    }
}

Ended SweepTest::importAnew(const std::string& fault) {
    fs::remove_all(path("now"));
    fs::copy(path("start"), path("now"), fs::copy_options::recursive);
    return importNow(fault, "DS", path("now/in.e00"));
}

Ended SweepTest::importNow(const std::string& fault, const std::string& dataset,
                           const std::string& file) {
    int pipe[2];
    if (::pipe(pipe) != 0) throw std::runtime_error("no pipe");
    const std::string target = path("now/space/") + dataset;
    const pid_t child = ::fork();
    if (child == 0) importAndSend(pipe[1], fault, path("now"), file, target);
    ::close(pipe[1]);
    Ended ended = understood(received(pipe[0]));
    ::close(pipe[0]);
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    if (WIFSIGNALED(status)) ended.signal = WTERMSIG(status);
    return ended;
}

Tree SweepTest::stored() const { return filesBelow(path("now/space")); }

std::map<std::string, int32_t> SweepTest::tables() const {
    std::map<std::string, int32_t> found;
    const std::string info = path("now/space/info");
    baseinitC();
    featinitC();
    int32_t list = 0;
    int32_t count = 0;
    qx::call(inflst_, list, std::string_view(info), "", count);
    for (int32_t status = 0; status == 0;) {
        qx::FixedText<256> name;
        qx::call(infnxt_, list, name, status);
        if (status != 0) break;
        int32_t table = 0;
        int32_t records = 0;
        int32_t bytes = 0;
        qx::call(infopn_, name, std::string_view(info), "", 1, table, records, bytes, status);
        EXPECT_EQ(status, 0) << name.view();
        for (int32_t number = 1; number <= records && status == 0; ++number) {
            qx::call(infget_, table, number, status);
            EXPECT_EQ(status, 0) << name.view() << ", record " << number;
        }
        found[std::string(name.view())] = records;
        qx::call(infcls_, table);
    }
    featendC();
    baseendC();
    EXPECT_EQ(found.size(), static_cast<std::size_t>(count));
    return found;
}

void SweepTest::expectSoundWorkspace() const {
    const Tree now = stored();
    for (const auto& [name, bytes] : other_) {
        if (name == "info/catalog") continue;
        const auto found = now.find(name);
        EXPECT_TRUE(found != now.end() && found->second == bytes) << name;
    }
    const auto listed = tables();
    for (const auto& [name, records] : soundTables_) {
        if (!name.starts_with("OTHER")) continue;
        const auto found = listed.find(name);
        EXPECT_TRUE(found != listed.end() && found->second == records) << name;
    }
    for (const char* command : {"show", "dump"}) {
        std::vector<std::string> words = {command, "@now/space/DS"};
        if (!kind_.empty()) words.insert(words.end(), {"--kind", kind_});
        const Outcome outcome = run(words);
        const auto lines = std::count(outcome.errors.begin(), outcome.errors.end(), '\n');
        EXPECT_TRUE(outcome.status == 0 ? lines == 0 : outcome.status == 1 && lines == 1)
            << command << ": " << outcome.status << ", " << outcome.errors;
    }
}

int next(int number) {
    static const char* const sweep = std::getenv("INTAKE_SWEEP");
    static const bool whole = sweep && std::string_view(sweep) == "whole";
    return number + (whole ? 1 : 1 + number / 8);
}

}  // namespace intake::testing
