// Has outputs written to the disk before they are reported, while others are made.
#ifndef APP_INTAKE_BATCH_SYNCER_H
#define APP_INTAKE_BATCH_SYNCER_H

#include <sys/types.h>

#include <string>
#include <vector>

namespace program {

// A process of its own: the system may take its time over it. It outlives one that is killed, and
// removes the temporary folders that there were when it began.
class Syncer {
  public:
    explicit Syncer(const std::string& folder);
    ~Syncer();
    Syncer(const Syncer&) = delete;
    Syncer& operator=(const Syncer&) = delete;

    // Begins to write outputs of the folder, of which done() tells the end. One at a time.
    void begin(const std::vector<std::string>& names);
    bool busy() const { return busy_; }
    // To be polled for POLLIN while it is busy.
    int descriptor() const { return socket_; }
    // Waits for the end. Throws a std::runtime_error where something could not be written.
    void done();

  private:
    std::string folder_;
    pid_t process_ = -1;
    int socket_ = -1;
    bool busy_ = false;
};

}  // namespace program

#endif
