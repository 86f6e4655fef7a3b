#include "app/intake/import.h"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <vector>

#include "app/intake/messages.h"
#include "app/intake/progress_line.h"
#include "app/intake/utf8.h"
#include "datasets/workspace.h"
#include "host/qxbase.h"
#include "include/intakedl.h"

namespace program {

namespace {

// Hears what the library tells while it imports.
class Report {
  public:
    Report(const ImportOptions& options, Console& console)
        : options_(options),
          console_(console),
          progress_(console.errors, console.terminal && !options.quiet, options.file) {
        mesink_([](int32_t level, const char* text,
                   void* user) { static_cast<Report*>(user)->message(level, text); },
                this);
        prgset_([](int32_t event, const char* code, int64_t lines, int64_t bytes,
                   void* user) { static_cast<Report*>(user)->told(event, code, lines, bytes); },
                this);
    }
    ~Report() {
        mesink_(nullptr, nullptr);
        prgset_(nullptr, nullptr);
    }
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;

    int exitStatus(int32_t result) const {
        if (result == 0) return kEnded;
        return worst_ >= QX_NONFATAL ? kComplained : kDone;
    }

    nlohmann::ordered_json outcome(int32_t result) const {
        nlohmann::ordered_json object;
        object["file"] = toUtf8(options_.file);
        object["dataset"] = toUtf8(options_.dataset);
        object["kind"] = kind_;
        object["result"] = result;
        object["messages"] = messages_;
        object["sections"] = sections_;
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

    void message(int32_t level, std::string_view text) {
        worst_ = std::max(worst_, level);
        keep(messages_, [&]() -> nlohmann::ordered_json {
            return {{"level", levelName(level)}, {"text", toUtf8(text)}};
        });
        if (options_.quiet && level < QX_NONFATAL) return;
        progress_.clear();
        printMessage(console_, level, text);
    }

    void told(int32_t event, const char* code, int64_t lines, int64_t bytes) {
        if (event == QX_KIND_DECIDED) {
            kind_ = code;
            return;
        }
        if (event == QX_SECTION_ENDS) {
            keep(sections_, [&]() -> nlohmann::ordered_json {
                return {{"code", code}, {"lines", lines}};
            });
        }
        progress_.show(code, bytes);
    }

    const ImportOptions& options_;
    Console& console_;
    ProgressLine progress_;
    int32_t worst_ = 0;
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

}  // namespace

int importFile(const ImportOptions& options, Console& console) {
    if (!options.force && standsAlready(options.dataset)) {
        complain(console, options.dataset + " exists already; --force imports to it all the same");
        return kWrongUsage;
    }
    Report report(options, console);
    // Standard output is for the object alone.
    const int32_t quiet = options.quiet && !options.json ? 1 : 0;
    const int32_t result = ImportFile(options.file.c_str(), options.dataset.c_str(), quiet);
    if (options.json) {
        console.output << report.outcome(result).dump() << std::endl;
        if (!console.output) throw std::runtime_error("could not write the output");
    }
    return report.exitStatus(result);
}

}  // namespace program
