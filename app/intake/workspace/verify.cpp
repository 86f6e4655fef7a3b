#include "app/intake/workspace/verify.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <vector>

#include "app/intake/dump/dump.h"
#include "app/intake/messages.h"
#include "app/intake/show/show.h"
#include "app/intake/utf8.h"
#include "datasets/surfaces.h"
#include "datasets/tables.h"
#include "datasets/workspace.h"
#include "host/cpp/call.h"
#include "host/cpp/fixed_text.h"
#include "host/qxfeat.h"

namespace program {

namespace {

struct Words {
    QxFault fault;
    const char* name;    // in JSON
    const char* text;    // behind what it is about
    const char* mended;  // the same once it is
};

// What is left over does no harm.
constexpr std::array<Words, 7> kWords = {{
    {QX_FAULT_LIST, "list", ", the list of tables, is damaged",
     ", the list of tables, was damaged and is written anew"},
    {QX_FAULT_MISSING, "missing", " is a table in the list, and has no files",
     " had no files and is no more in the list of tables"},
    {QX_FAULT_TABLE, "table", " is a table whose files are damaged", ""},
    {QX_FAULT_RECORDS, "records", " is damaged: it holds less than it says", ""},
    {QX_FAULT_EMPTY, "head", " is damaged: it does not begin as such a file does", ""},
    {QX_LEFT_UNFINISHED, "unfinished",
     " was being written when its import ended, and holds what had come so far", ""},
    {QX_LEFT_UNLISTED, "unlisted", " belongs to no table in the list",
     " belonged to no table in the list and is removed"},
}};

// Whether the last record of each member is there. The counts come from a part of the file of
// their own, which other parts need not have followed.
bool isWhole(const datasets::Surface& surface) {
    const auto head = surface.environment();
    if (!head) return true;
    const std::pair<QxTinMember, int32_t> counts[] = {{QX_TIN_NODE_XY, head->nodeCount},
                                                      {QX_TIN_NODE_Z, head->nodeCount},
                                                      {QX_TIN_TRIANGLE_NODES, head->triangleCount},
                                                      {QX_TIN_TRIANGLE_EDGES, head->triangleCount},
                                                      {QX_TIN_HULL, head->hullCount}};
    std::array<std::byte, 16> record;
    return std::ranges::all_of(counts, [&](const auto& each) {
        return each.second < 1 || surface.read(each.first, each.second, 1, record.data()) == 1;
    });
}

class Verification {
  public:
    Verification(const VerifyOptions& options, Console& console)
        : options_(options), console_(console) {}

    int run() {
        findFaults();
        for (const datasets::Stored& each : datasets::datasetsIn(options_.workspace)) {
            ++datasets_;
            read(each.path, each.kinds.front());
        }
        findUnrecognised();
        for (const datasets::TablePlace& place : datasets::tablesIn(options_.workspace)) {
            const bool stands = std::ranges::find(read_, place.name) == read_.end() &&
                                std::ranges::find(read_, place.owner()) == read_.end();
            if (!stands) continue;
            ++tables_;
            read(options_.workspace + '/' + place.name, "Info Datafile");
        }
        tell();
        return faults_ > 0 ? kComplained : kDone;
    }

  private:
    void findFaults() {
        int32_t check = 0, status = 0;
        qx::call(wsfopn_, check, std::string_view(options_.workspace), status);
        if (status != 0) throw datasets::NoDataset("there is no folder " + options_.workspace);
        for (;;) {
            int32_t fault = 0, mending = 0;
            qx::Name about;
            qx::call(wsfget_, check, fault, about, mending, status);
            if (status != 0) break;
            const Words& words = *std::ranges::find(kWords, fault, &Words::fault);
            int32_t failed = -1;
            if (options_.repair && mending == QX_MENDS) qx::call(wsfmnd_, check, failed);
            std::string text = failed == 0 ? words.mended : words.text;
            if (mending == QX_MENDS_LATER) text += ", or not yet: an import may be writing it";
            note(words.name, std::string(about.view()), text, fault >= QX_LEFT_UNFINISHED,
                 failed == 0);
        }
        qx::call(wsfcls_, check);
    }

    // Folders with the file of a dataset that cannot be read any more even as such.
    void findUnrecognised() {
        constexpr const char* kFiles[] = {"coverage", "grid", "lattice", "stack", "tenv", "env"};
        const auto names = datasets::namesIn(options_.workspace);
        for (const std::string& name : names ? *names : std::vector<std::string>()) {
            const std::string path = options_.workspace + '/' + name;
            if (name == "info" || std::ranges::find(read_, name) != read_.end()) continue;
            const auto inside = datasets::namesIn(path);
            if (!inside) continue;
            for (const char* file : kFiles) {
                if (!std::ranges::binary_search(*inside, file) || isAbout(path, name)) continue;
                note("head", path + '/' + file,
                     " is damaged: it does not begin as such a file does", false, false);
            }
        }
    }

    // Whether something was told of a dataset.
    bool isAbout(const std::string& path, const std::string& name) const {
        return std::ranges::any_of(about_, [&](const std::string& about) {
            return about.starts_with(path + '/') || about == name || about.starts_with(name + '.');
        });
    }

    // All of a dataset: what its heads do not say is found out by that.
    void read(const std::string& path, const std::string& kind) {
        const std::string name = path.substr(path.rfind('/') + 1);
        read_.push_back(name);
        if (isAbout(path, name)) return;
        if (kind == "TIN" && !isWhole(datasets::Surface(path))) {
            note("partial", path, " holds less than its head says, as its file may have done", true,
                 false);
        }
        std::ostream nowhere(nullptr);
        std::ostringstream told;
        Console quiet{nowhere, told};
        Listening listening(quiet);
        try {
            dump(path, {{}, kind}, nowhere);
        } catch (const std::runtime_error& error) {
            note("unreadable", path, std::string(" cannot be read: ") + error.what(), false, false);
            return;
        }
        if (listening.endWell()) return;
        std::string text = told.str();
        text.resize(text.find_last_not_of('\n') + 1);
        std::ranges::replace(text, '\n', ' ');
        note("unreadable", path, " cannot be read to its end: " + text, false, false);
    }

    void note(const char* fault, const std::string& about, const std::string& text, bool left,
              bool mended) {
        about_.push_back(about);
        if (mended) {
            ++mended_;
        } else {
            ++(left ? left_ : faults_);
        }
        found_.push_back({{"fault", fault}, {"about", toUtf8(about)}, {"mended", mended}});
        if (!options_.json) console_.output << shown(about + text) << '\n';
    }

    void tell() {
        if (options_.json) {
            Description object;
            object["workspace"] = toUtf8(options_.workspace);
            object["datasets"] = datasets_;
            object["tables"] = tables_;
            object["faults"] = faults_;
            object["left"] = left_;
            object["mended"] = mended_;
            object["found"] = found_;
            console_.output << object.dump() << '\n';
            return;
        }
        std::ostringstream line;
        line << datasets_ << (datasets_ == 1 ? " dataset" : " datasets") << " and " << tables_
             << (tables_ == 1 ? " table" : " tables") << " alone in " << options_.workspace << ": "
             << faults_ << " damaged, " << left_ << " left over";
        if (options_.repair) line << ", " << mended_ << " mended";
        complain(console_, line.str());
    }

    const VerifyOptions& options_;
    Console& console_;
    std::size_t datasets_ = 0, tables_ = 0;
    std::size_t faults_ = 0, left_ = 0, mended_ = 0;
    std::vector<std::string> about_, read_;
    Description found_ = Description::array();
};

}  // namespace

int checkWorkspace(const VerifyOptions& options, Console& console) {
    return Verification(options, console).run();
}

}  // namespace program
