// How a command that reads a dataset runs.
#ifndef APP_INTAKE_COMMANDS_READING_H
#define APP_INTAKE_COMMANDS_READING_H

#include <stdexcept>

#include "app/intake/console.h"
#include "app/intake/messages.h"
#include "datasets/workspace.h"

namespace program {

// What work wrote has to reach its reader, and a stored file that is damaged is told behind what
// could be read of it. Gives the exit status.
template <class Work>
int reading(Console& console, Work work) {
    Listening listening(console);
    try {
        work();
    } catch (const datasets::NoDataset&) {
        // A file that cannot be read says why none was found.
        if (listening.endWell()) throw;
        return kEnded;
    }
    console.output.flush();
    if (!console.output) throw std::runtime_error("could not write the output");
    return listening.endWell() ? kDone : kEnded;
}

}  // namespace program

#endif
