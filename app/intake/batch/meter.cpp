#include "app/intake/batch/meter.h"

#include <cstdio>
#include <sstream>

namespace program {

namespace {

// What a file costs beside its bytes, as so many more of them.
constexpr double kBytesAFile = 100'000;

std::string rounded(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", value < 10 ? 1 : 0, value);
    return text;
}

std::string timeOf(double seconds) {
    if (seconds < 100) return rounded(seconds) + " s";
    if (seconds < 6000) return rounded(seconds / 60) + " min";
    return rounded(seconds / 3600) + " h";
}

}  // namespace

Meter::Meter(Console& console, bool quiet) : console_(console), quiet_(quiet) {}

void Meter::found(uint64_t bytes) {
    ++found_;
    foundBytes_ += bytes;
}

void Meter::done(const Job& job, const Reply& reply) {
    constexpr uint64_t kMostSaid = 20;
    ++done_;
    doneBytes_ += job.stamp.size;
    readBytes_ += reply.bytes;
    if (reply.outcome == Outcome::kWhole) ++whole_;
    if (reply.outcome == Outcome::kPartial) ++partial_;
    if (reply.outcome != Outcome::kFailed) return;
    if (++failed_ <= kMostSaid) say("failed: " + job.path + ": " + reply.word);
    if (failed_ == kMostSaid) say("what else fails is in the report");
}

std::string Meter::text() const {
    const double seconds = std::chrono::duration<double>(Clock::now() - begun_).count();
    const double rate = seconds > 0 ? 1 / seconds : 0;
    std::ostringstream line;
    line << done_ << (foundAll_ ? " of " : " of at least ") << found_ << " done, " << failed_
         << " failed, " << rounded(static_cast<double>(done_) * rate) << " files/s, "
         << rounded(static_cast<double>(readBytes_) * rate / 1e6) << " MB/s";
    if (done_ != 0 && done_ < found_) {
        const auto cost = [](uint64_t files, uint64_t bytes) {
            return static_cast<double>(files) * kBytesAFile + static_cast<double>(bytes);
        };
        line << ", " << (foundAll_ ? "" : "at least ")
             << timeOf(seconds * cost(found_ - done_, foundBytes_ - doneBytes_) /
                       cost(done_, doneBytes_))
             << " left";
    }
    return line.str();
}

void Meter::show() {
    if (quiet_) return;
    const auto now = Clock::now();
    const auto between =
        console_.terminal ? std::chrono::milliseconds(200) : std::chrono::milliseconds(10'000);
    if (now - shown_ < between) return;
    shown_ = now;
    if (console_.terminal) {
        console_.errors << "\r\033[K" << text() << std::flush;
        onScreen_ = true;
    } else {
        console_.errors << text() << std::endl;
    }
}

void Meter::clear() {
    if (onScreen_) console_.errors << "\r\033[K" << std::flush;
    onScreen_ = false;
}

void Meter::say(const std::string& text) {
    clear();
    complain(console_, text);
}

void Meter::end(const std::string& report) {
    clear();
    if (quiet_) return;
    const double seconds = std::chrono::duration<double>(Clock::now() - begun_).count();
    std::ostringstream line;
    line << whole_ << " whole, " << partial_ << " partial, " << failed_ << " failed";
    if (leftOut_ != 0) line << ", " << leftOut_ << " left out by the report of before";
    line << " in " << timeOf(seconds) << "; `intake report " << report << "` tells more";
    complain(console_, line.str());
}

}  // namespace program
