/* Preloaded into the program, writes down each call that changes what lies below the folder
 * INTAKE_RECORD_BELOW, in its order, to the file INTAKE_RECORD: power_cut.py makes of it what a
 * disk may hold. A call is written down behind it, and only where it was done. Each entry is
 *   a letter, the file's descriptor, a number (flags, position, size), the lengths of two texts
 * as a char, an int32_t, an int64_t and two uint32_t without gaps, and the texts. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#define SHOWN __attribute__((visibility("default")))
#define NEXT(result, name, ...)         \
    static result (*next)(__VA_ARGS__); \
    if (!next) *(void**)&next = dlsym(RTLD_NEXT, name);

#define DESCRIPTORS 1024
static char watched[DESCRIPTORS];
static char below[1024];
static int record = -1;
/* Held over a call and its entry, so that entries stand in the order of calls. */
static pthread_mutex_t order = PTHREAD_MUTEX_INITIALIZER;

__attribute__((constructor)) static void begin(void) {
    const char* file = getenv("INTAKE_RECORD");
    const char* folder = getenv("INTAKE_RECORD_BELOW");
    if (!file || !folder) return;
    strncpy(below, folder, sizeof below - 1);
    record = open(file, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    if (record < 0) abort();
}

/* The folder itself is synced, too. */
static int isBelow(const char* path) {
    const size_t length = strlen(below);
    return record >= 0 && strncmp(path, below, length) == 0 &&
           (path[length] == '/' || path[length] == 0);
}

static int isWatched(int file) { return file >= 0 && file < DESCRIPTORS && watched[file]; }

static void enter(char letter, int file, int64_t number, const void* one, size_t oneBytes,
                  const void* other, size_t otherBytes) {
    char head[21] = {letter};
    const int32_t descriptor = file;
    const uint32_t lengths[2] = {(uint32_t)oneBytes, (uint32_t)otherBytes};
    memcpy(head + 1, &descriptor, 4);
    memcpy(head + 5, &number, 8);
    memcpy(head + 13, lengths, 8);
    const struct iovec parts[3] = {{head, sizeof head},
                                   {(void*)(uintptr_t)one, oneBytes},
                                   {(void*)(uintptr_t)other, otherBytes}};
    const int failure = errno;
    if (writev(record, parts, 3) != (ssize_t)(sizeof head + oneBytes + otherBytes)) abort();
    errno = failure;
}

static void enterPath(char letter, int file, int64_t number, const char* path) {
    enter(letter, file, number, path, strlen(path), "", 0);
}

/* A path in a folder that is told by its descriptor. */
static const char* located(int folder, const char* path, char* whole, size_t room) {
    char link[32];
    if (folder == AT_FDCWD || *path == '/') return path;
    snprintf(link, sizeof link, "/proc/self/fd/%d", folder);
    const ssize_t length = readlink(link, whole, room - 1);
    if (length < 0) return path;
    snprintf(whole + length, room - (size_t)length, "/%s", path);
    return whole;
}

static int opened(int file, const char* path, int flags) {
    if (file < 0 || !isBelow(path)) return file;
    if (file >= DESCRIPTORS) abort();
    watched[file] = 1;
    enterPath('o', file, flags & (O_CREAT | O_TRUNC), path);
    return file;
}

#define MODE_BEHIND(flags)                                          \
    va_list rest;                                                   \
    va_start(rest, flags);                                          \
    const mode_t mode = flags & O_CREAT ? va_arg(rest, mode_t) : 0; \
    va_end(rest);

#define OPENING(function)                                              \
    SHOWN int function(const char* path, int flags, ...) {             \
        NEXT(int, #function, const char*, int, ...)                    \
        MODE_BEHIND(flags)                                             \
        pthread_mutex_lock(&order);                                    \
        const int file = opened(next(path, flags, mode), path, flags); \
        pthread_mutex_unlock(&order);                                  \
        return file;                                                   \
    }
OPENING(open)
OPENING(open64)

SHOWN int close(int file) {
    NEXT(int, "close", int)
    pthread_mutex_lock(&order);
    if (isWatched(file)) {
        watched[file] = 0;
        enter('c', file, 0, "", 0, "", 0);
    }
    const int result = next(file);
    pthread_mutex_unlock(&order);
    return result;
}

#define WRITING(function)                                                               \
    SHOWN ssize_t function(int file, const void* bytes, size_t count, off_t position) { \
        NEXT(ssize_t, #function, int, const void*, size_t, off_t)                       \
        pthread_mutex_lock(&order);                                                     \
        const ssize_t done = next(file, bytes, count, position);                        \
        if (done > 0 && isWatched(file)) {                                              \
            enter('w', file, position, "", 0, bytes, (size_t)done);                     \
        }                                                                               \
        pthread_mutex_unlock(&order);                                                   \
        return done;                                                                    \
    }
WRITING(pwrite)
WRITING(pwrite64)

#define OF_FILE(letter, function, number, parameters, ...) \
    SHOWN int function parameters {                        \
        NEXT(int, #function, __VA_ARGS__)                  \
        pthread_mutex_lock(&order);                        \
        const int result = next ARGUMENTS;                 \
        if (result == 0 && isWatched(file)) {              \
            enter(letter, file, number, "", 0, "", 0);     \
        }                                                  \
        pthread_mutex_unlock(&order);                      \
        return result;                                     \
    }
#define ARGUMENTS (file, size)
OF_FILE('t', ftruncate, size, (int file, off_t size), int, off_t)
OF_FILE('t', ftruncate64, size, (int file, off_t size), int, off_t)
#undef ARGUMENTS
#define ARGUMENTS (file)
OF_FILE('s', fsync, 0, (int file), int)
OF_FILE('s', fdatasync, 0, (int file), int)

/* A call that is done with a path. */
#define OF_PATH(letter, path, call)                                   \
    pthread_mutex_lock(&order);                                       \
    const int result = call;                                          \
    if (result == 0 && isBelow(path)) enterPath(letter, -1, 0, path); \
    pthread_mutex_unlock(&order);                                     \
    return result;

SHOWN int mkdir(const char* path, mode_t mode){NEXT(int, "mkdir", const char*, mode_t)
                                                   OF_PATH('m', path, next(path, mode))}

SHOWN char* mkdtemp(char* path) {
    NEXT(char*, "mkdtemp", char*)
    pthread_mutex_lock(&order);
    char* result = next(path);
    if (result && isBelow(result)) enterPath('m', -1, 0, result);
    pthread_mutex_unlock(&order);
    return result;
}

SHOWN int unlink(const char* path){NEXT(int, "unlink", const char*) OF_PATH('u', path, next(path))}

SHOWN int rmdir(const char* path){NEXT(int, "rmdir", const char*) OF_PATH('u', path, next(path))}

SHOWN int unlinkat(int folder, const char* path, int flags) {
    NEXT(int, "unlinkat", int, const char*, int)
    char whole[2048];
    const char* found = located(folder, path, whole, sizeof whole);
    OF_PATH('u', found, next(folder, path, flags))
}

SHOWN int remove(const char* path) {
    struct stat status;
    if (lstat(path, &status) != 0) return -1;
    return S_ISDIR(status.st_mode) ? rmdir(path) : unlink(path);
}

static void moved(int result, const char* from, const char* to) {
    if (result == 0 && isBelow(from)) enter('r', -1, 0, from, strlen(from), to, strlen(to));
}

SHOWN int rename(const char* from, const char* to) {
    NEXT(int, "rename", const char*, const char*)
    pthread_mutex_lock(&order);
    const int result = next(from, to);
    moved(result, from, to);
    pthread_mutex_unlock(&order);
    return result;
}

SHOWN int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                    unsigned flags) {
    NEXT(int, "renameat2", int, const char*, int, const char*, unsigned)
    pthread_mutex_lock(&order);
    const int result = next(fromFolder, from, toFolder, to, flags);
    moved(result, from, to);
    pthread_mutex_unlock(&order);
    return result;
}
