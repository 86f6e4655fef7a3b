#include "app/intake/import.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>

#include "app/intake/import_events.h"
#include "app/intake/import_run.h"
#include "app/intake/interrupts.h"
#include "app/intake/looks_like.h"
#include "app/intake/messages.h"
#include "app/intake/progress_line.h"
#include "app/intake/summary.h"
#include "app/intake/utf8.h"
#include "app/intake/workspace/changes.h"
#include "datasets/workspace.h"
#include "host/qxbase.h"
#include "system/system.h"

namespace program {

namespace {

// Tells what the library tells while it imports, and keeps it.
class Report : public ImportListener {
  public:
    Report(const ImportOptions& options, Console& console)
        : options_(options),
          console_(console),
          line_(console.errors, console.terminal && !options.quiet && !options.events),
          events_(console.errors, options.events) {}

    void start(const Source& source, const Replacement* replacement) {
        replacement_ = replacement;
        int64_t bytes = 0;
        for (const auto& volume : source.volumes()) bytes += static_cast<int64_t>(volume.bytes);
        bytes_ = BytesRead(bytes);
        events_.start(options_.source.file, options_.dataset, bytes);
    }

    void message(int32_t level, const std::string& told) override {
        const std::string text = replacement_ ? replacement_->shown(told) : told;
        worst_ = std::max(worst_, level);
        keep(messages_, [&]() -> nlohmann::ordered_json {
            return {{"level", levelName(level)}, {"text", toUtf8(text)}};
        });
        if (options_.quiet && level < QX_NONFATAL) return;
        if (options_.isTemporary && text.starts_with(" Creating ")) return;
        if (events_.enabled()) {
            events_.message(level, text);
            return;
        }
        line_.clear();
        // What the end of a file means that is none is told otherwise.
        printMessage(console_, level, text, begun_);
    }
    void kindDecided(const std::string& kind) override { kind_ = kind; }
    void sectionBegins(const std::string&, int64_t) override { begun_ = true; }
    void sectionEnds(const std::string& code, int64_t lines) override {
        keep(sections_, [&]() -> nlohmann::ordered_json {
            return {{"code", code}, {"lines", lines}};
        });
    }
    void progress(std::string_view code, int64_t bytes) override {
        if (!code.empty()) section_ = code;
        bytes_.of(bytes);
        line_.show(section_, bytes_);
        events_.progress(section_, bytes_);
    }
    void endedIn(const std::string&, int64_t) override {}

    // The program's own last word.
    void remark(const std::string& text) {
        line_.clear();
        if (events_.enabled()) {
            events_.message(QX_INFORM, text);
        } else {
            complain(console_, text);
        }
    }
    void end(int status, const std::string& content, double seconds) {
        line_.clear();
        events_.end(status, kind_, content, seconds);
    }

    int32_t worst() const { return worst_; }
    const std::string& kind() const { return kind_; }
    // Whether a section has come to be read, which a dataset that stood before may prevent.
    bool begun() const { return begun_; }

    nlohmann::ordered_json outcome(int32_t result, const std::string& looksLike) const {
        nlohmann::ordered_json object;
        object["file"] = toUtf8(options_.source.file);
        object["dataset"] = toUtf8(options_.dataset);
        object["kind"] = kind_;
        object["result"] = result;
        object["messages"] = messages_;
        object["sections"] = sections_;
        if (!looksLike.empty()) object["looksLike"] = looksLike;
        if (leftOut_ != 0) object["leftOut"] = leftOut_;
        return object;
    }

  private:
    // A file may give rise to any number; the object holds the first ones and tells of the others.
    template <class Make>
    void keep(nlohmann::ordered_json& list, Make make) {
        constexpr std::size_t kMostKept = 10000;
        if (!options_.json) return;
        if (list.size() < kMostKept) {
            list.push_back(make());
        } else {
            ++leftOut_;
        }
    }

    const ImportOptions& options_;
    Console& console_;
    ProgressLine line_;
    ImportEvents events_;
    const Replacement* replacement_ = nullptr;
    BytesRead bytes_{0};
    std::string section_;
    int32_t worst_ = 0;
    bool begun_ = false;
    int64_t leftOut_ = 0;
    std::string kind_;
    nlohmann::ordered_json messages_ = nlohmann::ordered_json::array();
    nlohmann::ordered_json sections_ = nlohmann::ordered_json::array();
};

// A stand-alone table has its files in the workspace and nothing under its own path.
bool standsAlready(const std::string& dataset) {
    std::error_code ignored;
    const auto there = std::filesystem::symlink_status(dataset, ignored);
    return std::filesystem::exists(there) || !datasets::kindsOf(dataset).empty();
}

// What a workspace keeps of its own has these names.
bool isReserved(std::filesystem::path dataset) {
    if (!dataset.has_filename()) dataset = dataset.parent_path();
    return dataset.filename() == "info" || dataset.filename() == ".intake";
}

// Why nothing is imported to what stands there.
std::string standingThere(const std::string& dataset) {
    std::error_code ignored;
    const bool isFolder = std::filesystem::is_directory(dataset, ignored);
    if (isFolder &&
        (std::filesystem::is_empty(dataset, ignored) || datasets::kindsOf(dataset).empty())) {
        return dataset + " is a folder and no dataset; " +
               (std::filesystem::path(dataset) / "NAME").string() + " would be one in it";
    }
    return dataset +
           " exists already; --replace puts the new one in its place, --force imports to it all "
           "the same";
}

std::string secondsText(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.*f s", seconds < 10 ? 2 : 0, seconds);
    return text;
}

// What was made, how long it took and how to go on.
std::string lastLine(const ImportOptions& options, const std::string& summary, int32_t result,
                     double seconds) {
    return (result == 0 ? "what was imported until there stays: " : "") + summary + " (" +
           secondsText(seconds) + "); `intake show " + quoted(options.dataset) + "` tells more";
}

}  // namespace

int importFile(const ImportOptions& options, Console& console) {
    if (options.dataset.empty()) {
        complain(console, "the path of the dataset to make is empty");
        return kWrongUsage;
    }
    if (isReserved(options.dataset)) {
        complain(console, options.dataset + " is no name for a dataset: a workspace needs it");
        return kWrongUsage;
    }
    // The companions look there, each for itself.
    if (options.sync) os::setVariable("INTAKE_SYNC", "1");
    finishChanges(workspaceOf(options.dataset), console);
    const bool stands = (options.replace || !options.force) && standsAlready(options.dataset);
    if (stands && !options.replace) {
        complain(console, standingThere(options.dataset));
        return kWrongUsage;
    }
    const Interrupts interrupts;
    std::optional<Replacement> replacement;
    if (stands) replacement.emplace(options.dataset);
    Report report(options, console);
    const auto begun = std::chrono::steady_clock::now();
    std::optional<Source> source;
    try {
        source.emplace(options.source);
    } catch (const Undecided& undecided) {
        complainInLines(console, undecided.what());
        return kWrongUsage;
    } catch (const std::runtime_error& error) {
        report.message(QX_ERROR, error.what());
    }
    int32_t result = 0;
    if (source) {
        report.start(*source, replacement ? &*replacement : nullptr);
        // Standard output is for the object alone.
        result = runImport(*source, replacement ? replacement->beside() : options.dataset,
                           options.quiet && !options.json, report);
    }
    int status = report.worst() >= QX_NONFATAL ? kComplained : kDone;
    std::string looksLike;
    if (interruptedBy() != 0) {
        status = Interrupted(interruptedBy()).exitStatus();
    } else if (source && (report.kind().empty() || !source->beginsWell())) {
        // Nothing could be read, or only what follows on the beginning.
        const Likeness likeness = likenessAt(source->path());
        looksLike = likeness.what;
        report.remark(likeness.sentence(source->shown(source->path())));
        status = kComplained;
    }
    if (result == 0 && interruptedBy() == 0) status = kEnded;
    if (status != kDone && interruptedBy() == 0) {
        // What the library's words leave open: no folder, something in the way.
        const std::string reason = refusedWrite();
        if (!reason.empty()) {
            report.remark("could not write " + (replacement ? replacement->shown(reason) : reason));
        }
    }
    bool kept = false;  // the old dataset
    if (replacement) {
        kept = status != kDone && !(status == kComplained && looksLike.empty() && options.force);
        if (kept) {
            report.remark("the " + options.dataset + " that was there stays as it was");
        } else {
            replacement->put();
        }
    }
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begun;
    std::string summary;
    if (report.begun() && !kept && !options.isTemporary && (!options.quiet || options.events)) {
        summary = summaryOf(options.dataset, report.kind());
    }
    if (!summary.empty() && !options.events) {
        report.remark(lastLine(options, summary, result, time.count()));
    }
    report.end(status, summary, time.count());
    if (options.json) {
        console.output << report.outcome(result, looksLike).dump() << std::endl;
        if (!console.output) throw std::runtime_error("could not write the output");
    }
    return status;
}

}  // namespace program
