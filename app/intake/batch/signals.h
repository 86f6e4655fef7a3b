// Ctrl-C and its kin as something to be polled.
#ifndef APP_INTAKE_BATCH_SIGNALS_H
#define APP_INTAKE_BATCH_SIGNALS_H

#include <csignal>

namespace program {

// While one of these lives SIGINT, SIGTERM and SIGHUP are only noted, but for those that were
// ignored before, and a reader that has gone is a failed write.
class Signals {
  public:
    Signals();
    ~Signals();
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;

    // Can be polled for POLLIN.
    int descriptor() const { return descriptor_; }
    // The next signal that came, or 0.
    int take() const;

  private:
    int descriptor_;
    sigset_t before_{};
    void (*pipeBefore_)(int);
};

}  // namespace program

#endif
