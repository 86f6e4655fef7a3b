#include "host/qxbase/directories.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "companions/qxbase/state.h"
#include "companions/store/file.h"
#include "companions/store/handle_table.h"
#include "companions/store/member_names.h"
#include "host/cpp/fixed_text.h"
#include "system/system.h"

namespace {

using qx::textArgument;
using qx::textResult;

constexpr int32_t kFailed = 1;

// Directories that dpush_ entered, the newest last. The current directory of the process belongs
// to the host and stays what it is.
std::vector<std::string> entered;

// The names of an open directory.
struct Listing {
    std::vector<std::string> names;
    std::size_t next = 0;
};

store::HandleTable<Listing> listings;

std::string currentDirectory() { return entered.empty() ? os::currentFolder() : entered.back(); }

}  // namespace

namespace qxbase {

void leaveDirectories() {
    entered.clear();
    listings.closeAll();
}

std::string located(std::string_view name) {
    return entered.empty() ? std::string(name) : store::joinPath(entered.back(), name);
}

}  // namespace qxbase

void dcreat_(const char* directory, int32_t* status, int32_t directoryLength) {
    *status =
        store::makeDirectory(std::string(textArgument(directory, directoryLength))) ? 0 : kFailed;
}

int32_t dcreatC(const char* directory) { return store::makeDirectory(directory) ? 0 : kFailed; }

void dexist_(const char* directory, int32_t* status, int32_t directoryLength) {
    *status =
        store::isDirectory(std::string(textArgument(directory, directoryLength))) ? 0 : kFailed;
}

void dget_(char* directory, int32_t directoryLength) {
    qx::wholeResult(directory, directoryLength, currentDirectory());
}

void dpush_(const char* directory, int32_t* status, int32_t directoryLength) {
    std::string path = qxbase::located(textArgument(directory, directoryLength));
    *status = kFailed;
    if (!store::leadsToDirectory(path)) return;
    entered.push_back(std::move(path));
    *status = 0;
}

void dpop_() {
    if (!entered.empty()) entered.pop_back();
}

void dopen_(int32_t* handle, const char* directory, int32_t* status, int32_t directoryLength) {
    Listing listing;
    const std::string path = qxbase::located(textArgument(directory, directoryLength));
    *status = kFailed;
    if (!os::namesIn(path.c_str(), listing.names)) return;
    *status = 0;
    std::sort(listing.names.begin(), listing.names.end());
    *handle = listings.add(std::make_unique<Listing>(std::move(listing)));
}

void dread_(const int32_t* handle, char* name, int32_t* status, int32_t nameLength) {
    Listing* listing = listings.find(*handle);
    *status = -1;
    if (!listing || listing->next == listing->names.size()) return;
    textResult(name, nameLength, listing->names[listing->next++]);
    *status = 0;
}

void dclose_(const int32_t* handle) { listings.close(*handle); }

void creift_(const char* path, int32_t* status, int32_t pathLength) {
    const std::string info = store::infoDirectory(textArgument(path, pathLength));
    *status = store::isDirectory(info) || store::makeDirectory(info) || store::isDirectory(info)
                  ? 0
                  : kFailed;
}
