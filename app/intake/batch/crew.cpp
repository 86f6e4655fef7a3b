#include "app/intake/batch/crew.h"

#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <new>
#include <stdexcept>

#include "app/intake/batch/report_line.h"
#include "app/intake/batch/worker.h"

namespace program {

namespace {

// One at hand, and one for when it is done; more while all of them together are little.
constexpr std::size_t kJobsAhead = 2;
constexpr std::size_t kSmallJobsAhead = 16;
constexpr uint64_t kLittleBytes = 256 << 10;

[[noreturn]] void fail(const std::string& what) {
    const std::string reason = std::strerror(errno);
    throw std::runtime_error(what + ": " + reason);
}

struct Ending {
    std::string failure;
    std::string trouble;
};

Ending endingOf(int status, bool timedOut, const BatchOptions& options) {
    const auto number = [](double value) { return std::to_string(static_cast<int64_t>(value)); };
    if (timedOut) return {"timeout", "no progress for " + number(options.timeout) + " s"};
    if (WIFEXITED(status) && WEXITSTATUS(status) == kOutOfMemory) {
        return {"memory",
                "more than " + number(static_cast<double>(options.memory >> 20)) + " MiB needed"};
    }
    if (WIFSIGNALED(status)) {
        return {"crash", "ended by signal " + std::to_string(WTERMSIG(status)) + " (" +
                             ::strsignal(WTERMSIG(status)) + ")"};
    }
    return {"crash", "ended with status " + std::to_string(WEXITSTATUS(status))};
}

}  // namespace

Crew::Crew(const BatchOptions& options, int count, const Rooms& folders,
           std::vector<int> privateToParent, Ears ears)
    : options_(options), privateToParent_(std::move(privateToParent)), ears_(std::move(ears)) {
    workers_.resize(static_cast<std::size_t>(count));
    void* const shared = ::mmap(nullptr, workers_.size() * sizeof *steps_, PROT_READ | PROT_WRITE,
                                MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED) fail("could not share memory");
    steps_ = new (shared) std::atomic<uint64_t>[workers_.size()];
    for (std::size_t index = 0; index < workers_.size(); ++index) {
        const std::string name = '/' + std::to_string(index);
        Rooms& rooms = workers_[index].rooms;
        rooms.scratch = folders.scratch + name;
        rooms.unplaced = folders.unplaced + name;
        if (!folders.quick.empty()) rooms.quick = folders.quick + name;
        if (!folders.gathered.empty()) rooms.gathered = folders.gathered + name + ".gpkg";
        for (const std::string& room : {rooms.scratch, rooms.quick, rooms.unplaced}) {
            if (!room.empty()) std::filesystem::create_directory(room);
        }
        begin(index);
    }
}

Crew::~Crew() {
    for (Worker& worker : workers_) {
        if (!worker.jobs.empty()) ::kill(worker.process, SIGKILL);
        end(worker);
    }
    ::munmap(steps_, workers_.size() * sizeof *steps_);
}

void Crew::begin(std::size_t index) {
    Worker& worker = workers_[index];
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) fail("no socket");
    const pid_t parent = ::getpid();
    const pid_t process = ::fork();
    if (process < 0) {
        ::close(ends[0]);
        ::close(ends[1]);
        fail("could not begin another process");
    }
    if (process == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != parent) ::_exit(0);
        ::close(ends[0]);
        for (const int each : privateToParent_) ::close(each);
        for (const Worker& other : workers_) {
            if (other.socket >= 0) ::close(other.socket);
        }
        work(ends[1], options_, worker.rooms, steps_[index]);
    }
    ::close(ends[1]);
    worker.process = process;
    worker.socket = ends[0];
    worker.inbox = {};
    worker.timedOut = false;
}

void Crew::dismiss() {
    for (Worker& worker : workers_) end(worker);
}

void Crew::end(Worker& worker) {
    if (worker.socket < 0) return;
    ::close(worker.socket);
    worker.socket = -1;
    ::waitpid(worker.process, nullptr, 0);
}

bool Crew::hasRoom() const { return std::any_of(workers_.begin(), workers_.end(), hasRoomFor); }

bool Crew::hasRoomFor(const Worker& worker) {
    if (worker.jobs.size() < kJobsAhead) return true;
    uint64_t bytes = 0;
    for (const Job& job : worker.jobs) bytes += job.stamp.size;
    return worker.jobs.size() < kSmallJobsAhead && bytes <= kLittleBytes;
}

bool Crew::isSupplied() const {
    return std::all_of(workers_.begin(), workers_.end(),
                       [](const Worker& each) { return each.jobs.size() > kSmallJobsAhead / 2; });
}

bool Crew::busy() const {
    return std::any_of(workers_.begin(), workers_.end(),
                       [](const Worker& each) { return !each.jobs.empty(); });
}

void Crew::give(Job job) {
    const auto least = std::min_element(
        workers_.begin(), workers_.end(), [](const Worker& one, const Worker& other) {
            const bool hasRoom = hasRoomFor(one);
            return hasRoom != hasRoomFor(other) ? hasRoom : one.jobs.size() < other.jobs.size();
        });
    handTo(*least, std::move(job));
}

void Crew::handTo(Worker& worker, Job job) {
    if (worker.jobs.empty()) worker.begun = worker.progressed = Clock::now();
    // One that is gone is noticed by its silence.
    send(worker.socket, packed(job));
    worker.jobs.push_back(std::move(job));
}

void Crew::addTo(std::vector<pollfd>& watched) const {
    for (const Worker& worker : workers_) watched.push_back({worker.socket, POLLIN, 0});
}

void Crew::listen(const pollfd* watched) {
    for (std::size_t index = 0; index < workers_.size(); ++index) {
        if (watched[index].revents == 0) continue;
        Worker& worker = workers_[index];
        if (!worker.inbox.fill(worker.socket)) {
            replace(index);
            continue;
        }
        for (std::string_view message; worker.inbox.next(message);) {
            Reply reply;
            unpack(message, reply);
            const Job job = std::move(worker.jobs.front());
            worker.jobs.pop_front();
            worker.begun = worker.progressed = Clock::now();
            ears_.replied(job, reply);
        }
    }
}

void Crew::replace(std::size_t index) {
    Worker& worker = workers_[index];
    int status = 0;
    rusage used{};
    ::wait4(worker.process, &status, 0, &used);
    ::close(worker.socket);
    worker.socket = -1;
    const std::chrono::duration<double> time = Clock::now() - worker.begun;
    const bool timedOut = worker.timedOut;
    std::deque<Job> jobs = std::move(worker.jobs);
    worker.jobs.clear();
    emptyFolders(worker.rooms);
    begin(index);
    if (jobs.empty()) return;
    Job guilty = std::move(jobs.front());
    jobs.pop_front();
    if (guilty.failure.empty()) {
        // The next one tells it, with what can be told of the file.
        const Ending ending = endingOf(status, timedOut, options_);
        guilty.failure = ending.failure;
        guilty.trouble = ending.trouble;
        guilty.seconds = time.count();
        guilty.peakBytes = static_cast<uint64_t>(used.ru_maxrss) * 1024;
        handTo(worker, std::move(guilty));
    } else {
        Told told;
        told.failure = guilty.failure;
        told.seconds = guilty.seconds;
        told.peakBytes = guilty.peakBytes;
        told.tell("error", guilty.trouble);
        Reply reply;
        reply.word = guilty.failure;
        reply.line = told.line(guilty, reply.outcome, options_);
        ears_.replied(guilty, reply);
    }
    for (Job& job : jobs) ears_.returned(std::move(job));
}

void Crew::watch() {
    const auto now = Clock::now();
    for (std::size_t index = 0; index < workers_.size(); ++index) {
        Worker& worker = workers_[index];
        const uint64_t steps = steps_[index].load(std::memory_order_relaxed);
        if (steps != worker.steps || worker.jobs.empty()) {
            worker.steps = steps;
            worker.progressed = now;
        }
        const std::chrono::duration<double> time = now - worker.progressed;
        if (time.count() < options_.timeout || worker.timedOut) continue;
        worker.timedOut = true;
        ::kill(worker.process, SIGKILL);
    }
}

}  // namespace program
