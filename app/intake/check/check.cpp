#include "app/intake/check/check.h"

#include <algorithm>
#include <deque>
#include <stdexcept>

#include "app/intake/check/finding.h"
#include "app/intake/interrupts.h"

namespace program {

namespace {

// An import that ended is worse than one that complained.
int rank(int status) {
    constexpr int kRanked[] = {kDone, kComplained, kEnded};
    return static_cast<int>(std::find(std::begin(kRanked), std::end(kRanked), status) - kRanked);
}

}  // namespace

int check(const CheckOptions& options, Console& console) {
    const Interrupts interrupts;
    std::deque<std::string> files(options.files.begin(), options.files.end());
    int worst = kDone;
    for (bool first = true; !files.empty(); first = false) {
        SourceOptions source;
        source.file = files.front();
        source.mostBytes = options.mostBytes;
        files.pop_front();
        Finding finding;
        try {
            finding = findOut(source);
        } catch (const Undecided& several) {
            // All of them are meant.
            files.insert(files.begin(), several.names.begin(), several.names.end());
            continue;
        }
        if (interruptedBy() != 0) return Interrupted(interruptedBy()).exitStatus();
        if (options.json) {
            console.output << asObject(finding).dump() << '\n';
        } else {
            if (!first) console.output << '\n';
            printFinding(finding, console.output);
        }
        console.output.flush();
        if (!console.output) throw std::runtime_error("could not write the output");
        if (rank(finding.status) > rank(worst)) worst = finding.status;
    }
    return worst;
}

}  // namespace program
