#include "host/qxbase/failures.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <system_error>

#include "companions/qxbase/state.h"
#include "companions/store/file.h"
#include "companions/store/member_names.h"
#include "host/cpp/call.h"
#include "host/qxbase/messages.h"

namespace {

// Kept without memory of its own, which may be what failed.
struct Failure {
    bool happened = false;
    int32_t error = 0;
    char path[QX_FAILURE_PATH] = {};
    std::size_t length = 0;

    void note(std::string_view failed, int32_t reason) {
        if (happened) return;
        happened = true;
        error = reason;
        failed.remove_prefix(failed.size() - std::min(failed.size(), sizeof path));
        length = failed.size();
        std::copy(failed.begin(), failed.end(), path);
    }
    std::string_view name() const { return {path, length}; }
};

Failure write;
Failure read;
Failure refused;

std::string reasonOf(const Failure& failure) {
    if (failure.error == 0) return "it is damaged";
    if (failure.error == ENOENT) {
        // Where a file is to be written it is the folder that is not there.
        const std::string folder(store::directoryPart(failure.name()));
        if (!folder.empty() && !store::leadsToDirectory(folder)) {
            return "there is no folder " + folder;
        }
    }
    return std::generic_category().message(failure.error);
}

void handOut(Failure& failure, char* path, char* reason, int32_t* status, int32_t pathLength,
             int32_t reasonLength) {
    const bool failed = failure.happened;
    qx::textResult(reason, reasonLength, failed ? reasonOf(failure) : std::string());
    qx::textResult(path, pathLength, failed ? failure.name() : std::string_view());
    failure.happened = false;
    *status = failed ? 0 : -1;
}

}  // namespace

namespace qxbase {

void forgetFailures() { write.happened = read.happened = refused.happened = false; }

void tellFailedRead() {
    if (!read.happened) return;
    const std::string reason = read.error != 0 ? reasonOf(read) : std::string();
    read.happened = false;
    qx::call(meschr_, read.name(), 0);
    if (reason.empty()) {
        qx::call(nonftl_, "%1% is damaged and cannot be read to its end", -1);
    } else {
        qx::call(meschr_, std::string_view(reason), 0);
        qx::call(nonftl_, "Could not read %1%: %2%", -1);
    }
}

}  // namespace qxbase

void wrfailC(const char* path, int32_t error) { write.note(path, error); }

void rdfailC(const char* path, int32_t error) { read.note(path, error); }

void wrfget_(char* path, char* reason, int32_t* status, int32_t pathLength, int32_t reasonLength) {
    handOut(write, path, reason, status, pathLength, reasonLength);
}

void refuseC(const char* path, int32_t error) { refused.note(path, error); }

void rfsget_(char* path, char* reason, int32_t* status, int32_t pathLength, int32_t reasonLength) {
    handOut(refused, path, reason, status, pathLength, reasonLength);
}
