#include "app/intake/batch/report_line.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>

#include "app/intake/alive.h"
#include "app/intake/batch/exact_path.h"
#include "app/intake/messages.h"
#include "app/intake/utf8.h"

namespace program {

namespace {

using nlohmann::ordered_json;

// Of each list; a file may give rise to any number.
constexpr std::size_t kMostMessages = 100;
constexpr std::size_t kMostSections = 1000;

constexpr int32_t kInform = 1;

}  // namespace

const char* statusName(Outcome outcome) {
    return outcome == Outcome::kWhole     ? "whole"
           : outcome == Outcome::kPartial ? "partial"
                                          : "failed";
}

std::string stampText(int64_t nanoseconds) {
    constexpr int64_t kSecond = 1'000'000'000;
    const int64_t rest = (nanoseconds % kSecond + kSecond) % kSecond;
    const auto seconds = static_cast<std::time_t>((nanoseconds - rest) / kSecond);
    std::tm parts{};
    ::gmtime_r(&seconds, &parts);
    char text[64];
    const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
    std::snprintf(text + length, sizeof text - length, ".%09dZ", static_cast<int>(rest));
    return text;
}

void Told::message(int32_t level, const std::string& text) {
    worst_ = std::max(worst_, level);
    if (level > kInform) tell(levelName(level), text);
}

void Told::sectionEnds(const std::string& code, int64_t lines) {
    if (sections_.size() < kMostSections) {
        sections_.emplace_back(code, lines);
    } else {
        ++leftOut_;
    }
}

void Told::progress(std::string_view, int64_t) { stepTaken(); }

void Told::tell(const char* level, const std::string& text) {
    if (messages_.size() == kMostMessages) {
        ++leftOut_;
        return;
    }
    std::string shown = text;
    for (auto folder = hidden_.rbegin(); folder != hidden_.rend(); ++folder) {
        for (std::size_t at = 0; (at = shown.find(*folder)) != std::string::npos;) {
            shown.erase(at, folder->size());
        }
    }
    // Each format tells again what the dataset is like.
    std::pair<const char*, std::string> message(level, toUtf8(shown));
    if (std::find(messages_.begin(), messages_.end(), message) == messages_.end()) {
        messages_.push_back(std::move(message));
    }
}

std::string Told::line(const Job& job, Outcome outcome, const BatchOptions& options) const {
    ordered_json object;
    addPath(object, job.path);
    object["size"] = size;
    object["modified"] = stampText(job.stamp.modified);
    if (job.isMember) object["archive_size"] = job.stamp.size;
    object["sha256"] = sha256.empty() ? ordered_json() : ordered_json(sha256);
    if (!volumes.empty()) {
        for (const std::string& volume : volumes) {
            ordered_json each;
            addPath(each, volume);
            object["volumes"].push_back(std::move(each));
        }
    }
    object["kind"] = kind;
    object["status"] = statusName(outcome);
    if (!failure.empty()) object["failure"] = failure;
    object["messages"] = ordered_json::array();
    for (const auto& [level, text] : messages_) {
        object["messages"].push_back({{"level", level}, {"text", text}});
    }
    object["sections"] = ordered_json::array();
    for (const auto& [code, lines] : sections_) {
        object["sections"].push_back({{"code", toUtf8(code)}, {"lines", lines}});
    }
    if (leftOut_ != 0) object["left_out"] = leftOut_;
    object["outputs"] = ordered_json::array();
    for (const MadeOutput& output : outputs) {
        ordered_json each;
        addPath(each, options.folder + '/' + output.name);
        if (!output.dataset.empty()) each["dataset"] = output.dataset;
        each["size"] = output.size;
        each["layers"] = ordered_json::array();
        for (const auto& [name, features] : output.layers) {
            each["layers"].push_back({{"name", name}, {"features", features}});
        }
        object["outputs"].push_back(std::move(each));
    }
    if (!thumbnail.empty()) addPath(object["thumbnail"], options.folder + '/' + thumbnail);
    object["seconds"] = std::round(seconds * 1e6) / 1e6;
    object["peak_bytes"] = peakBytes;
    object["options"] = options.settings();
    object["version"] = INTAKE_VERSION;
    return object.dump() + '\n';
}

}  // namespace program
