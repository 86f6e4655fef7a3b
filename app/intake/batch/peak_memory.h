// How much memory this process has held at most, from one moment on.
#ifndef APP_INTAKE_BATCH_PEAK_MEMORY_H
#define APP_INTAKE_BATCH_PEAK_MEMORY_H

#include <cstdint>

namespace program {

// Begins anew, where the system lets it: otherwise the peak is that since the process began.
void resetPeakMemory();
uint64_t peakMemory();

}  // namespace program

#endif
