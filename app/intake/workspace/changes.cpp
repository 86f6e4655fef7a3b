#include "app/intake/workspace/changes.h"

#include <filesystem>
#include <stdexcept>

#include "app/intake/workspace/sizes.h"
#include "datasets/stacks.h"
#include "datasets/symbol_sets.h"
#include "datasets/workspace.h"
#include "host/cpp/call.h"
#include "host/cpp/fixed_text.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"

namespace program {

namespace fs = std::filesystem;

namespace {

// What the system said to the first thing that could not be done.
std::string reason() {
    qx::FixedText<QX_FAILURE_PATH> path;
    qx::FixedText<QX_FAILURE_PATH> text;
    int32_t status = 0;
    qx::call(wrfget_, path, text, status);
    return std::string(path.view()) + ": " + std::string(text.view());
}

void check(int32_t status, const std::string& path, const std::string& name = {}) {
    switch (status) {
        case QX_WORKSPACE_CHANGED:
            return;
        case QX_WORKSPACE_NOTHING:
            throw datasets::NoDataset(path + ": no dataset of this name");
        case QX_WORKSPACE_TAKEN:
            throw std::runtime_error(name + " exists already");
        case QX_WORKSPACE_NO_NAME:
            throw std::runtime_error(name + " is no name for a dataset");
        case QX_WORKSPACE_OWNED:
            throw std::runtime_error(path + " is a table of a dataset, and goes with it");
        case QX_WORKSPACE_FOLDERS:
            throw std::runtime_error(path + " has a folder in it, which is no part of a dataset");
        default:
            throw std::runtime_error("could not write " + reason());
    }
}

// A dataset as it is stored: a font lies under its name in lower case.
std::string storedPath(const std::string& path, std::vector<std::string>& kinds) {
    std::error_code ignored;
    if (fs::is_symlink(path, ignored)) throw datasets::NoDataset(path + " is a link, and stays");
    kinds = datasets::kindsOf(path);
    if (kinds.empty()) throw datasets::NoDataset(path + ": no dataset of this name");
    return kinds.front() == "Font File" && !fs::exists(path, ignored) ? datasets::fontFile(path)
                                                                      : path;
}

bool agreed(const std::string& question, Console& console) {
    console.errors << shown(question) << " [y/N] " << std::flush;
    std::string answer;
    std::getline(*console.input, answer);
    return answer == "y" || answer == "Y" || answer == "yes";
}

}  // namespace

std::string workspaceOf(const std::string& dataset) {
    const std::string folder = fs::path(dataset).parent_path().string();
    return folder.empty() ? "." : folder;
}

void finishChanges(const std::string& workspace, Console& console) {
    int32_t status = 0;
    qx::call(wspfin_, std::string_view(workspace), status);
    if (status == QX_WORKSPACE_CHANGED) return;
    complain(console, "what was begun in " + workspace + " could not be finished: " + reason());
}

int removeDatasets(const std::vector<std::string>& paths, bool yes, Console& console) {
    if (!yes && !console.input) {
        complain(console, "nobody can be asked here; --yes removes without a question");
        return kWrongUsage;
    }
    int status = kDone;
    for (const std::string& path : paths) {
        finishChanges(workspaceOf(path), console);
        try {
            std::vector<std::string> kinds;
            const std::string stored = storedPath(path, kinds);
            const WorkspaceSizes sizes(workspaceOf(path));
            const std::string what =
                kinds.front() + " " + path + ", " + bytesText(sizes.of(stored).bytes);
            if (!yes && !agreed("Remove " + what + "?", console)) continue;
            int32_t removed = 0;
            qx::call(wsprem_, std::string_view(stored), removed);
            check(removed, path);
        } catch (const std::runtime_error& error) {
            complain(console, error.what());
            status = kEnded;
        }
    }
    return status;
}

int renameDataset(const std::string& path, const std::string& name, Console& console) {
    finishChanges(workspaceOf(path), console);
    std::vector<std::string> kinds;
    std::string stored = storedPath(path, kinds);
    // A path beside the old one will do for a name.
    std::error_code ignored;
    const fs::path wanted(name);
    const bool beside =
        wanted.has_parent_path() && fs::equivalent(workspaceOf(name), workspaceOf(path), ignored);
    std::string last = beside ? wanted.filename().string() : name;
    if (kinds.front() == "Font File" && stored != path) {
        for (char& letter : last) letter = letter >= 'A' && letter <= 'Z' ? letter | 32 : letter;
    }
    int32_t status = 0;
    qx::call(wspren_, std::string_view(stored), std::string_view(last), status);
    check(status, path, name);
    return kDone;
}

Replacement::Replacement(const std::string& dataset) : dataset_(dataset) {
    std::vector<std::string> kinds;
    const std::string stored = storedPath(dataset, kinds);
    if (kinds.front() == "Stack") {
        for (const auto& each : datasets::memberGrids(dataset)) members_.push_back(each.path);
    }
    qx::Name beside;
    int32_t status = 0;
    qx::call(wspbeg_, change_, std::string_view(dataset), beside, status);
    beside_ = beside.view();
    try {
        check(status, dataset);
        addOld(stored);
    } catch (...) {
        qx::call(wspend_, change_);
        throw;
    }
}

Replacement::~Replacement() { qx::call(wspend_, change_); }

void Replacement::addOld(const std::string& path) {
    int32_t status = 0;
    qx::call(wspold_, change_, std::string_view(path), status);
    check(status, path);
}

std::string Replacement::shown(std::string text) const {
    const std::string from = beside_.substr(0, beside_.rfind('/') + 1);
    const std::size_t folder = dataset_.rfind('/');
    const std::string to = dataset_.substr(0, folder == dataset_.npos ? 0 : folder + 1);
    for (std::size_t at = text.find(from); at != text.npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

void Replacement::put() {
    // Grids of the old stack go where the new one has such.
    std::error_code ignored;
    for (const std::string& member : members_) {
        const fs::path fresh = fs::path(beside_).parent_path() / fs::path(member).filename();
        if (fs::exists(fresh, ignored)) addOld(member);
    }
    int32_t status = 0;
    qx::call(wspput_, change_, status);
    check(status, dataset_, "something that the new " + dataset_ + " needs the name of");
}

}  // namespace program
