#include "app/intake/batch/signals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <initializer_list>

namespace program {

Signals::Signals() {
    sigset_t noted;
    sigemptyset(&noted);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        ::sigaction(signal, nullptr, &action);
        if (action.sa_handler != SIG_IGN) sigaddset(&noted, signal);
    }
    ::pthread_sigmask(SIG_BLOCK, &noted, &before_);
    descriptor_ = ::signalfd(-1, &noted, SFD_NONBLOCK | SFD_CLOEXEC);
    pipeBefore_ = std::signal(SIGPIPE, SIG_IGN);
}

Signals::~Signals() {
    while (take() != 0) continue;  // what came meanwhile is over
    ::close(descriptor_);
    std::signal(SIGPIPE, pipeBefore_);
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

int Signals::take() const {
    signalfd_siginfo information{};
    if (::read(descriptor_, &information, sizeof information) != sizeof information) return 0;
    return static_cast<int>(information.ssi_signo);
}

}  // namespace program
