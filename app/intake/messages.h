// The messages of the library on the console.
#ifndef APP_INTAKE_MESSAGES_H
#define APP_INTAKE_MESSAGES_H

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "app/intake/console.h"

namespace program {

// The name of a level in JSON: inform, warn, nonftl, error or fatal.
const char* levelName(int32_t level);

// Prints a message to the errors, one line per line of text, each led by its level, and behind it
// what it means where the message leaves that open.
void printMessage(Console& console, int32_t level, std::string_view text, bool explain = true);

// Every message of the companions goes to the console while this lives. Their services are at their
// start when it begins, and closed when it ends.
class Listening {
  public:
    // shownAs, if there is one, gives the words of a message for the user.
    explicit Listening(Console& console, std::function<std::string(std::string_view)> shownAs = {});
    ~Listening();
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;
    // Closes the services, which may have a last thing to tell. Whether none of what was told so
    // far is a failure.
    bool endWell();
    // Whether warnings and what only informs are kept back from here on.
    void tellErrorsOnly(bool only) { errorsOnly_ = only; }

  private:
    Console& console_;
    std::function<std::string(std::string_view)> shownAs_;
    bool errorsOnly_ = false;
    bool failed_ = false;
};

}  // namespace program

#endif
