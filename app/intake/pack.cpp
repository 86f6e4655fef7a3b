#include "app/intake/pack.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <optional>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

#include "app/intake/interrupts.h"
#include "app/intake/messages.h"
#include "host/cpp/call.h"
#include "host/qxbase.h"
#include "stream/compressed.h"
#include "stream/reader.h"
#include "stream/report.h"
#include "stream/whole_lines.h"

namespace program {

namespace {

using intake::ReaderState;
using qx::Name;

constexpr std::size_t kLongestLine = 300;
// Reading and writing take turns of so many lines.
constexpr std::size_t kLinesPerTurn = 512;

// Puts a state in the place of the one that the stream routines work on, for the length of a scope:
// reader and writer share that place.
class Turn {
  public:
    explicit Turn(ReaderState& state) : state_(state) { std::swap(intake::reader, state_); }
    ~Turn() { std::swap(intake::reader, state_); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

  private:
    ReaderState& state_;
};

// A volume with a header line of its own is another file.
bool beginsFile(const std::string& path) {
    char start[3] = {};
    std::ifstream(path, std::ios::binary).read(start, sizeof start);
    return std::string_view(start, sizeof start) == "EXP";
}

// Replaces a name by that of the next volume; false if that does not exist.
bool nextVolume(Name& volume) {
    constexpr int32_t kReader = 2;
    int32_t status = 0;
    qx::call(iename_, volume, kReader, status);
    return status == 0;
}

Name lastVolume(const std::string& file) {
    Name last(file);
    for (Name next = last; nextVolume(next) && !beginsFile(std::string(next.view()));) last = next;
    return last;
}

class Input {
  public:
    explicit Input(const std::string& file) : last_(lastVolume(file)) {
        const Turn turn(state_);
        intake::reader.IMPNAM.assign(file);
        intake::reader.firstVolume.assign(file);
        int32_t status = 0;
        qx::call(aopen_, intake::reader.IMPUNT, intake::reader.IMPNAM, status);
        if (status != 0) intake::error("Could not open %1%", intake::reader.IMPNAM);
        intake::RDVER(intake::reader.IMPUNT);
        if (intake::reader.NOHEAD == 1) {
            // The importer works out the precision of such a file from its arcs, but only of one
            // without a header line.
            intake::warn(
                "%1% has no header line; what is written has one and is read as its "
                "section headers say",
                intake::reader.IMPNAM);
        }
    }

    // The next lines, none at the end of the file.
    std::span<const std::string> read() {
        const Turn turn(state_);
        std::size_t count = 0;
        for (; count < lines_.size() && !ended(); ++count) {
            std::string_view line;
            if (intake::takeWholeLine(kLongestLine, line)) {
                lines_[count].assign(qx::trimText(line));
            } else {
                readLine(lines_[count]);
            }
        }
        return {lines_.data(), count};
    }

    const Name& last() const { return last_; }

  private:
    static void readLine(std::string& text) {
        // One column more than a line may have shows one that is too long. In compressed form the
        // end mark of a full line can stand there.
        char line[kLongestLine + 1];
        const bool plain = intake::reader.EXPVER == 0;
        intake::IMPLIN(std::span(line, plain ? sizeof line : kLongestLine));
        if (plain && line[kLongestLine] != ' ') {
            intake::fatal("A line of %1% is longer than 300 columns: line %2%",
                          intake::reader.IMPNAM, static_cast<int32_t>(intake::reader.lineNumber));
        }
        text.assign(qx::trimText(line, kLongestLine));
    }
    bool ended() const { return intake::volumeEnded() && intake::reader.IMPNAM == last_; }

    Name last_;
    ReaderState state_;
    // Used again and again.
    std::vector<std::string> lines_ = std::vector<std::string>(kLinesPerTurn);
};

class Output {
  public:
    // One that only counts writes nothing.
    Output(const PackOptions& options, bool onlyCounts) : level_(options.level) {
        state_.IMPNAM.assign(options.output);
        state_.EXPCMP = options.level;
        state_.EXPVER = options.level > 0 ? 1 : 0;
        state_.VOLMAX = options.linesPerVolume;
        state_.onlyCounts = onlyCounts;
    }

    void write(std::span<const std::string> lines) {
        const Turn turn(state_);
        for (const std::string& line : lines) {
            ++count_;
            if (level_ > 0) {
                intake::reader.EXPCMP = intake::survivingLevel(line, level_);
                if (intake::reader.EXPCMP == 0) {
                    intake::fatal("Line %1% does not fit the compressed form: %2%", count_, line);
                }
            }
            intake::EXPLIN(line);
        }
    }
    void finish() {
        const Turn turn(state_);
        if (count_ == 0) intake::fatal("The file holds no lines");
        intake::finishExport();
    }
    int32_t volumes() const { return state_.volumesMade; }
    int64_t linesCounted() const { return state_.linesCounted; }

  private:
    int32_t level_;
    int32_t count_ = 0;
    ReaderState state_;
};

// The least number of lines in a volume with which so many are enough. The first has the header
// line as one of its lines, and no volume ends before its second line of the file.
int64_t leastLinesPerVolume(int64_t lines, int64_t volumes) {
    if (lines <= 2 * volumes) return 2;
    return std::max<int64_t>((lines + volumes) / volumes, 3);
}

bool exists(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
}

// What speaks against the output's name, "" for nothing.
std::string objection(const PackOptions& options, const Source& source) {
    const std::string& output = options.output;
    if (source.path().size() > Name::kLength || output.size() > Name::kLength) {
        return "the name of a file is too long";
    }
    if (exists(output)) return output + " exists already";
    const auto digit = [&](std::size_t fromEnd) {
        return output.size() >= fromEnd &&
               std::isdigit(static_cast<unsigned char>(output[output.size() - fromEnd])) != 0;
    };
    if (options.linesPerVolume > 0 && !(digit(1) && digit(2))) {
        return output + " cannot be split in volumes: its name does not end in two digits";
    }
    Name next = lastVolume(source.path());
    nextVolume(next);
    if (next == output) return output + " would be a volume of " + options.source.file;
    return {};
}

void takeAway(const std::string& output, int32_t volumes) {
    Name volume(output);
    for (int32_t each = 0; each < volumes; ++each) {
        int32_t status = 0;
        qx::call(adelet_, volume, status);
        nextVolume(volume);
    }
}

void copy(const Source& source, Output& output) {
    Input input(source.path());
    for (auto lines = input.read(); !lines.empty(); lines = input.read()) output.write(lines);
    output.finish();
}

// Whether the volumes behind the output's name are enough, found out before the first is made.
bool volumesSuffice(const PackOptions& options, const Source& source, Listening& listening,
                    Console& console) {
    if (options.linesPerVolume == 0) return true;
    Output counted(options, true);
    listening.tellErrorsOnly(true);
    copy(source, counted);
    listening.tellErrorsOnly(false);
    const int64_t volumes = 100 - std::stoi(options.output.substr(options.output.size() - 2));
    const int64_t least = leastLinesPerVolume(counted.linesCounted(), volumes);
    if (options.linesPerVolume >= least) return true;
    complain(console, options.output + " and the volumes behind it are " + std::to_string(volumes) +
                          ", which take the file from --lines-per-volume " + std::to_string(least) +
                          " on");
    return false;
}

}  // namespace

int pack(const PackOptions& options, Console& console) {
    const Interrupts interrupts;
    std::optional<Source> source;
    try {
        source.emplace(options.source);
    } catch (const Undecided& undecided) {
        complainInLines(console, undecided.what());
        return kWrongUsage;
    } catch (const std::runtime_error& error) {
        complainInLines(console, error.what());
        return kEnded;
    }
    if (const std::string text = objection(options, *source); !text.empty()) {
        complain(console, text);
        return kWrongUsage;
    }
    Listening listening(console, [&](std::string_view text) { return source->shown(text); });
    Output output(options, false);
    try {
        if (!volumesSuffice(options, *source, listening, console)) return kWrongUsage;
        copy(*source, output);
        return kDone;
    } catch (const std::exception& error) {
        complain(console, error.what());
    } catch (...) {
        // An error of the stream, which has said what it was.
    }
    takeAway(options.output, output.volumes());
    return interruptedBy() != 0 ? Interrupted(interruptedBy()).exitStatus() : kEnded;
}

}  // namespace program
