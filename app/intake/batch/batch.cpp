#include "app/intake/batch/batch.h"

#include <poll.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <vector>

#include "app/intake/batch/crew.h"
#include "app/intake/batch/gathered.h"
#include "app/intake/batch/inputs.h"
#include "app/intake/batch/journal.h"
#include "app/intake/batch/memory_folder.h"
#include "app/intake/batch/meter.h"
#include "app/intake/batch/places.h"
#include "app/intake/batch/signals.h"
#include "app/intake/batch/stable_hash.h"
#include "app/intake/batch/syncer.h"
#include "app/intake/interrupts.h"
#include "app/intake/temporary_folder.h"

namespace program {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// So many inputs are known ahead of the work; of these the largest goes first.
constexpr std::size_t kMostPending = 32768;
// Nothing is handed out before so much time was given to finding large ones.
constexpr milliseconds kLookAround{300};
// Lines are kept back until so long after those before, to have many outputs written to the disk at
// once; longer, up to some seconds, where the disk needs more than a part of the time ...
constexpr milliseconds kBetweenLines{500};
constexpr milliseconds kLongestBetweenLines{5000};
constexpr int kPartsOfTime = 4;
// ... and nothing is handed out while so many wait.
constexpr std::size_t kMostBytesKept = 64 << 20;

int processors() {
    cpu_set_t set;
    return ::sched_getaffinity(0, sizeof set, &set) == 0 ? CPU_COUNT(&set) : 1;
}

bool isSmaller(const Job& one, const Job& other) { return one.stamp.size < other.stamp.size; }

// Named by the report, which one batch alone writes.
std::string hiddenName(const std::string& report) {
    char name[64];
    std::snprintf(
        name, sizeof name, ".intake-%016llx",
        static_cast<unsigned long long>(stableHash(fs::weakly_canonical(report).string())));
    return name;
}

// What is not finished grows here, on the file system of the outputs. What one that was killed
// left, the next one removes.
class UnplacedFolder {
  public:
    UnplacedFolder(const std::string& folder, const std::string& report)
        : path_(folder + '/' + hiddenName(report) + ".part") {
        std::error_code error;
        fs::remove_all(path_, error);
        if (!error) fs::create_directory(path_, error);
        if (error) throw std::runtime_error(folder + ": " + std::strerror(error.value()));
    }
    ~UnplacedFolder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    UnplacedFolder(const UnplacedFolder&) = delete;
    UnplacedFolder& operator=(const UnplacedFolder&) = delete;
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

// Of what is made and removed again for each input, where many share a disk that is most of it.
std::unique_ptr<TemporaryFolder> quickFolder(int jobs) {
    constexpr uint64_t kEach = uint64_t{16} << 20;  // of the workers
    const std::string folder = memoryFolder(kEach * static_cast<uint64_t>(jobs));
    return folder.empty() ? nullptr : std::make_unique<TemporaryFolder>(folder);
}

class Batch {
  public:
    Batch(const BatchOptions& options, Console& console)
        : options_(options),
          meter_(console, options.quiet),
          places_(options.formats.empty()),
          inputs_(options_, places_),
          quick_(quickFolder(options.jobs)),
          syncer_(options.folder),
          journal_(options_, options.report),
          unplaced_(options.folder, options.report),
          gathered_(options_, hiddenName(options.report) + ".gathered"),
          crew_(options_, options.jobs,
                {scratch_.path(), quick_ ? quick_->path() : "", unplaced_.path(), gathered_.name()},
                {signals_.descriptor(), journal_.descriptor(), syncer_.descriptor()},
                {[this](const Job& job, Reply& reply) { take(job, reply); },
                 [this](Job&& job) { push(std::move(job)); }}) {}

    int run();

  private:
    bool finding() const { return !foundAll_ && stoppedBy_ == 0; }
    void find();
    void push(Job job);
    void handOut();
    void take(const Job& job, Reply& reply);
    void takeMembers(const Job& archive, const std::vector<std::string>& names);
    void wait();
    // Tells what becomes of it now, by the first one.
    void noteSignals(const char* words);
    void writeLines(bool all);
    bool working() const {
        return finding() || (!pending_.empty() && stoppedBy_ == 0) || crew_.busy();
    }
    // False where it failed, which is told.
    bool mergeGathered();

    BatchOptions options_;
    Meter meter_;
    Places places_;
    Inputs inputs_;
    const TemporaryFolder scratch_;
    const std::unique_ptr<TemporaryFolder> quick_;
    Syncer syncer_;  // before files are open that it is not to hold
    const Signals signals_;
    Journal journal_;
    UnplacedFolder unplaced_;
    Gathered gathered_;
    Crew crew_;

    const Clock::time_point begun_ = Clock::now();
    std::vector<Job> pending_;  // a heap
    bool foundAll_ = false;
    bool listWaits_ = false;
    int stoppedBy_ = 0;
    bool atOnce_ = false;

    // Of inputs that are done.
    std::string lines_;
    std::vector<std::string> outputs_;
    std::string linesBeingSynced_;
    Clock::time_point lastLines_;
    Clock::duration betweenLines_ = kBetweenLines;
};

void Batch::push(Job job) {
    pending_.push_back(std::move(job));
    std::push_heap(pending_.begin(), pending_.end(), isSmaller);
}

// A slice of it, so that workers do not wait.
void Batch::find() {
    constexpr int kSlice = 256;
    listWaits_ = false;
    for (int each = 0; each < kSlice && finding() && pending_.size() < kMostPending; ++each) {
        Input input;
        switch (inputs_.next(input)) {
            case Inputs::Step::kNone:
                continue;
            case Inputs::Step::kWait:
                listWaits_ = true;
                return;
            case Inputs::Step::kEnd:
                foundAll_ = true;
                meter_.foundAll();
                return;
            case Inputs::Step::kInput:
                break;
        }
        if (!journal_.isWanted(input.path, input.stamp)) {
            meter_.leftOut();
            continue;
        }
        Job job;
        job.path = std::move(input.path);
        job.place = std::move(input.place);
        job.stamp = input.stamp;
        job.mayFollow = input.mayFollow;
        if (!input.trouble.empty()) {
            job.failure = "unreadable";
            job.trouble = job.path + ": " + input.trouble;
        }
        meter_.found(job.stamp.size);
        push(std::move(job));
    }
}

void Batch::handOut() {
    if (stoppedBy_ != 0 || lines_.size() > kMostBytesKept) return;
    const bool early = Clock::now() - begun_ < kLookAround;
    if (early && finding() && !listWaits_ && pending_.size() < kMostPending) return;
    while (!pending_.empty() && crew_.hasRoom()) {
        std::pop_heap(pending_.begin(), pending_.end(), isSmaller);
        Job job = std::move(pending_.back());
        pending_.pop_back();
        crew_.give(std::move(job));
    }
}

// The files of an archive that holds several lie in a folder of its name, where they cannot meet
// what lies beside it.
void Batch::takeMembers(const Job& archive, const std::vector<std::string>& names) {
    const fs::path path(archive.path);
    std::string folder = archive.place;
    if (!options_.formats.empty()) {
        const std::string stem = Places(false).take(path.filename().string());
        const std::string number = fs::path(archive.place).filename().string().substr(stem.size());
        folder = (fs::path(archive.place).parent_path() / path.filename()).string() + number;
    }
    for (const std::string& name : names) {
        Job job;
        job.path = name;
        job.place = places_.take(
            folder + '/' + placeBelow(std::string_view(name).substr(archive.path.size() + 2)));
        job.stamp = archive.stamp;
        job.isMember = true;
        if (!journal_.isWanted(job.path, job.stamp)) {
            meter_.leftOut();
            continue;
        }
        meter_.found(job.stamp.size);
        push(std::move(job));
    }
}

void Batch::take(const Job& job, Reply& reply) {
    if (reply.outcome == Outcome::kSeveral) takeMembers(job, reply.names);
    meter_.done(job, reply);
    if (reply.line.empty()) return;
    lines_ += reply.line;
    std::move(reply.names.begin(), reply.names.end(), std::back_inserter(outputs_));
}

// A line is written when its outputs are on the disk. Until then the syncer is busy.
void Batch::writeLines(bool all) {
    if (syncer_.busy()) {
        pollfd ready{syncer_.descriptor(), POLLIN, 0};
        if (::poll(&ready, 1, 0) == 0) return;
        syncer_.done();
        journal_.append(linesBeingSynced_);
        linesBeingSynced_.clear();
        betweenLines_ = std::clamp<Clock::duration>(kPartsOfTime * (Clock::now() - lastLines_),
                                                    kBetweenLines, kLongestBetweenLines);
    }
    const bool due = all || Clock::now() - lastLines_ >= betweenLines_;
    if (lines_.empty() || !due) return;
    lastLines_ = Clock::now();
    linesBeingSynced_.swap(lines_);
    syncer_.begin(outputs_);
    outputs_.clear();
}

void Batch::wait() {
    std::vector<pollfd> watched = {
        {signals_.descriptor(), POLLIN, 0},
        {syncer_.busy() ? syncer_.descriptor() : -1, POLLIN, 0},
        {listWaits_ && finding() ? inputs_.descriptor() : -1, POLLIN, 0},
    };
    const bool more = finding() && !listWaits_ && pending_.size() < kMostPending;
    // Where all have work, they are heard some replies later, at once.
    constexpr int kNap = 2;
    if (!more && crew_.isSupplied()) ::poll(watched.data(), watched.size(), kNap);
    const std::size_t crewAt = watched.size();
    crew_.addTo(watched);
    constexpr int kTick = 100;
    ::poll(watched.data(), watched.size(), more ? 0 : kTick);
    crew_.listen(watched.data() + crewAt);
    crew_.watch();
    noteSignals("stopping when the files at hand are done; once more ends it at once");
}

void Batch::noteSignals(const char* words) {
    while (const int signal = signals_.take()) {
        if (stoppedBy_ != 0) {
            atOnce_ = true;
            continue;
        }
        stoppedBy_ = signal;
        meter_.say(words);
    }
}

// In a process of its own, which can be stopped whenever a signal comes: what the workers gathered
// stays as it is until all of it is in the new file.
bool Batch::mergeGathered() {
    crew_.dismiss();
    const pid_t parent = ::getpid();
    const pid_t process = ::fork();
    if (process < 0) throw std::runtime_error("could not begin another process");
    if (process == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != parent) ::_exit(kEnded);
        try {
            gathered_.merge(unplaced_.path());
        } catch (const std::exception& error) {
            meter_.say(error.what());
            ::_exit(kEnded);
        }
        ::_exit(kDone);
    }
    constexpr int kTick = 20;
    int status = 0;
    while (::waitpid(process, &status, WNOHANG) == 0) {
        pollfd signals{signals_.descriptor(), POLLIN, 0};
        ::poll(&signals, 1, kTick);
        noteSignals("stopped; what was gathered is put together by --resume");
        if (stoppedBy_ == 0) continue;
        ::kill(process, SIGKILL);
        ::waitpid(process, &status, 0);
        return true;
    }
    if (WIFSIGNALED(status)) meter_.say("what was gathered could not be put together");
    return status == 0;
}

int Batch::run() {
    while (working() || syncer_.busy() || !lines_.empty()) {
        find();
        handOut();
        writeLines(!working());
        if (!working() && !syncer_.busy()) break;
        wait();
        if (atOnce_) return Interrupted(stoppedBy_).exitStatus();
        meter_.show();
    }
    journal_.sync();
    if (stoppedBy_ == 0 && options_.gather && !mergeGathered()) return kEnded;
    meter_.end(options_.report);
    if (inputs_.otherNames() != 0) {
        meter_.say(std::to_string(inputs_.otherNames()) +
                   " files of other names were not looked at; --include says which are");
    }
    if (inputs_.linksToFolders() != 0) {
        meter_.say(std::to_string(inputs_.linksToFolders()) +
                   " links to folders were not followed");
    }
    if (stoppedBy_ != 0) return Interrupted(stoppedBy_).exitStatus();
    return meter_.failed() != 0 ? kEnded : meter_.partial() != 0 ? kComplained : kDone;
}

}  // namespace

std::string defaultReport(const BatchOptions& options) {
    // Shards, which know nothing of each other, do not share one.
    return options.folder + "/report" + options.shardName() + ".jsonl";
}

int runBatch(const BatchOptions& given, Console& console) {
    BatchOptions options = given;
    while (options.folder.size() > 1 && options.folder.ends_with('/')) options.folder.pop_back();
    if (options.jobs == 0) options.jobs = processors();
    if (options.report.empty()) options.report = defaultReport(options);
    if (options.gather && std::find(options.formats.begin(), options.formats.end(),
                                    kGatheredFormat) == options.formats.end()) {
        options.formats.emplace_back(kGatheredFormat);
    }
    std::error_code error;
    fs::create_directories(options.folder, error);
    if (error) {
        complain(console, options.folder + ": " + std::strerror(error.value()));
        return kEnded;
    }
    try {
        return Batch(options, console).run();
    } catch (const ReportStands& stands) {
        complain(console, stands.what());
        return kWrongUsage;
    }
}

}  // namespace program
