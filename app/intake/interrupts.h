// Ctrl-C and its kin, while a command makes something that must not be left half done.
#ifndef APP_INTAKE_INTERRUPTS_H
#define APP_INTAKE_INTERRUPTS_H

#include <stdexcept>

namespace program {

struct Interrupted : std::runtime_error {
    explicit Interrupted(int number) : std::runtime_error("stopped"), signal(number) {}
    int signal;
    // As a shell tells a program that a signal ended.
    int exitStatus() const { return 128 + signal; }
};

// While one of these lives the first SIGINT, SIGTERM or SIGHUP is only noted, and an import that
// runs is asked to stop; a second one ends the program at once, without the temporary files that
// there are. Signals that were ignored before still are. They may be nested.
class Interrupts {
  public:
    Interrupts();
    ~Interrupts();
    Interrupts(const Interrupts&) = delete;
    Interrupts& operator=(const Interrupts&) = delete;
};

// While this lives, within an Interrupts, also the first one ends the program at once: nothing but
// temporary files is being made. Throws an Interrupted if one was noted already.
class EndingAtOnce {
  public:
    EndingAtOnce();
    ~EndingAtOnce();
    EndingAtOnce(const EndingAtOnce&) = delete;
    EndingAtOnce& operator=(const EndingAtOnce&) = delete;
};

// The signal that was noted, or 0.
int interruptedBy();
// What takes long calls this now and then, by which it is also seen to go on (alive.h).
void throwIfInterrupted();

}  // namespace program

#endif
