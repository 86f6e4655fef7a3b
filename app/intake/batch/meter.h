// How far a batch is: a line on a terminal, and one every ten seconds elsewhere.
#ifndef APP_INTAKE_BATCH_METER_H
#define APP_INTAKE_BATCH_METER_H

#include <chrono>
#include <cstdint>
#include <string>

#include "app/intake/batch/message.h"
#include "app/intake/console.h"

namespace program {

class Meter {
  public:
    using Clock = std::chrono::steady_clock;

    Meter(Console& console, bool quiet);

    // One more input to be done, with its bytes; all of them are found.
    void found(uint64_t bytes);
    void foundAll() { foundAll_ = true; }
    // One less. What it comes to is counted if it was an input.
    void done(const Job& job, const Reply& reply);
    void leftOut() { ++leftOut_; }

    uint64_t whole() const { return whole_; }
    uint64_t partial() const { return partial_; }
    uint64_t failed() const { return failed_; }

    // Shows the line where it is time for it, and in the end what came of all.
    void show();
    void end(const std::string& report);
    // A line of another kind.
    void say(const std::string& text);

  private:
    std::string text() const;
    void clear();

    Console& console_;
    bool quiet_;
    bool foundAll_ = false;
    Clock::time_point begun_ = Clock::now();
    Clock::time_point shown_ = begun_;
    bool onScreen_ = false;
    uint64_t found_ = 0;
    uint64_t foundBytes_ = 0;
    uint64_t done_ = 0;
    uint64_t doneBytes_ = 0;  // as they were found
    uint64_t readBytes_ = 0;
    uint64_t whole_ = 0;
    uint64_t partial_ = 0;
    uint64_t failed_ = 0;
    uint64_t leftOut_ = 0;
};

}  // namespace program

#endif
