// What a batch and its workers say to each other, over a socket.
#ifndef APP_INTAKE_BATCH_MESSAGE_H
#define APP_INTAKE_BATCH_MESSAGE_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "app/intake/batch/volumes.h"

namespace program {

struct Job {
    std::string path;
    std::string place;
    Stamp stamp;
    bool mayFollow = false;
    bool isMember = false;  // of an archive that holds several: the stamp is the archive's
    // Where there is a failure already, the file is only told, with what it took.
    std::string failure;
    std::string trouble;
    double seconds = 0;
    uint64_t peakBytes = 0;
};

enum class Outcome : uint8_t {
    kWhole,
    kPartial,
    kFailed,
    kVolume,  // the input is none: it went with the file that it is a further volume of
    kSeveral  // ... it is an archive of several, whose paths are told
};

struct Reply {
    Outcome outcome = Outcome::kFailed;
    uint64_t bytes = 0;              // of the file
    std::string line;                // of the report
    std::string word;                // why it failed
    std::vector<std::string> names;  // kSeveral: the paths; otherwise outputs below their folder
};

std::string packed(const Job& job);
std::string packed(const Reply& reply);
void unpack(std::string_view bytes, Job& job);
void unpack(std::string_view bytes, Reply& reply);

// Messages out of a stream of bytes, each behind its length.
class Inbox {
  public:
    // Takes what has come, up to some bytes; false at the end of the stream.
    bool fill(int socket);
    // The next whole message, valid until the next call; false if there is none yet.
    bool next(std::string_view& message);

  private:
    std::string bytes_;
    std::size_t at_ = 0;
};

// Sends a message behind its length, all of it. False if nobody listens.
bool send(int socket, std::string_view message);

}  // namespace program

#endif
