#include "app/intake/dataset.h"

#include <algorithm>
#include <stdexcept>

#include "host/cpp/call.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"

namespace program {

namespace {

bool isCoverage(const std::string& path) {
    int32_t type = 0;
    qx::call(ctype_, std::string_view(path), type);
    return type != 0;
}

struct Recognizer {
    const char* kind;
    bool (*fits)(const std::string& path);
};

// One line a kind. Kinds that say what they are come first; the first of those that fits decides.
constexpr Recognizer kCertain[] = {
    {"Coverage", isCoverage},
};

std::string lastName(const std::string& path) {
    qx::Name name;
    qx::call(ename_, std::string_view(path), name);
    return std::string(name.view());
}

}  // namespace

std::vector<std::string> kindsOf(const std::string& path) {
    for (const Recognizer& each : kCertain) {
        if (each.fits(path)) return {each.kind};
    }
    return {};
}

Dataset findDataset(const std::string& path, const std::string& kind) {
    const std::vector<std::string> kinds = kindsOf(path);
    if (kinds.empty()) throw std::runtime_error(path + ": no dataset of this name");
    if (!kind.empty()) {
        if (std::find(kinds.begin(), kinds.end(), kind) == kinds.end()) {
            throw std::runtime_error(path + ": no " + kind);
        }
        return {path, lastName(path), kind};
    }
    if (kinds.size() > 1) {
        std::string text = path + ": may be a";
        for (const std::string& each : kinds) text += (each == kinds.front() ? " " : ", ") + each;
        throw std::runtime_error(text + "; say which with --kind");
    }
    return {path, lastName(path), kinds.front()};
}

}  // namespace program
