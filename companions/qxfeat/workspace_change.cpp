#include "companions/qxfeat/workspace_change.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <set>

#include "companions/qxfeat/packed_words.h"
#include "companions/qxfeat/table.h"
#include "companions/store/durable.h"
#include "companions/store/folders.h"
#include "companions/store/member_names.h"
#include "host/qxbase/failures.h"

namespace qxfeat {

namespace {

constexpr std::string_view kMark = "QXCHANGE";
constexpr int32_t kVersion = 1;
constexpr int32_t kMostSteps = 1 << 20;

// The number in the name of a table's file, "table12.def"; 0 for another name.
int32_t numberIn(std::string_view name) {
    constexpr std::string_view kFront = "table";
    if (!name.starts_with(kFront)) return 0;
    int32_t number = 0;
    const auto* end = name.data() + name.size();
    const auto [behind, error] = std::from_chars(name.data() + kFront.size(), end, number);
    return error == std::errc() && behind != end && *behind == '.' ? number : 0;
}

void put(PackedWriter& writer, const std::vector<Listing>& list) {
    writer << static_cast<int32_t>(list.size());
    for (const Listing& each : list) writer << each.number << std::string_view(each.name);
}

bool count(PackedReader& reader, int32_t& count) {
    reader >> count;
    return reader.ok() && count >= 0 && count <= kMostSteps;
}

bool get(PackedReader& reader, std::vector<Listing>& list) {
    int32_t left = 0;
    if (!count(reader, left)) return false;
    for (; left > 0 && reader.ok(); --left) {
        Listing each;
        (reader >> each.number).text(each.name, QX_TABLE_NAME_LENGTH);
        if (each.number < 1 || each.number >= INT32_MAX - 1 || each.name.empty()) return false;
        list.push_back(std::move(each));
    }
    return reader.ok();
}

}  // namespace

std::string WorkspaceChange::pathOf(std::string_view inside) const {
    return store::joinPath(workspace_, inside);
}

std::string WorkspaceChange::journal() const { return store::joinPath(work_, "journal"); }

bool WorkspaceChange::write() const {
    PackedWriter writer;
    writer.raw(kMark) << kVersion << static_cast<int32_t>(moves.size());
    for (const Move& move : moves) {
        writer << move.kind << std::string_view(move.from) << std::string_view(move.to);
    }
    put(writer, erased);
    put(writer, entered);
    writer << static_cast<int32_t>(numbers.size());
    for (const int32_t number : numbers) writer << number;
    return store::replaceFile(journal(), writer.bytes());
}

bool WorkspaceChange::read() {
    PackedReader reader(journal(), kMark);
    int32_t version = 0;
    int32_t left = 0;
    reader >> version;
    if (version != kVersion || !count(reader, left)) return false;
    for (; left > 0 && reader.ok(); --left) {
        Move move;
        reader >> move.kind;
        reader.text(move.from, QX_NAME_LENGTH).text(move.to, QX_NAME_LENGTH);
        if (!staysInside(move.from) || !staysInside(move.to)) return false;
        moves.push_back(std::move(move));
    }
    if (!get(reader, erased) || !get(reader, entered) || !count(reader, left)) return false;
    for (; left > 0 && reader.ok(); --left) reader >> numbers.emplace_back();
    return reader.ok();
}

// Another number for a table whose files come into the workspace: an import took the one that was
// meant for it. The definition is the first of its files.
bool WorkspaceChange::renumber(const Move& move) {
    const std::string_view name = store::namePart(move.to);
    const int32_t old = numberIn(name);
    if (old == 0 || !name.ends_with(".def")) return false;
    int32_t next = old;
    for (const Listing& each : entered) next = std::max(next, each.number);
    ++next;
    for (Move& each : moves) {
        if (each.kind != Move::kIn || numberIn(store::namePart(each.to)) != old) continue;
        const std::string file(store::namePart(each.to));
        const std::string suffix = file.substr(file.find('.') + 1);
        each.to = tableFile(std::string(store::directoryPart(each.to)), next, suffix);
    }
    for (Listing& each : entered) {
        if (each.number == old) each.number = next;
    }
    return write();
}

// Whether the folders on the way to it are folders. A link in the place of one leads elsewhere.
bool WorkspaceChange::isReached(std::string_view inside) const {
    for (std::size_t end = inside.find('/'); end != inside.npos; end = inside.find('/', end + 1)) {
        const std::string folder = pathOf(inside.substr(0, end));
        if (store::isDirectory(folder)) continue;
        wrfailC(folder.c_str(), ENOTDIR);
        return false;
    }
    return true;
}

bool WorkspaceChange::take(const Move& move, bool& taken) const {
    const std::string from = pathOf(move.from);
    const std::string to = pathOf(move.to);
    taken = true;
    for (const std::string& inside : {move.from, move.to}) {
        if (!isReached(inside)) return false;
    }
    if (!store::exists(from) || (move.kind == Move::kAway && store::exists(to))) return true;
    if (move.kind == Move::kOver) return store::moveOver(from, to);
    if (store::moveUnlessThere(from, to)) return true;
    taken = errno != EEXIST;
    return false;
}

bool WorkspaceChange::removeTableFiles() const {
    if (numbers.empty()) return true;
    const std::set<int32_t> gone(numbers.begin(), numbers.end());
    const std::string info = pathOf("info");
    bool whole = store::isDirectory(info);
    for (const std::string& name : whole ? store::namesIn(info) : std::vector<std::string>()) {
        if (gone.count(numberIn(name)) == 0) continue;
        whole = store::removeFile(store::joinPath(info, name)) && whole;
    }
    return whole;
}

bool WorkspaceChange::takeSteps() {
    for (std::size_t step = 0; step < moves.size();) {
        bool taken = false;
        if (take(moves[step], taken)) {
            ++step;
        } else if (taken || !renumber(moves[step])) {
            if (!taken) wrfailC(pathOf(moves[step].to).c_str(), EEXIST);
            return false;
        }
    }
    const bool listed =
        erased.empty() && entered.empty() ? true : changeTables(pathOf("info"), erased, entered);
    if (!listed || !removeTableFiles()) return false;
    // From here on the change is done, and what is left in the folder is nobody's.
    return store::removeFile(journal()) && giveUp();
}

bool WorkspaceChange::giveUp() const {
    const bool gone = store::removeTree(work_);
    // Unless another change has a folder there.
    store::dropDirectory(std::string(store::directoryPart(work_)));
    return gone;
}

bool WorkspaceChange::carryOut() {
    if (write()) return takeSteps();
    giveUp();
    return false;
}

bool WorkspaceChange::finish() {
    if (!store::exists(journal())) return giveUp();
    if (read()) {
        // Whoever began it may have wished that it lasts, and whoever finds it need not know.
        const store::Lasting lasting;
        return takeSteps();
    }
    // What it had moved away is still in the folder, which stays.
    wrfailC(journal().c_str(), 0);
    return false;
}

bool finishChanges(const std::string& workspace) {
    const std::string folders = store::joinPath(workspace, kWorkFolders);
    bool whole = true;
    for (const std::string& name : store::namesIn(folders)) {
        const std::string work = store::joinPath(folders, name);
        const auto lock = store::FolderLock::tryNow(work);
        if (lock.held()) whole = WorkspaceChange(workspace, work).finish() && whole;
    }
    // Unless another change has a folder there.
    store::dropDirectory(folders);
    return whole;
}

}  // namespace qxfeat
