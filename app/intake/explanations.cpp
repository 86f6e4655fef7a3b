#include "app/intake/explanations.h"

#include <algorithm>

namespace program {

namespace {

bool endsInTwoDigits(std::string_view name) {
    const auto digit = [](char character) { return character >= '0' && character <= '9'; };
    return name.size() >= 2 && std::all_of(name.end() - 2, name.end(), digit);
}

// The name is that of the volume which would be next, or of the last one where its name has no
// next.
std::string missingVolume(std::string_view name) {
    if (endsInTwoDigits(name) && !name.ends_with("99")) {
        return "the file ends before its end mark, a line EOS: it was cut off, or volumes of it "
               "are "
               "missing";
    }
    return std::string(name) + " ends before its end mark, a line EOS: it was cut off" +
           (endsInTwoDigits(name) ? ", or it is split in more than 100 volumes" : "");
}

}  // namespace

std::string explanationOf(std::string_view message) {
    constexpr std::string_view kStart = "ERROR, next volume ";
    constexpr std::string_view kEnd = " does not exist.";
    if (!message.starts_with(kStart) || !message.ends_with(kEnd)) return {};
    message.remove_prefix(kStart.size());
    message.remove_suffix(kEnd.size());
    return missingVolume(message);
}

}  // namespace program
