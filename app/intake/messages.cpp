#include "app/intake/messages.h"

#include <algorithm>
#include <new>

#include "app/intake/explanations.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "host/qxgridio.h"

namespace program {

namespace {

struct Level {
    const char* name;
    const char* lead;
};

const Level& levelOf(int32_t level) {
    static constexpr Level kLevels[] = {{"inform", "inform"},
                                        {"warn", "warning"},
                                        {"nonftl", "error"},
                                        {"error", "error"},
                                        {"fatal", "fatal"}};
    return kLevels[level - QX_INFORM];
}

}  // namespace

const char* levelName(int32_t level) { return levelOf(level).name; }

void printMessage(Console& console, int32_t level, std::string_view text, bool explain) {
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        console.errors << lead(console, levelOf(level).lead)
                       << shown(text.substr(start, end - start)) << '\n';
        start = end + 1;
    }
    const std::string meaning = explain ? explanationOf(text) : "";
    if (!meaning.empty()) complain(console, meaning);
    console.errors.flush();
}

Listening::Listening(Console& console, std::function<std::string(std::string_view)> shownAs)
    : console_(console), shownAs_(std::move(shownAs)) {
    mesink_(
        [](int32_t level, const char* text, void* user) {
            auto* listening = static_cast<Listening*>(user);
            if (level >= QX_NONFATAL) listening->failed_ = true;
            if (level < QX_NONFATAL && listening->errorsOnly_) return;
            const auto& shownAs = listening->shownAs_;
            printMessage(listening->console_, level, shownAs ? shownAs(text) : text);
        },
        this);
    baseinitC();
    featinitC();
}

Listening::~Listening() {
    try {
        endWell();
    } catch (const std::bad_alloc&) {
        // The command is over by an exception that is told.
    }
    mesink_(nullptr, nullptr);
}

bool Listening::endWell() {
    gridendC();
    featendC();
    baseendC();
    return !failed_;
}

}  // namespace program
