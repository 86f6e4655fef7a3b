#include "app/intake/check/finding.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <fstream>
#include <sstream>

#include "app/intake/check/records.h"
#include "app/intake/import_run.h"
#include "app/intake/looks_like.h"
#include "app/intake/messages.h"
#include "containers/archive.h"
#include "host/qxbase.h"

namespace program {

namespace {

// As a user would call it: by the file's name up to its first point.
std::string nameFor(const Source& source) {
    constexpr std::size_t kLongest = 13;
    const std::string file = source.shown(source.path());
    std::string name = file.substr(file.find_last_of("/:") + 1);
    name = name.substr(0, std::min(name.find('.'), kLongest));
    const bool plain = std::all_of(name.begin(), name.end(), [](char character) {
        return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_';
    });
    return plain && !name.empty() ? name : "dataset";
}

class Collector : public ImportListener {
  public:
    explicit Collector(Finding& finding) : finding_(finding) {}

    void message(int32_t level, const std::string& text) override {
        worst_ = std::max(worst_, level);
        if (level == QX_ERROR && text.starts_with("Could not write ")) couldNotWrite_ = true;
        // That the dataset is made, and where, is not to be seen from outside.
        if (text.starts_with(" Creating ")) return;
        if (level >= QX_NONFATAL && !finding_.place) findColumns(text);
        keep(finding_.messages, FoundMessage{level, text});
    }
    void kindDecided(const std::string& kind) override { finding_.kind = kind; }
    void sectionBegins(const std::string& code, int64_t precision) override {
        keep(finding_.sections, FoundSection{code, precision, 0, std::nullopt});
    }
    void sectionEnds(const std::string&, int64_t lines) override {
        if (finding_.leftOut == 0 && !finding_.sections.empty()) {
            finding_.sections.back().lines = lines;
        }
    }
    void progress(std::string_view, int64_t) override {}
    void endedIn(const std::string& volume, int64_t line) override {
        if (!finding_.place) finding_.place = FoundPlace{volume, line, ""};
    }
    int32_t worst() const { return worst_; }
    bool couldNotWrite() const { return couldNotWrite_; }

  private:
    template <class List>
    void keep(List& list, typename List::value_type value) {
        constexpr std::size_t kMostKept = 10000;
        if (list.size() < kMostKept) {
            list.push_back(std::move(value));
        } else {
            ++finding_.leftOut;
        }
    }
    // A field that cannot be read is told with its place.
    void findColumns(const std::string& text) {
        // "... in columns 1 to 10 of line 7 of roads.e00"
        constexpr std::string_view kColumns = "in columns ";
        constexpr std::string_view kLine = " of line ";
        const std::size_t columns = text.rfind(kColumns);
        if (columns == std::string::npos) return;
        const std::size_t first = columns + kColumns.size();
        const std::size_t line = text.find(kLine, first);
        if (line == std::string::npos) return;
        int64_t number = 0;
        const char* const end = text.data() + text.size();
        const auto [behind, error] =
            std::from_chars(text.data() + line + kLine.size(), end, number);
        const std::string_view rest(behind, static_cast<std::size_t>(end - behind));
        if (error != std::errc() || !rest.starts_with(" of ")) return;
        finding_.place =
            FoundPlace{std::string(rest.substr(4)), number, text.substr(first, line - first)};
    }

    Finding& finding_;
    int32_t worst_ = 0;
    bool couldNotWrite_ = false;
};

void lookAtFirstLine(const Source& source, Finding& finding) {
    // A pipe would be waited for.
    if (finding.volumes.empty()) return;
    std::string line(80, '\0');
    std::ifstream stream(source.path(), std::ios::binary);
    stream.read(line.data(), static_cast<std::streamsize>(line.size()));
    line.resize(static_cast<std::size_t>(std::max<std::streamsize>(0, stream.gcount())));
    line = line.substr(0, line.find_first_of("\r\n"));
    line.erase(line.find_last_not_of(' ') + 1);
    if (hasHeaderLine(line)) {
        finding.headerLine = line;
        finding.compressed = line.substr(3, 3).find_first_not_of(" 0") != std::string::npos;
    } else if (beginsInterchange(line)) {
        finding.compressed = false;
    }
}

Description descriptionOf(const std::string& dataset, const std::string& kind) {
    std::ostringstream nowhere;
    Console silent{nowhere, nowhere};
    const Listening listening(silent);
    try {
        Description description = describe(dataset, kind);
        // What it would be called is not known.
        description.erase("name");
        description.erase("files");
        return description;
    } catch (const std::exception&) {
        return Description::object();
    }
}

void importTo(const Source& source, Finding& finding) {
    const TemporaryFolder workspace;
    const std::string dataset = workspace.path() + "/" + nameFor(source);
    Collector collector(finding);
    const int32_t result = runImport(source, dataset, true, collector);
    for (FoundMessage& message : finding.messages) {
        for (std::size_t at;
             (at = message.text.find(workspace.path() + "/")) != std::string::npos;) {
            message.text.erase(at, workspace.path().size() + 1);
        }
    }
    if (collector.couldNotWrite()) {
        // What it holds was not to be seen, through no fault of its own.
        finding.place.reset();
        throw std::runtime_error("it could not be looked at; TMPDIR names another place");
    }
    finding.status = kDone;
    if (result == 0) finding.status = kEnded;
    if (result != 0 && collector.worst() >= QX_NONFATAL) finding.status = kComplained;
    finding.verdict = finding.status == kDone ? Verdict::kWhole : Verdict::kPartial;
    if (result == 0 && finding.kind.empty()) {
        const Likeness likeness = likenessAt(source.path());
        finding.verdict = Verdict::kNone;
        finding.place.reset();
        finding.compressed.reset();
        finding.headerLine.clear();
        finding.volumes.clear();
        finding.looksLike = likeness.what + ": " + likeness.advice;
        return;
    }
    if (!source.beginsWell()) {
        const Likeness likeness = likenessAt(source.path());
        finding.looksLike = likeness.what + ": " + likeness.advice;
        if (finding.status == kDone) finding.status = kComplained;
        finding.verdict = Verdict::kPartial;
        if (!finding.place) finding.place = FoundPlace{source.shown(source.path()), 1, ""};
    }
    finding.dataset = descriptionOf(dataset, finding.kind);
    countRecords(finding.dataset, finding.sections);
}

}  // namespace

Finding findOut(const SourceOptions& options) {
    Finding finding;
    finding.file = options.file;
    finding.status = kEnded;
    try {
        const Source source(options);
        finding.container = source.container();
        finding.volumes = source.volumes();
        lookAtFirstLine(source, finding);
        importTo(source, finding);
    } catch (const Undecided& several) {
        if (!several.names.empty()) throw;
        finding.verdict = Verdict::kUnknown;
        std::string text = several.what();
        std::replace(text.begin(), text.end(), '\n', ' ');
        finding.messages.push_back({QX_ERROR, text});
    } catch (const containers::Damage& damage) {
        if (damage.inWanted) finding.verdict = Verdict::kPartial;
        finding.messages.push_back({QX_ERROR, damage.what()});
    } catch (const NotInIt& error) {
        finding.messages.push_back({QX_ERROR, error.what()});
    } catch (const std::runtime_error& error) {
        finding.verdict = Verdict::kUnknown;
        finding.messages.push_back({QX_ERROR, error.what()});
    }
    return finding;
}

}  // namespace program
