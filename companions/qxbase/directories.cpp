#include "host/qxbase/directories.h"

#include <unistd.h>

#include <climits>
#include <string>
#include <vector>

#include "companions/qxbase/state.h"
#include "companions/store/file.h"
#include "companions/store/member_names.h"
#include "host/cpp/fixed_text.h"

namespace {

using qx::textArgument;
using qx::textResult;

constexpr int32_t kFailed = 1;

// Directories that dpush_ left, the newest last.
std::vector<std::string> pushed;

std::string currentDirectory() {
    char path[PATH_MAX];
    return ::getcwd(path, sizeof path) ? path : std::string();
}

}  // namespace

namespace qxbase {

void leaveDirectories() {
    while (!pushed.empty()) dpop_();
}

}  // namespace qxbase

void dcreat_(const char* directory, int32_t* status, int32_t directoryLength) {
    *status = store::makeDirectory(std::string(textArgument(directory, directoryLength)))
                  ? 0
                  : kFailed;
}

void dget_(char* directory, int32_t directoryLength) {
    textResult(directory, directoryLength, currentDirectory());
}

void dpush_(const char* directory, int32_t* status, int32_t directoryLength) {
    std::string old = currentDirectory();
    if (old.empty() ||
        ::chdir(std::string(textArgument(directory, directoryLength)).c_str()) != 0) {
        *status = kFailed;
        return;
    }
    pushed.push_back(std::move(old));
    *status = 0;
}

void dpop_() {
    if (pushed.empty()) return;
    [[maybe_unused]] const int result = ::chdir(pushed.back().c_str());
    pushed.pop_back();
}

void creift_(const char* path, int32_t* status, int32_t pathLength) {
    const std::string info = store::infoDirectory(textArgument(path, pathLength));
    *status = store::isDirectory(info) || store::makeDirectory(info) || store::isDirectory(info)
                  ? 0
                  : kFailed;
}
