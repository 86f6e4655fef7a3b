#define _GNU_SOURCE
#include "tests/machine/faults.h"

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#define SHOWN __attribute__((visibility("default")))

enum { OPEN, MAKE, READ, WRITE, MKDIR, RENAME, UNLINK, CLOSE, TRUNCATE, LOCK, STAT, MEMORY, CALLS };
static const char* const kCalls[CALLS] = {"open",     "make",   "read",   "write",
                                          "mkdir",    "rename", "unlink", "close",
                                          "truncate", "lock",   "stat",   "memory"};
static const unsigned kFile = (1U << MEMORY) - 1;
static const unsigned kChange =
    1U << MAKE | 1U << WRITE | 1U << MKDIR | 1U << RENAME | 1U << UNLINK | 1U << TRUNCATE;

enum { SHORT = -1, KILL = -2 };
static const struct {
    const char* name;
    int error;
} kFaults[] = {{"EIO", EIO},       {"ENOSPC", ENOSPC}, {"EMFILE", EMFILE}, {"EINTR", EINTR},
               {"ENOMEM", ENOMEM}, {"short", SHORT},   {"kill", KILL}};

static unsigned armed; /* a bit for each call that is counted */
static long left;      /* such calls until one fails */
static int onward;
static int fault;
static char happened[1100];
static char below[1024];
/* Descriptors of files below the folder. */
#define DESCRIPTORS 1024
static char watched[DESCRIPTORS];

SHOWN void faultsArm(const char* text, const char* folder) {
    char call[16] = "";
    char what[16] = "";
    char plus = ' ';
    armed = 0;
    *happened = 0;
    if (!text || !folder) return;
    if (sscanf(text, "%15s %ld%c %15s", call, &left, &plus, what) != 4) abort();
    onward = plus == '+';
    strncpy(below, folder, sizeof below - 1);
    unsigned calls = 0;
    if (strcmp(call, "file") == 0) calls = kFile;
    if (strcmp(call, "change") == 0) calls = kChange;
    for (int each = 0; each < CALLS; ++each) {
        if (strcmp(call, kCalls[each]) == 0) calls = 1U << each;
    }
    fault = 0;
    for (size_t each = 0; each < sizeof kFaults / sizeof *kFaults; ++each) {
        if (strcmp(what, kFaults[each].name) == 0) fault = kFaults[each].error;
    }
    if (calls == 0 || fault == 0) abort();
    armed = calls;
}

SHOWN const char* faultsHappened(void) { return *happened ? happened : NULL; }

/* Whether this call is the one that fails. A file is told by its path or else its descriptor. */
static int strikes(int call, const char* path, int file) {
    if (!(armed & 1U << call)) return 0;
    if (onward ? --left > 0 : --left != 0) return 0;
    if (!*happened) {
        char link[32];
        char target[1024] = "";
        if (file >= 0) snprintf(link, sizeof link, "/proc/self/fd/%d", file);
        if (file >= 0 && readlink(link, target, sizeof target - 1) < 0) *target = 0;
        snprintf(happened, sizeof happened, "%s %s", kCalls[call], path ? path : target);
    }
    if (fault == KILL) kill(getpid(), SIGKILL);
    return 1;
}

/* The same for a call that has no half: errno is set. */
static int failsAt(int call, const char* path) {
    if (!armed || strncmp(path, below, strlen(below)) != 0) return 0;
    if (!strikes(call, path, -1) || fault == SHORT) return 0;
    errno = fault;
    return 1;
}

static int isWatched(int file) { return armed && file >= 0 && file < DESCRIPTORS && watched[file]; }

static int watch(int file, const char* path) {
    if (file >= 0 && file < DESCRIPTORS) {
        watched[file] = strncmp(path, below, strlen(below)) == 0 && *below;
    }
    return file;
}

#define NEXT(result, name, ...)         \
    static result (*next)(__VA_ARGS__); \
    if (!next) *(void**)&next = dlsym(RTLD_NEXT, name);

static mode_t modeOf(int flags, va_list rest) {
    return flags & (O_CREAT | O_TMPFILE) ? va_arg(rest, mode_t) : 0;
}

#define OPENING(function)                                                          \
    SHOWN int function(const char* path, int flags, ...) {                         \
        NEXT(int, #function, const char*, int, ...)                                \
        va_list rest;                                                              \
        va_start(rest, flags);                                                     \
        const mode_t mode = modeOf(flags, rest);                                   \
        va_end(rest);                                                              \
        if (failsAt(flags & (O_CREAT | O_ACCMODE) ? MAKE : OPEN, path)) return -1; \
        return watch(next(path, flags, mode), path);                               \
    }
OPENING(open)
OPENING(open64)

#define OPENING_STREAM(function)                               \
    SHOWN FILE* function(const char* path, const char* mode) { \
        NEXT(FILE*, #function, const char*, const char*)       \
        if (failsAt(OPEN, path)) return NULL;                  \
        FILE* stream = next(path, mode);                       \
        if (stream) watch(fileno(stream), path);               \
        return stream;                                         \
    }
OPENING_STREAM(fopen)
OPENING_STREAM(fopen64)

#define MOVING_BYTES(call, function, bytes)                       \
    SHOWN ssize_t function(int file, bytes place, size_t count) { \
        NEXT(ssize_t, #function, int, bytes, size_t)              \
        if (isWatched(file) && strikes(call, NULL, file)) {       \
            if (fault != SHORT) return errno = fault, -1;         \
            count = (count + 1) / 2;                              \
        }                                                         \
        return next(file, place, count);                          \
    }
MOVING_BYTES(READ, read, void*)
MOVING_BYTES(WRITE, write, const void*)

#define MOVING_BYTES_AT(call, function, bytes)                                    \
    SHOWN ssize_t function(int file, bytes place, size_t count, off_t position) { \
        NEXT(ssize_t, #function, int, bytes, size_t, off_t)                       \
        if (isWatched(file) && strikes(call, NULL, file)) {                       \
            if (fault != SHORT) return errno = fault, -1;                         \
            count = (count + 1) / 2;                                              \
        }                                                                         \
        return next(file, place, count, position);                                \
    }
MOVING_BYTES_AT(READ, pread, void*)
MOVING_BYTES_AT(READ, pread64, void*)
MOVING_BYTES_AT(WRITE, pwrite, const void*)
MOVING_BYTES_AT(WRITE, pwrite64, const void*)

#define OF_PATH(call, function, type, ...)              \
    SHOWN int function(const char* path, type second) { \
        NEXT(int, #function, const char*, type)         \
        if (failsAt(call, path)) return -1;             \
        return next(path, second);                      \
    }
OF_PATH(MKDIR, mkdir, mode_t)
OF_PATH(RENAME, rename, const char*)
OF_PATH(STAT, stat, struct stat*)
OF_PATH(STAT, lstat, struct stat*)

SHOWN int statx(int folder, const char* path, int flags, unsigned mask, struct statx* found) {
    NEXT(int, "statx", int, const char*, int, unsigned, struct statx*)
    if (folder == AT_FDCWD && failsAt(STAT, path)) return -1;
    if (isWatched(folder) && strikes(STAT, NULL, folder) && fault != SHORT)
        return errno = fault, -1;
    return next(folder, path, flags, mask, found);
}

SHOWN int unlink(const char* path) {
    NEXT(int, "unlink", const char*)
    return failsAt(UNLINK, path) ? -1 : next(path);
}

SHOWN int rmdir(const char* path) {
    NEXT(int, "rmdir", const char*)
    return failsAt(UNLINK, path) ? -1 : next(path);
}

SHOWN int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                    unsigned flags) {
    NEXT(int, "renameat2", int, const char*, int, const char*, unsigned)
    return failsAt(RENAME, from) ? -1 : next(fromFolder, from, toFolder, to, flags);
}

/* In a folder that is told by its descriptor, which whoever opened it keeps to itself. */
SHOWN int unlinkat(int folder, const char* path, int flags) {
    NEXT(int, "unlinkat", int, const char*, int)
    char link[32];
    char target[1024] = "";
    snprintf(link, sizeof link, "/proc/self/fd/%d", folder);
    if (!armed || *path == '/' || readlink(link, target, sizeof target - 1) < 0) {
        return failsAt(UNLINK, path) ? -1 : next(folder, path, flags);
    }
    return failsAt(UNLINK, target) ? -1 : next(folder, path, flags);
}

#define OF_FILE(call, function, type)                                       \
    SHOWN int function(int file, type second) {                             \
        NEXT(int, #function, int, type)                                     \
        if (isWatched(file) && strikes(call, NULL, file) && fault != SHORT) \
            return errno = fault, -1;                                       \
        return next(file, second);                                          \
    }
OF_FILE(TRUNCATE, ftruncate, off_t)
OF_FILE(TRUNCATE, ftruncate64, off_t)
OF_FILE(LOCK, flock, int)
OF_FILE(STAT, fstat, struct stat*)

/* The descriptor is gone also where closing fails. */
SHOWN int close(int file) {
    NEXT(int, "close", int)
    const int fails = isWatched(file) && strikes(CLOSE, NULL, file) && fault != SHORT;
    if (file >= 0 && file < DESCRIPTORS) watched[file] = 0;
    const int result = next(file);
    return fails ? errno = fault, -1 : result;
}

#if !defined(__SANITIZE_ADDRESS__)
extern void* __libc_malloc(size_t);
extern void* __libc_calloc(size_t, size_t);
extern void* __libc_realloc(void*, size_t);
extern void* __libc_memalign(size_t, size_t);

static int noMemory(void) {
    if (!strikes(MEMORY, NULL, -1)) return 0;
    errno = ENOMEM;
    return 1;
}

SHOWN void* malloc(size_t bytes) { return noMemory() ? NULL : __libc_malloc(bytes); }
SHOWN void* calloc(size_t count, size_t bytes) {
    return noMemory() ? NULL : __libc_calloc(count, bytes);
}
SHOWN void* realloc(void* place, size_t bytes) {
    return noMemory() ? NULL : __libc_realloc(place, bytes);
}
SHOWN void* aligned_alloc(size_t alignment, size_t bytes) {
    return noMemory() ? NULL : __libc_memalign(alignment, bytes);
}
#endif

/* What is armed when a preloaded program begins; before that the loader and the constructors of
 * its libraries are at work. */
static int (*programMain)(int, char**, char**);

static int beginning(int count, char** arguments, char** environment) {
    faultsArm(getenv("INTAKE_FAULT"), getenv("INTAKE_FAULT_BELOW"));
    return programMain(count, arguments, environment);
}

SHOWN int __libc_start_main(int (*main)(int, char**, char**), int count, char** arguments,
                            void (*init)(void), void (*fini)(void), void (*loaderFini)(void),
                            void* stack) {
    NEXT(int, "__libc_start_main", int (*)(int, char**, char**), int, char**, void (*)(void),
         void (*)(void), void (*)(void), void*)
    programMain = main;
    return next(beginning, count, arguments, init, fini, loaderFini, stack);
}
