/* The importer's one exported function. */
#ifndef INTAKEDL_H
#define INTAKEDL_H

#include <stdint.h>

#if defined(__cplusplus)
extern "C" {
#endif

/* Reads an interchange file and rebuilds the dataset that it holds.
 *
 * interchangePath  path of the file, or of its first volume where it was split; terminated text
 * datasetName      what to make: a path in a workspace, whose last part is the dataset's name;
 *                  terminated text. The kind of dataset is decided by the file's first section.
 * quiet            0: a companion library that does not load is told in a message box (a line on
 *                  standard error where there is none); any other value: on standard output
 *
 * Returns 1 when the import ran to its end, also when non-fatal errors were reported on the way;
 * 0 when it was ended by an error, whose message has then been given. A write that fails ends
 * nothing, so that what can be kept is; once all is done it is told as an error, and the result is
 * 0. No name, an empty one, and a call while an import is running in the process are refused with a
 * message and 0.
 *
 * Messages go to standard error unless the host asked for them (mesink_ in host/qxbase/messages.h).
 * What was imported before a failure stays on disk and can be read. Both texts remain the caller's.
 * One import at a time in a process; imports may follow one another. Signals, locale and current
 * directory of the process stay what they are, and no file is left open. */
#if defined(__GNUC__) && defined(__ELF__)
__attribute__((visibility("default")))
#endif
int32_t
ImportFile(const char* interchangePath, const char* datasetName, int32_t quiet);

#if defined(__cplusplus)
}
#endif

#endif
