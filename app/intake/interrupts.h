// Ctrl-C and its kin, while a command makes something that must not be left half done.
#ifndef APP_INTAKE_INTERRUPTS_H
#define APP_INTAKE_INTERRUPTS_H

#include <csignal>
#include <stdexcept>

namespace program {

struct Interrupted : std::runtime_error {
    explicit Interrupted(int number) : std::runtime_error("stopped"), signal(number) {}
    int signal;
    // As a shell tells a program that a signal ended.
    int exitStatus() const { return 128 + signal; }
};

// While this lives the first SIGINT, SIGTERM or SIGHUP is only noted; a second one ends the
// program at once.
class Interrupts {
  public:
    Interrupts();
    ~Interrupts();
    Interrupts(const Interrupts&) = delete;
    Interrupts& operator=(const Interrupts&) = delete;

  private:
    static constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};
    struct sigaction before_[3];
};

// The signal that was noted, or 0.
int interruptedBy();
void throwIfInterrupted();

}  // namespace program

#endif
