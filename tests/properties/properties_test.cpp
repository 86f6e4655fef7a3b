// What holds of every file, over the seeds of the fuzz targets and the small samples: whatever is
// cut off or changed, an import ends in time, says in one message why, leaves readable what it
// stored and writes nothing beside its workspace.
//
// INTAKE_PROPERTIES=all changes every byte in several ways instead of a sample of them, and
// INTAKE_PROPERTIES=whole in all 256.
#include <signal.h>
#include <stdlib.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <fstream>
#include <locale>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <unordered_set>

#include "entry/section_table.h"
#include "host/qxbase.h"
#include "intakedl.h"
#include "tests/support/program_test.h"

namespace intake::testing {
namespace {

namespace fs = std::filesystem;

constexpr unsigned kSecondsPerCase = 20;

// A sanitizer has the same code before it and takes several times as long.
#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t kEvery = 13;
#else
constexpr std::size_t kEvery = 1;
#endif

// What is being tried, for the case that takes too long.
char trying[256];

void tooLong(int) {
    const std::string_view text(trying);
    if (::write(STDERR_FILENO, text.data(), text.size()) >= 0) {
        constexpr std::string_view kEnd = " takes too long\n";
        if (::write(STDERR_FILENO, kEnd.data(), kEnd.size()) < 0) ::_exit(2);
    }
    ::_exit(1);
}

// The interchange file and a workspace in a folder of their own, in memory where that can be.
class Bench {
  public:
    Bench() {
        std::error_code ignored;
        const fs::path memory = "/dev/shm";
        const bool room = fs::space(memory, ignored).available > 32 << 20 && !ignored;
        std::string name =
            ((room ? memory : fs::temp_directory_path()) / "intake-properties-XXXXXX").string();
        if (!mkdtemp(name.data())) throw std::runtime_error("no directory for the test");
        root_ = name;
        fs::create_directory(root_ / "tmp");
        fs::create_directories(root_ / "outside/directory");
        writeFile((root_ / "outside/file").string(), "kept");
        setenv("TMPDIR", (root_ / "tmp").c_str(), 1);
        signal(SIGALRM, tooLong);
    }
    ~Bench() {
        alarm(0);
        before_.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", before_.c_str(), 1);
        std::error_code ignored;
        fs::remove_all(root_, ignored);
    }
    std::string dataset() const { return (root_ / "ws/DS").string(); }
    fs::path at(const char* name) const { return root_ / name; }

    // Form feeds part the volumes of a file. A link may stand in the workspace before.
    int32_t import(std::string_view text, const std::string& link = "",
                   const std::string& target = "") {
        fs::remove_all(root_ / "ws");
        fs::create_directory(root_ / "ws");
        if (!link.empty()) {
            fs::create_directories((root_ / link).parent_path());
            fs::create_symlink(root_ / "outside" / target, root_ / link);
        }
        for (const auto& old : volumes_) fs::remove(old);
        volumes_.clear();
        for (int volume = 0; volume < 4; ++volume) {
            const std::size_t end = volume < 3 ? text.find('\f') : std::string_view::npos;
            volumes_.push_back(root_ / ("in.e0" + std::to_string(volume)));
            writeFile(volumes_.back().string(), std::string(text.substr(0, end)));
            if (end == std::string_view::npos) break;
            text.remove_prefix(end + 1);
        }
        told.clear();
        sections.clear();
        mesink_(
            [](int32_t level, const char* message, void* user) {
                static_cast<Bench*>(user)->told.push_back({level, message});
            },
            this);
        prgset_(
            [](int32_t event, const char* code, int64_t lines, int64_t, void* user) {
                if (event == QX_SECTION_ENDS && lines > 1) {
                    static_cast<Bench*>(user)->sections.insert(code);
                }
            },
            this);
        alarm(kSecondsPerCase);
        const int32_t result = ImportFile(volumes_[0].c_str(), dataset().c_str(), 1);
        mesink_(nullptr, nullptr);
        prgset_(nullptr, nullptr);
        return result;
    }

    // What must hold after an import of anything; empty if it does.
    std::string fault(int32_t result) {
        const auto ends = std::count_if(told.begin(), told.end(),
                                        [](const Message& each) { return each.level >= QX_ERROR; });
        if (result == 1 ? ends != 0 : ends != 1 || told.back().level < QX_ERROR) {
            return "an import that ends has one message to say so, the last";
        }
        for (const Message& each : told) {
            const bool clear = std::none_of(each.text.begin(), each.text.end(), [](char letter) {
                return static_cast<unsigned char>(letter) < 32 && letter != '\n';
            });
            if (!clear || each.text.empty()) return "a message is a line of text";
        }
        const auto entries = fs::directory_iterator(root_);
        if (static_cast<std::size_t>(std::distance(begin(entries), end(entries))) !=
                volumes_.size() + 3 ||
            !fs::is_empty(root_ / "tmp") || stored("outside") != kOutside) {
            return "nothing is written beside the workspace";
        }
        // Most changes leave one of few workspaces, and what could be read once can be again.
        std::string whole;
        for (const auto& [name, bytes] : stored()) whole += name + '\0' + bytes + '\0';
        const std::size_t left = std::hash<std::string>()(whole);
        if (readable_.count(left) != 0) return "";
        for (const char* command : {"show", "dump"}) {
            std::ostringstream output;
            std::ostringstream errors;
            program::Console console{output, errors, false};
            const int status = program::run({command, dataset()}, console);
            const std::string said = errors.str();
            const bool oneLine = std::count(said.begin(), said.end(), '\n') == 1;
            if (status != 0 && !oneLine) return std::string(command) + " says: " + said;
        }
        readable_.insert(left);
        return "";
    }

    // Every file of the workspace, or of another folder.
    using Files = std::map<std::string, std::string>;
    Files stored(const char* folder = "ws") const {
        Files files;
        for (const auto& entry : fs::recursive_directory_iterator(root_ / folder)) {
            const std::string name = entry.path().lexically_relative(root_).string();
            files[name] = entry.is_regular_file() ? fileBytes(entry.path().string()) : "";
        }
        return files;
    }

    std::vector<Message> told;
    std::set<std::string> sections;  // that had more than an end mark

  private:
    inline static const Files kOutside = {{"outside/directory", ""}, {"outside/file", "kept"}};

    std::string before_ = std::getenv("TMPDIR") ? std::getenv("TMPDIR") : "";
    fs::path root_;
    std::vector<fs::path> volumes_;
    std::unordered_set<std::size_t> readable_;  // hashes of workspaces that were
};

// The file in the compressed form; empty where it has none.
std::string packed(Bench& bench, const std::string& text) {
    const std::string plain = bench.at("plain.e00").string();
    const std::string out = bench.at("out.e00").string();
    writeFile(plain, text);
    std::ostringstream output;
    std::ostringstream errors;
    program::Console console{output, errors, false};
    const int status = program::run({"pack", plain, out}, console);
    std::string bytes = status == 0 ? fileBytes(out) : "";
    fs::remove(plain);
    fs::remove(out);
    return bytes;
}

struct File {
    std::string name;
    std::string text;
};

void PrintTo(const File& file, std::ostream* stream) { *stream << file.name; }

std::vector<File> filesOf(const fs::path& folder) {
    constexpr std::size_t kSmall = 8192;
    std::vector<File> files;
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (!entry.is_regular_file() || entry.file_size() > kSmall) continue;
        if (entry.path().extension() != ".e00") continue;
        files.push_back({entry.path().filename().string(), fileBytes(entry.path().string())});
    }
    std::sort(files.begin(), files.end(), [](const File& left, const File& right) {
        return std::pair(left.text.size(), left.name) < std::pair(right.text.size(), right.name);
    });
    return files;
}

// The headers of some sections in a plain file, such as "ARC  2". A text line that looks like one
// is no harm.
std::set<std::string> headersOf(const std::string& text, const std::set<std::string>& sections) {
    std::set<std::string> headers;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        line.erase(line.find_last_not_of(" \r") + 1);
        const std::string code = line.substr(0, line.find(' '));
        if (line.size() == 6 && sections.count(code) != 0) headers.insert(line);
    }
    return headers;
}

// The smallest plain files that between them import a section of every kind and precision, with
// result 1.
struct Chosen {
    std::vector<File> files;
    std::set<std::string> missing;

    Chosen() {
        for (const SectionRow& row : sectionTable()) {
            if (row.run) missing.insert(std::string(row.code));
        }
        Bench bench;
        std::set<std::string> tried;
        for (const char* folder : {"/fuzz/seeds/import", "/samples"}) {
            for (const File& file : filesOf(std::string(INTAKE_SOURCE_DIR) + folder)) {
                const bool plain = !file.text.starts_with("EXP") || file.text.starts_with("EXP  0");
                if (!plain || bench.import(file.text) != 1) continue;
                for (const std::string& code : bench.sections) missing.erase(code);
                const std::size_t before = tried.size();
                tried.merge(headersOf(file.text, bench.sections));
                if (tried.size() != before) files.push_back(file);
            }
        }
    }
};

const Chosen& chosen() {
    static const Chosen files;
    return files;
}

TEST(Properties, EverySectionOfTheTableIsTried) {
    EXPECT_EQ(chosen().missing, std::set<std::string>()) << "no file imports these";
}

class OfFile : public ::testing::TestWithParam<File> {
  protected:
    void check(std::string_view text, const std::string& what) {
        std::snprintf(trying, sizeof trying, "%s: %s", GetParam().name.c_str(), what.c_str());
        const std::string fault = bench.fault(bench.import(text));
        EXPECT_EQ(fault, "") << trying;
    }
    std::vector<std::string> forms() {
        const std::string plain = GetParam().text;
        const std::string compressed = packed(bench, plain);
        EXPECT_NE(compressed, "") << "has a compressed form";
        return {plain, compressed};
    }

    Bench bench;
};

TEST_P(OfFile, EveryPrefixEndsWell) {
    for (const std::string& text : forms()) {
        for (std::size_t size = 0; size < text.size() && !HasFailure(); size += kEvery) {
            check(std::string_view(text).substr(0, size), "prefix of " + std::to_string(size));
        }
    }
}

TEST_P(OfFile, ChangedBytesEndWell) {
    const char* wanted = std::getenv("INTAKE_PROPERTIES");
    std::string bytes(" 09-.E*~}!\n\r/%A\x7F\xFF", 18);  // with the zero behind it
    if (wanted && std::string_view(wanted) == "whole") {
        bytes.resize(256);
        std::iota(bytes.begin(), bytes.end(), '\0');
    }
    constexpr std::size_t kSample = 150 / kEvery;
    std::mt19937 random(1);
    for (const std::string& text : forms()) {
        std::vector<std::size_t> cases(text.size() * bytes.size());
        for (std::size_t each = 0; each < cases.size(); ++each) cases[each] = each;
        if (!wanted) {
            std::shuffle(cases.begin(), cases.end(), random);
            cases.resize(std::min(cases.size(), kSample));
        }
        for (const std::size_t each : cases) {
            std::string changed = text;
            const std::size_t place = each / bytes.size();
            changed[place] = bytes[each % bytes.size()];
            check(changed, "byte " + std::to_string(place) + " made " +
                               std::to_string(bytes[each % bytes.size()]));
            if (HasFailure()) return;
        }
    }
}

TEST_P(OfFile, FollowsNoLinkOutOfTheWorkspace) {
    const std::string& text = GetParam().text;
    bench.import(text);
    for (const auto& [name, bytes] : bench.stored()) {
        for (const char* target : {"file", "directory", "new"}) {
            const std::string fault = bench.fault(bench.import(text, name, target));
            EXPECT_EQ(fault, "") << name << " leads to " << target;
        }
    }
}

// A number with a comma in it, for the streams of the process.
struct Comma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST_P(OfFile, StoresTheSameAgainCompressedAndInAnyLocale) {
    const std::vector<std::string> texts = forms();
    bench.import(texts[0]);
    const auto first = bench.stored();
    const auto messages = bench.told;
    bench.import(texts[0]);
    EXPECT_EQ(bench.stored(), first) << "a second import";
    EXPECT_EQ(bench.told, messages);
    bench.import(texts[1]);
    EXPECT_EQ(bench.stored(), first) << "the compressed form";
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Comma));
    const bool known = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
    bench.import(texts[0]);
    EXPECT_EQ(bench.stored(), first) << "another locale";
    EXPECT_STREQ(std::localeconv()->decimal_point, known ? "," : ".") << "is still in force";
    std::locale::global(before);
    std::setlocale(LC_ALL, "C");
}

std::string nameOf(const ::testing::TestParamInfo<File>& info) {
    std::string name = info.param.name.substr(0, info.param.name.find('.'));
    std::replace_if(
        name.begin(), name.end(),
        [](char letter) { return !std::isalnum(static_cast<unsigned char>(letter)); }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Properties, OfFile, ::testing::ValuesIn(chosen().files), nameOf);

}  // namespace
}  // namespace intake::testing
