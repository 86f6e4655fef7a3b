#include "app/intake/report/sums.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "app/intake/batch/exact_path.h"
#include "app/intake/batch/path_list.h"
#include "app/intake/batch/stable_hash.h"
#include "app/intake/console.h"

namespace program {

namespace {

using nlohmann::ordered_json;

constexpr std::size_t kMostShown = 10;
constexpr std::size_t kMostSayings = 100'000;
constexpr std::size_t kMostMissing = 1000;
constexpr const char* kStatuses[] = {"whole", "partial", "failed"};

// What is common to messages that differ in numbers and in the file: "# of line # of FILE".
std::string commonTo(std::string text, const std::string& path) {
    for (std::size_t at = 0; !path.empty() && (at = text.find(path, at)) != std::string::npos;) {
        text.replace(at, path.size(), "FILE");
    }
    std::string common;
    for (const char each : text) {
        const bool digit = std::isdigit(static_cast<unsigned char>(each)) != 0;
        if (digit && common.ends_with('#')) continue;
        common += digit ? '#' : each;
    }
    return common;
}

std::string megabytes(uint64_t bytes) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f MB", static_cast<double>(bytes) / 1e6);
    return text;
}

std::string secondsOf(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f s", seconds);
    return text;
}

std::string pathWithoutDot(const std::string& path) {
    return path.starts_with("./") ? path.substr(2) : path;
}

}  // namespace

void Sums::add(const nlohmann::json& object) {
    const std::string path = pathOf(object);
    const auto status = object["status"].get<std::string>();
    const auto size = object["size"].get<uint64_t>();
    const auto seconds = object["seconds"].get<double>();
    ++all_.inputs;
    ++all_.byStatus[status];
    Counts& kind = kinds_[object["kind"].get<std::string>()];
    ++kind.inputs;
    ++kind.byStatus[status];
    const auto failure = object.find("failure");
    if (failure != object.end() && failure->is_string()) ++failures_[failure->get<std::string>()];
    for (const auto& message : object["messages"]) addMessage(path, message);
    for (const auto& output : object["outputs"]) {
        ++outputs_;
        outputBytes_ += output.value("size", uint64_t{0});
    }
    bytes_ += size;
    seconds_ += seconds;
    peak_ = std::max(peak_, object["peak_bytes"].get<uint64_t>());
    paths_[stableHash(pathWithoutDot(path))];
    const auto volumes = object.find("volumes");
    if (volumes != object.end() && volumes->is_array()) {
        for (const auto& volume : *volumes) paths_[stableHash(pathWithoutDot(pathOf(volume)))];
    }
    // A file in an archive stands for the archive too.
    if (object.contains("archive_size")) {
        paths_[stableHash(pathWithoutDot(path.substr(0, path.find("::"))))];
    }
    const auto slower = [&](const Slow& each) { return each.seconds < seconds; };
    const auto place = std::find_if(slowest_.begin(), slowest_.end(), slower);
    if (place == slowest_.end() && slowest_.size() == kMostShown) return;
    slowest_.insert(place, {seconds, size, path});
    if (slowest_.size() > kMostShown) slowest_.pop_back();
}

void Sums::addMessage(const std::string& path, const nlohmann::json& message) {
    const auto text = message.value("text", "");
    const std::string common = commonTo(text, path);
    const auto known = sayings_.find(common);
    if (known != sayings_.end()) {
        ++known->second.count;
    } else if (sayings_.size() < kMostSayings) {
        sayings_[common] = {1, message.value("level", ""), path, text};
    }
}

void Sums::lookFor(const std::string& list) {
    PathList paths(list);
    for (std::string path; paths.next(path, true) == PathList::Step::kPath;) {
        if (paths_.find(stableHash(pathWithoutDot(path)))) continue;
        if (++missing_ <= kMostMissing) missingPaths_.push_back(path);
    }
}

uint64_t Sums::count(const std::string& status) const {
    const auto found = all_.byStatus.find(status);
    return found == all_.byStatus.end() ? 0 : found->second;
}

std::vector<const Sums::Saying*> Sums::commonest() const {
    std::vector<const Saying*> all;
    for (const auto& entry : sayings_) all.push_back(&entry.second);
    std::sort(all.begin(), all.end(), [](const Saying* one, const Saying* other) {
        return one->count != other->count ? one->count > other->count : one->text < other->text;
    });
    if (all.size() > kMostShown) all.resize(kMostShown);
    return all;
}

ordered_json Sums::object() const {
    ordered_json object;
    object["inputs"] = all_.inputs;
    for (const char* const status : kStatuses) object["status"][status] = count(status);
    object["kinds"] = ordered_json::object();
    for (const auto& [kind, counts] : kinds_) object["kinds"][kind] = counts.byStatus;
    object["failures"] = failures_;
    object["bytes"] = bytes_;
    object["outputs"] = outputs_;
    object["output_bytes"] = outputBytes_;
    object["seconds"] = seconds_;
    object["peak_bytes"] = peak_;
    object["messages"] = ordered_json::array();
    for (const Saying* each : commonest()) {
        ordered_json example;
        addPath(example, each->path);
        example["text"] = each->text;
        object["messages"].push_back(
            {{"count", each->count}, {"level", each->level}, {"example", example}});
    }
    object["slowest"] = ordered_json::array();
    for (const Slow& each : slowest_) {
        ordered_json slow;
        addPath(slow, each.path);
        slow["seconds"] = each.seconds;
        slow["size"] = each.size;
        object["slowest"].push_back(slow);
    }
    object["missing"] = missing_;
    object["missing_paths"] = ordered_json::array();
    for (const std::string& path : missingPaths_) {
        ordered_json each;
        addPath(each, path);
        object["missing_paths"].push_back(each);
    }
    object["lines"] = lines.read;
    object["replaced_lines"] = lines.replaced;
    object["damaged_lines"] = lines.damaged;
    return object;
}

void Sums::print(std::ostream& stream) const {
    const auto counts = [&](const Counts& of) {
        std::string text;
        for (const char* const status : kStatuses) {
            const auto found = of.byStatus.find(status);
            if (found == of.byStatus.end()) continue;
            text += (text.empty() ? "" : ", ") + std::to_string(found->second) + ' ' + status;
        }
        return text;
    };
    stream << all_.inputs << " inputs, " << megabytes(bytes_) << ": " << counts(all_) << '\n'
           << outputs_ << " outputs, " << megabytes(outputBytes_) << "; " << secondsOf(seconds_)
           << " of workers, the most memory " << megabytes(peak_) << '\n';
    const auto section = [&](const char* title) { stream << '\n' << title << '\n'; };
    section("Kinds");
    for (const auto& [kind, of] : kinds_) {
        stream << "  " << (kind.empty() ? "none" : shown(kind)) << ": " << counts(of) << '\n';
    }
    if (!failures_.empty()) section("Failures");
    for (const auto& [word, count] : failures_) {
        stream << "  " << shown(word) << ": " << count << '\n';
    }
    if (!sayings_.empty()) section("Commonest messages");
    for (const Saying* each : commonest()) {
        stream << "  " << each->count << " x " << each->level << ": " << shown(each->text)
               << "\n      in " << shown(each->path) << '\n';
    }
    if (!slowest_.empty()) section("Slowest");
    for (const Slow& each : slowest_) {
        stream << "  " << secondsOf(each.seconds) << "  " << megabytes(each.size) << "  "
               << shown(each.path) << '\n';
    }
    if (missing_ != 0) {
        section("Missing");
        for (const std::string& path : missingPaths_) stream << "  " << shown(path) << '\n';
        if (missing_ > missingPaths_.size()) {
            stream << "  and " << missing_ - missingPaths_.size() << " more\n";
        }
    }
    if (lines.damaged != 0) {
        stream << '\n' << lines.damaged << " lines of the reports are damaged\n";
    }
}

}  // namespace program
