// The workers of a batch: begun, given work, watched and replaced.
#ifndef APP_INTAKE_BATCH_CREW_H
#define APP_INTAKE_BATCH_CREW_H

#include <poll.h>
#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "app/intake/batch/message.h"
#include "app/intake/batch/options.h"
#include "app/intake/batch/run_job.h"

namespace program {

class Crew {
  public:
    using Clock = std::chrono::steady_clock;

    // What becomes of jobs: a reply, or, of one that never came to its turn, the job back.
    struct Ears {
        std::function<void(const Job& job, Reply& reply)> replied;
        std::function<void(Job&& job)> returned;
    };

    // The workers have rooms of their own in these folders. They close what is private to the
    // parent.
    Crew(const BatchOptions& options, int count, const Rooms& folders,
         std::vector<int> privateToParent, Ears ears);
    // Ends the workers, and whatever they are at.
    ~Crew();
    Crew(const Crew&) = delete;
    Crew& operator=(const Crew&) = delete;

    // Whether somebody takes a job, and which is given to whom has least to do.
    bool hasRoom() const;
    void give(Job job);
    bool busy() const;
    // Whether all have work for some time, so that none waits who is not listened to at once.
    bool isSupplied() const;
    // Ends those that are at nothing, and waits for it.
    void dismiss();

    // To be polled for POLLIN, in an order that stays.
    void addTo(std::vector<pollfd>& watched) const;
    // Takes what those told by poll have to say.
    void listen(const pollfd* watched);
    // Ends whoever has shown no progress for too long.
    void watch();

  private:
    struct Worker {
        pid_t process = -1;
        int socket = -1;
        Inbox inbox;
        std::deque<Job> jobs;  // the first one is what it is at
        Clock::time_point begun;
        Clock::time_point progressed;
        uint64_t steps = 0;
        bool timedOut = false;
        Rooms rooms;
    };
    static bool hasRoomFor(const Worker& worker);
    void begin(std::size_t index);
    void end(Worker& worker);
    void replace(std::size_t index);
    void handTo(Worker& worker, Job job);

    const BatchOptions& options_;
    std::vector<int> privateToParent_;
    Ears ears_;
    std::vector<Worker> workers_;
    std::atomic<uint64_t>* steps_;  // of each, in memory that they share
};

}  // namespace program

#endif
