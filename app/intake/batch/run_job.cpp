#include "app/intake/batch/run_job.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "app/intake/alive.h"
#include "app/intake/batch/exact_path.h"
#include "app/intake/batch/finished.h"
#include "app/intake/batch/gathered.h"
#include "app/intake/batch/peak_memory.h"
#include "app/intake/batch/report_line.h"
#include "app/intake/batch/sha256.h"
#include "app/intake/batch/tellings.h"
#include "app/intake/commands/reading.h"
#include "app/intake/draw/draw.h"
#include "app/intake/export/convert.h"
#include "app/intake/looks_like.h"
#include "app/intake/module.h"
#include "app/intake/source.h"
#include "app/intake/temporary_folder.h"
#include "formats/formats.h"
#include "formats/gatherer.h"
#include "host/qxbase.h"

namespace program {

namespace {

namespace fs = std::filesystem;

// Adds what is in a file; throws if it cannot be read.
uint64_t addFile(Sha256& sum, const std::string& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    std::array<char, 1 << 16> bytes;
    uint64_t total = 0;
    ssize_t count = file < 0 ? -1 : 1;
    while (count > 0 && (count = ::read(file, bytes.data(), bytes.size())) > 0) {
        sum.add({bytes.data(), static_cast<std::size_t>(count)});
        total += static_cast<uint64_t>(count);
        stepTaken();
    }
    const int reason = errno;
    if (file >= 0) ::close(file);
    if (count < 0) throw std::runtime_error(path + ": " + std::strerror(reason));
    return total;
}

// That of convert, where any file system and reader of the output takes it.
std::string datasetNameOf(const std::string& path) {
    constexpr std::size_t kLongest = 64;
    const std::string name = datasetNameFor(path);
    for (const char each : name) {
        if (each < '!' || each > '~') return "dataset";
    }
    return name.size() > kLongest ? "dataset" : name;
}

constexpr const char* kWorkspace = "/workspace";
// So many bytes of an input have their workspace in memory.
constexpr uint64_t kMostInMemory = 1 << 20;

uint64_t expandedBytes(const Source& source) {
    uint64_t total = 0;
    for (const Source::Volume& volume : source.volumes()) total += volume.bytes;
    return total;
}

// Whether a file has a header line of its own.
bool beginsFile(const std::string& path) {
    std::string start(80, '\0');
    std::ifstream stream(path, std::ios::binary);
    stream.read(start.data(), static_cast<std::streamsize>(start.size()));
    start.resize(static_cast<std::size_t>(stream.gcount()));
    return hasHeaderLine(start);
}

class Run {
  public:
    Run(const Job& job, const BatchOptions& options, const Rooms& rooms)
        : job_(job), options_(options), rooms_(rooms) {
        told_.hide(rooms.scratch + '/');
        told_.hide(rooms.unplaced + '/');
    }
    Reply reply();

  private:
    Outcome outcome(Reply& reply);
    void measure();
    // False where there is nothing to go on with; without a failure it is another one's volume.
    bool import();
    // Gives what of it could not be written, or nothing.
    std::string importTo(const std::string& room, const Source& source);
    void exportAll();
    // False where the format cannot hold such a dataset.
    bool exportTo(const formats::Format& format);
    void keepDataset();
    void drawThumbnail();
    void putThumbnail();
    void gather(const std::string& made);
    std::string put(const std::string& made, const std::string& ending);
    void putAll();
    Outcome fail(const char* word, const std::string& text) {
        told_.failure = word;
        if (!text.empty()) told_.tell("error", text);
        return Outcome::kFailed;
    }

    const Job& job_;
    const BatchOptions& options_;
    const Rooms& rooms_;
    Told told_;
    std::string dataset_;
    bool whole_ = true;

    // Made but not yet in its place: where a later one costs the worker its life, none is there.
    struct Unplaced {
        std::string path;
        std::string ending;
        MadeOutput output;
        bool toGather;
    };
    std::vector<Unplaced> unplaced_;
    std::string refusal_;  // of a format that cannot hold it
    std::string picture_;
};

void Run::measure() {
    // A device or a pipe has no end, and of a file in an archive its expansion tells.
    std::error_code ignored;
    if (job_.isMember || !fs::is_regular_file(job_.path, ignored)) return;
    Sha256 sum;
    told_.size = addFile(sum, job_.path);
    told_.volumes = furtherVolumes(job_.path);
    for (const std::string& volume : told_.volumes) told_.size += addFile(sum, volume);
    told_.sha256 = sum.digits();
}

std::string Run::put(const std::string& made, const std::string& ending) {
    const std::string name = job_.place + ending;
    const bool replace = options_.resume || options_.retry || options_.force;
    putInPlace(made, options_.folder + '/' + name, rooms_.unplaced + "/old", replace);
    return name;
}

void Run::gather(const std::string& made) {
    // Open from the first one on to the end of this process.
    static std::unique_ptr<formats::Gatherer> gatherer;
    if (!gatherer) {
        gatherer = loadModule<formats::GathererMaker>("gather").open(options_.folder + '/' +
                                                                     rooms_.gathered);
    }
    nlohmann::ordered_json source;
    addPath(source, job_.path);
    gatherer->add(made, source["path"]);
    fs::remove(made);
}

std::string Run::importTo(const std::string& room, const Source& source) {
    const std::string workspace = room + kWorkspace;
    fs::create_directory(workspace);
    told_.hide(workspace + '/');
    dataset_ = workspace + '/' + (options_.gather ? "dataset" : datasetNameOf(job_.path));
    const int32_t result = runImport(source, dataset_, true, told_);
    whole_ = result != 0 && told_.worst() < QX_NONFATAL;
    return whole_ ? std::string() : refusedWrite();
}

bool Run::import() {
    SourceOptions given;
    given.file = job_.path;
    given.mostBytes = options_.mostBytes;
    const Source source(given);
    if (job_.mayFollow && !beginsFile(source.path())) return false;
    if (told_.sha256.empty()) {
        Sha256 sum;
        for (const Source::Volume& volume : source.volumes()) {
            told_.size += addFile(sum, volume.path);
        }
        told_.sha256 = sum.digits();
    }
    std::string refused;
    if (options_.formats.empty()) {
        refused = importTo(rooms_.unplaced, source);
    } else {
        const uint64_t bytes = source.container().empty() ? told_.size : expandedBytes(source);
        std::error_code full;
        const bool little = !rooms_.quick.empty() && bytes <= kMostInMemory &&
                            fs::create_directory(rooms_.quick + kWorkspace, full);
        const Told before = told_;
        refused = importTo(little ? rooms_.quick : rooms_.scratch, source);
        if (little && !whole_) {
            // It may be for want of room, of which a disk has more.
            emptyFolder(rooms_.quick);
            told_ = before;
            refused = importTo(rooms_.scratch, source);
        }
    }
    if (!refused.empty()) told_.tell("error", "could not write " + refused);
    const bool beginsWell = source.beginsWell();
    if (!beginsWell) {
        whole_ = false;
        told_.tell("error", likenessAt(source.path()).sentence(source.shown(source.path())));
    }
    if (!told_.kind.empty()) return true;
    told_.failure = beginsWell ? "nothing readable" : "not an interchange file";
    return false;
}

bool Run::exportTo(const formats::Format& format) {
    const std::string ending(format.endings.substr(0, format.endings.find(' ')));
    const bool stack = told_.kind == "Stack";
    const bool rasters = stack || told_.kind == "Grid" || told_.kind == "Lattice";
    // Of rasters a file holds one, so that those of a stack lie in a folder of that name.
    const bool folder = format.rasters && format.folders && stack;
    ExportOptions how;
    how.dataset = dataset_;
    how.kind = told_.kind;
    // Some formats keep the name of their file.
    how.output = rooms_.unplaced + '/' +
                 (folder ? "stack" : fs::path(job_.place).filename().string() + ending);
    how.format = format.name;
    how.system = options_.system;
    how.encoding = options_.encoding;
    how.rastersElsewhere = rasters && std::ranges::any_of(options_.formats, [](const auto& name) {
                               return formats::formatNamed(name)->rasters;
                           });
    how.json = true;
    how.quiet = true;
    std::ostringstream output;
    std::ostringstream errors;
    Console console{output, errors};
    try {
        const bool whole = exportDataset(how, console) == kDone;
        MadeOutput made;
        tellReport(output.str(), told_, made);
        if (rasters && !format.rasters && made.layers.empty()) {
            fs::remove_all(how.output);
            return false;
        }
        whole_ &= whole;
        made.size = bytesOf(how.output);
        unplaced_.push_back({how.output, ending, std::move(made),
                             options_.gather && format.name == kGatheredFormat});
    } catch (const NotForThisKind& error) {
        refusal_ = error.what();
        return false;
    } catch (const std::runtime_error& error) {
        whole_ = false;
        told_.tell("error", error.what());
    }
    tellLines(errors.str(), told_);
    return true;
}

void Run::putAll() {
    for (Unplaced& each : unplaced_) {
        try {
            if (each.toGather) {
                gather(each.path);
                each.output.name = options_.gatheredName();
            } else {
                each.output.name = put(each.path, each.ending);
            }
            told_.outputs.push_back(std::move(each.output));
        } catch (const std::runtime_error& error) {
            whole_ = false;
            told_.tell("error", error.what());
        }
    }
}

void Run::exportAll() {
    bool fits = false;
    for (const std::string& name : options_.formats) {
        fits |= exportTo(*formats::formatNamed(name));
    }
    putAll();
    if (!fits && !refusal_.empty()) told_.tell("error", refusal_);
    if (told_.outputs.empty()) told_.failure = fits ? "no output" : "no format holds it";
}

void Run::keepDataset() {
    std::error_code ignored;
    const fs::path workspace = fs::path(dataset_).parent_path();
    if (fs::is_empty(workspace, ignored)) {
        told_.failure = "no output";
        return;
    }
    MadeOutput made;
    countFeatures(dataset_, told_.kind, made);
    made.size = bytesOf(workspace.string());
    try {
        made.name = put(workspace.string(), "");
        made.dataset = fs::path(dataset_).filename().string();
        told_.outputs.push_back(std::move(made));
    } catch (const std::runtime_error& error) {
        told_.failure = "no output";
        told_.tell("error", error.what());
    }
}

// That there is nothing to be seen of a kind is no failure.
void Run::drawThumbnail() {
    std::ostringstream nowhere;
    Console silent{nowhere, nowhere};
    const std::string picture = rooms_.unplaced + "/thumbnail.png";
    try {
        constexpr double kThumbnailSide = 160;
        reading(silent, [&] {
            draw({.dataset = dataset_,
                  .kind = told_.kind,
                  .picture = picture,
                  .colourBy = {},
                  .longerSide = kThumbnailSide});
        });
        picture_ = picture;
    } catch (const std::runtime_error&) {}
}

void Run::putThumbnail() {
    try {
        told_.thumbnail = put(picture_, ".thumbnail.png");
    } catch (const std::runtime_error&) {}
}

Outcome Run::outcome(Reply& reply) {
    try {
        measure();
        if (!job_.failure.empty()) {
            return fail(job_.failure.c_str(), job_.trouble);
        }
        if (!import()) return told_.failure.empty() ? Outcome::kVolume : Outcome::kFailed;
    } catch (const Undecided& undecided) {
        if (job_.isMember) return fail("unreadable", undecided.what());
        reply.names = undecided.names;
        return Outcome::kSeveral;
    } catch (const std::runtime_error& error) {
        return fail("unreadable", error.what());
    }
    if (options_.thumbnails) drawThumbnail();
    if (options_.formats.empty()) {
        keepDataset();
    } else {
        exportAll();
    }
    if (!picture_.empty()) putThumbnail();
    if (!told_.failure.empty()) return Outcome::kFailed;
    return whole_ ? Outcome::kWhole : Outcome::kPartial;
}

Reply Run::reply() {
    const auto begun = std::chrono::steady_clock::now();
    resetPeakMemory();
    Reply reply;
    reply.outcome = outcome(reply);
    if (reply.outcome == Outcome::kVolume || reply.outcome == Outcome::kSeveral) return reply;
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begun;
    const bool onlyTold = !job_.failure.empty();
    told_.seconds = onlyTold ? job_.seconds : time.count();
    told_.peakBytes = onlyTold ? job_.peakBytes : peakMemory();
    reply.bytes = told_.size;
    reply.word = told_.failure;
    reply.line = told_.line(job_, reply.outcome, options_);
    for (const MadeOutput& output : told_.outputs) {
        if (options_.gather && output.name == options_.gatheredName()) {
            reply.names.push_back(rooms_.gathered);
            reply.names.push_back(rooms_.gathered + "-wal");
        } else {
            reply.names.push_back(output.name);
        }
    }
    if (!told_.thumbnail.empty()) reply.names.push_back(told_.thumbnail);
    return reply;
}

}  // namespace

void emptyFolders(const Rooms& rooms) {
    emptyFolder(rooms.scratch);
    if (!rooms.quick.empty()) emptyFolder(rooms.quick);
    emptyFolder(rooms.unplaced);
}

Reply runJob(const Job& job, const BatchOptions& options, const Rooms& rooms) {
    const Reply reply = Run(job, options, rooms).reply();
    emptyFolders(rooms);
    return reply;
}

}  // namespace program
