#include "app/intake/batch/syncer.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>

#include "app/intake/batch/finished.h"
#include "app/intake/batch/message.h"
#include "app/intake/temporary_folder.h"

namespace program {

namespace {

// Each is waited for by itself where they are few: the whole file system may be busy with others'.
constexpr std::size_t kFew = 2;

int syncAll(const std::string& folder, const std::vector<std::string>& names) {
    int failed = 0;
    if (names.size() <= kFew) {
        for (const std::string& name : names) {
            if (const int error = syncPath(folder, name); error != 0) failed = error;
        }
        return failed;
    }
    const int file = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file < 0) return errno;
    if (::syncfs(file) != 0) failed = errno;
    ::close(file);
    return failed;
}

[[noreturn]] void serve(int socket, const std::string& folder) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, SIG_IGN);
    Inbox inbox;
    while (inbox.fill(socket)) {
        for (std::string_view message; inbox.next(message);) {
            Reply reply;
            unpack(message, reply);
            const int error = syncAll(folder, reply.names);
            ::send(socket, &error, sizeof error, MSG_NOSIGNAL);
        }
    }
    // The batch is over, or was killed and could not clear up.
    removeTemporaryFolders();
    ::_exit(0);
}

}  // namespace

Syncer::Syncer(const std::string& folder) : folder_(folder) {
    int ends[2] = {-1, -1};
    const bool opened = ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0;
    process_ = opened ? ::fork() : -1;
    if (process_ < 0) {
        const std::string reason = std::strerror(errno);
        ::close(ends[0]);
        ::close(ends[1]);
        throw std::runtime_error("could not begin another process: " + reason);
    }
    if (process_ == 0) {
        ::close(ends[0]);
        serve(ends[1], folder_);
    }
    ::close(ends[1]);
    socket_ = ends[0];
}

Syncer::~Syncer() {
    if (busy_) ::kill(process_, SIGKILL);
    ::close(socket_);
    ::waitpid(process_, nullptr, 0);
}

void Syncer::begin(const std::vector<std::string>& names) {
    Reply message;
    message.names = names;
    send(socket_, packed(message));
    busy_ = true;
}

void Syncer::done() {
    int error = 0;
    ssize_t count = 0;
    do {
        count = ::read(socket_, &error, sizeof error);
    } while (count < 0 && errno == EINTR);
    busy_ = false;
    if (count != sizeof error) throw std::runtime_error(folder_ + ": could not be synchronized");
    if (error != 0) throw std::runtime_error(folder_ + ": " + std::strerror(error));
}

}  // namespace program
