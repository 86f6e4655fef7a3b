#include "app/intake/interrupts.h"

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <memory>
#include <system_error>
#include <thread>

#include "app/intake/alive.h"
#include "app/intake/temporary_folder.h"
#include "host/qxbase.h"

namespace program {

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};
// Wakes the watcher, which then looks whether it is to end.
constexpr int kWake = SIGUSR1;

std::atomic<int> noted{0};
std::atomic<bool> endAtOnce{false};

void askImportToStop(int32_t asked) { prgstp_(&asked); }

bool isIgnored(int signal) {
    struct sigaction action {};
    ::sigaction(signal, nullptr, &action);
    return action.sa_handler == SIG_IGN;
}

// Signals are taken by a thread that waits for them: what it does then is not bound to the little
// that a handler may do in the middle of anything.
class Watcher {
  public:
    Watcher() {
        sigemptyset(&watched_);
        for (const int signal : kSignals) {
            if (!isIgnored(signal)) sigaddset(&watched_, signal);
        }
        sigaddset(&watched_, kWake);
        ::pthread_sigmask(SIG_BLOCK, &watched_, &before_);
        // A reader of our output that has gone is a failed write, and told as one.
        pipeBefore_ = std::signal(SIGPIPE, SIG_IGN);
        try {
            thread_ = std::thread([this] { watch(); });
        } catch (const std::system_error&) {
            // Signals end the program as they would without us.
            ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
        }
    }
    ~Watcher() {
        ends_ = true;
        if (thread_.joinable()) {
            ::pthread_kill(thread_.native_handle(), kWake);
            thread_.join();
        }
        std::signal(SIGPIPE, pipeBefore_);
        ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

  private:
    void watch() {
        while (!ends_) {
            int signal = 0;
            if (::sigwait(&watched_, &signal) != 0 || signal == kWake) continue;
            if (noted == 0 && !endAtOnce) {
                noted = signal;
                askImportToStop(1);
                continue;
            }
            removeTemporaryFolders();
            scrdel_();
            ::_exit(Interrupted(signal).exitStatus());
        }
    }

    sigset_t watched_{};
    sigset_t before_{};
    void (*pipeBefore_)(int) = SIG_DFL;
    std::atomic<bool> ends_ = false;
    std::thread thread_;
};

// One for all that are nested, and how many these are.
std::unique_ptr<Watcher> watcher;
int depth = 0;

}  // namespace

Interrupts::Interrupts() {
    if (depth++ != 0) return;
    noted = 0;
    askImportToStop(0);
    watcher = std::make_unique<Watcher>();
}

Interrupts::~Interrupts() {
    if (--depth != 0) return;
    watcher.reset();
    askImportToStop(0);
}

EndingAtOnce::EndingAtOnce() {
    endAtOnce = true;
    if (noted == 0) return;
    endAtOnce = false;
    throw Interrupted(noted);
}

EndingAtOnce::~EndingAtOnce() { endAtOnce = false; }

int interruptedBy() { return noted; }

void throwIfInterrupted() {
    stepTaken();
    if (const int number = interruptedBy(); number != 0) throw Interrupted(number);
}

}  // namespace program
