#include "entry/import_driver.h"

#include <sys/resource.h>
#include <sys/stat.h>

#include <clocale>
#include <csignal>
#include <thread>

#include "entry/companions.h"
#include "entry/section_table.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "intakedl.h"
#include "stream/section_codes.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

constexpr char kArcs[] =
    "ARC  2\n"
    "         1        12         1         2         3         4         1\n"
    " 1.0000000E+00 2.0000000E+00\n"
    "        -1         0         0         0         0         0         0\n";

class Driver : public ImportTest {
  protected:
    void SetUp() override { given("EXP  0 X\n" + std::string(kArcs) + "EOS\n"); }

    // Runs the driver with a forced kind. False if it was unwound.
    bool drive(int32_t kind, const std::string& dataset = "DS") {
        said_.clear();
        mesink_(
            [](int32_t level, const char* text, void* user) {
                static_cast<std::vector<Message>*>(user)->push_back({level, text});
            },
            &said_);
        baseinitC();
        featinitC();
        rearmImport();
        bool returned = true;
        try {
            IMPSUB(path(dataset), path("in.e00"), kind);
        } catch (...) {
            returned = false;
        }
        releaseImport();
        featendC();
        baseendC();
        mesink_(nullptr, nullptr);
        return returned;
    }
    std::vector<Message> said_;
};

TEST_F(Driver, AForcedKindMustGoWithTheFile) {
    EXPECT_TRUE(drive(14));
    EXPECT_EQ(said_,
              (std::vector<Message>{
                  {QX_NONFATAL, "Auto option is not allowed with importing Coverage E00 file"}}));
    EXPECT_TRUE(drive(2));
    EXPECT_EQ(said_[0].text,
              "Info Datafile option is not allowed with importing Coverage E00 file");
    for (const int32_t kind : {16, -1}) {
        EXPECT_FALSE(drive(kind));
        EXPECT_EQ(said_, (std::vector<Message>{{QX_FATAL, "BAD TYPE CODE (IMPSUB)"}}));
    }
    EXPECT_FALSE(std::filesystem::exists(path("DS")));
    // The kind that fits is made without a word.
    EXPECT_TRUE(drive(1));
    EXPECT_TRUE(said_.empty());
    EXPECT_EQ(records("arc").size(), 1U);
}

TEST_F(Driver, ASecondImportIsLikeTheFirst) {
    ASSERT_EQ(import("ONE"), 1);
    given("EXP  0 X\n" + std::string(kArcs), "cut.e00");
    EXPECT_EQ(import("CUT", "cut.e00"), 0);
    ASSERT_EQ(import("TWO"), 1);
    EXPECT_EQ(messages(), (std::vector<Message>{{QX_INFORM, " Creating Coverage " + path("TWO")}}));
    EXPECT_EQ(records("arc", "CUT"), records("arc", "ONE"));
    for (const char* file : {"coverage", "arc"}) {
        const std::string bytes = fileBytes(path(std::string("ONE/") + file));
        EXPECT_FALSE(bytes.empty());
        EXPECT_EQ(bytes, fileBytes(path(std::string("TWO/") + file)));
    }
    // The dataset is there: it is not touched.
    EXPECT_EQ(import("TWO"), 0);
    EXPECT_EQ(complaints(), std::vector<std::string>{"Unable to create coverage."});
    EXPECT_EQ(records("arc", "TWO").size(), 1U);
}

TEST_F(Driver, SectionsFollowOneAnotherAsTheyCome) {
    struct Case {
        std::string lines;
        int32_t result;
        std::size_t arcs;
        std::vector<std::string> errors;
    };
    const Case cases[] = {
        {"EOS\nthis is not read\nARC  9\n", 1, 0, {}},
        {std::string(kArcs) + kArcs + "EOS\n", 1, 2, {}},
        // A line of a section that is passed over is taken for a header.
        {std::string(kArcs) + "passed over\nLAB  7\n",
         0,
         1,
         {"The EXPORT file is not compatable with this version of IMPORT"}},
        // A table file passes over all but its tables.
        {"IFO  2\nEOI\n" + std::string(kArcs) + "EOS\n", 1, 0, {}},
    };
    int number = 0;
    for (const Case& each : cases) {
        given("EXP  0 X\n" + each.lines);
        const std::string dataset = "DS" + std::to_string(++number);
        EXPECT_EQ(import(dataset), each.result) << each.lines;
        std::vector<std::string> errors;
        for (const Message& message : messages()) {
            if (message.level > QX_WARN) errors.push_back(message.text);
        }
        EXPECT_EQ(errors, each.errors) << each.lines;
        const std::size_t arcs =
            std::filesystem::exists(path(dataset)) ? records("arc", dataset).size() : 0;
        EXPECT_EQ(arcs, each.arcs) << each.lines;
    }
    given("EXP  0 X\nEOS\n");
    EXPECT_EQ(import("NONE"), 1);
    EXPECT_EQ(messages(), (std::vector<Message>{{QX_INFORM, " Creating  " + path("NONE")}}));
}

TEST_F(Driver, NamesThatCannotBeAreRefused) {
    const std::string longFile(QX_NAME_LENGTH + 1, 'x');
    const std::string longName(QX_DATASET_LENGTH + 1, 'x');
    const std::string file = path("in.e00");
    const std::string dataset = path("DS");
    const std::string link = path("link");
    std::filesystem::create_directory_symlink(path("elsewhere"), link);
    const std::string emptyDataset = "Dataset name is empty (IMPSUB)";
    const struct {
        const char* file;
        const char* dataset;
        std::string message;
    } cases[] = {
        {file.c_str(), "", emptyDataset},
        {file.c_str(), "   ", emptyDataset},
        {file.c_str(), nullptr, emptyDataset},
        {file.c_str(), longName.c_str(), "Dataset name is too long (IMPSUB)"},
        {file.c_str(), link.c_str(), link + " is a symbolic link (IMPSUB)"},
        {"", dataset.c_str(), "Could not open import file.."},
        {nullptr, dataset.c_str(), "Could not open import file.."},
        {longFile.c_str(), dataset.c_str(), "Could not open import file.."},
    };
    for (const auto& each : cases) {
        std::vector<std::string> said;
        mesink_(
            [](int32_t, const char* text, void* user) {
                static_cast<std::vector<std::string>*>(user)->emplace_back(text);
            },
            &said);
        EXPECT_EQ(ImportFile(each.file, each.dataset, 1), 0);
        EXPECT_EQ(said, std::vector<std::string>{each.message});
    }
    mesink_(nullptr, nullptr);
}

TEST_F(Driver, EveryFileOfTheLongestNameFits) {
    std::string deep = "deep";
    while (path(deep).size() < QX_DATASET_LENGTH) {
        std::filesystem::create_directory(path(deep));
        const std::size_t left = QX_DATASET_LENGTH - path(deep).size();
        deep += '/' + std::string(left > 200 ? 100 : left - 1, 'x');
    }
    ASSERT_EQ(path(deep).size(), std::size_t{QX_DATASET_LENGTH});
    for (const char* name : {"cover_indexes", "ifo_suffixes", "tin_whole", "map", "stk_tables"}) {
        const std::string file = INTAKE_SOURCE_DIR "/fuzz/seeds/import/" + std::string(name);
        EXPECT_EQ(import(deep, file + ".e00"), 1) << name;
        EXPECT_EQ(complaints(), std::vector<std::string>()) << name;
        std::filesystem::remove_all(path(deep));
    }
}

TEST_F(Driver, OneImportAtATime) {
    struct Host {
        std::string file;
        std::string dataset;
        std::vector<std::string> said;
        int32_t inner = -1;
        int32_t other = -1;
    } host{path("in.e00"), path("INNER"), {}};
    mesink_(
        [](int32_t, const char* text, void* user) {
            Host& host = *static_cast<Host*>(user);
            host.said.emplace_back(text);
            const auto call = [&] {
                return ImportFile(host.file.c_str(), host.dataset.c_str(), 1);
            };
            host.inner = call();
            if (host.said.size() != 2) return;
            std::thread([&] { host.other = call(); }).join();
        },
        &host);
    EXPECT_EQ(ImportFile(host.file.c_str(), path("DS").c_str(), 1), 1);
    mesink_(nullptr, nullptr);
    EXPECT_EQ(host.inner, 0);
    EXPECT_EQ(host.other, 0);
    const std::string refused = "Another import is running in this process.";
    EXPECT_EQ(host.said,
              (std::vector<std::string>{" Creating Coverage " + path("DS"), refused, refused}));
    EXPECT_EQ(records("arc").size(), 1U);
    EXPECT_FALSE(std::filesystem::exists(host.dataset));
}

TEST_F(Driver, TheHostIsLeftAsItIs) {
    const auto host = [] {
        std::string state = setlocale(LC_ALL, nullptr);
        state += std::filesystem::current_path().string();
        for (int number = 1; number < NSIG; ++number) {
            struct sigaction action {};
            sigaction(number, nullptr, &action);
            state += ' ' + std::to_string(reinterpret_cast<uintptr_t>(action.sa_handler));
        }
        sigset_t blocked;
        pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
        for (int number = 1; number < NSIG; ++number)
            state += sigismember(&blocked, number) == 1 ? '1' : '0';
        const mode_t mask = umask(0);
        umask(mask);
        return state + ' ' + std::to_string(mask);
    };
    given("no interchange file", "other.e00");
    given("EXP  0 X\n" + std::string(kArcs), "cut.e00");
    const auto handler = std::signal(SIGUSR1, [](int) {});
    const std::string before = host();
    EXPECT_EQ(import(), 1);
    EXPECT_EQ(import("NONE", "other.e00"), 0);
    EXPECT_EQ(import("CUT", "cut.e00"), 0);
    EXPECT_EQ(import("FONT", INTAKE_SOURCE_DIR "/samples/pfont.e00"), 1);
    EXPECT_EQ(host(), before);
    std::signal(SIGUSR1, handler);
}

TEST_F(Driver, AnExceptionIsToldAndKeepsWhatWasWritten) {
    // The host's function fails in the middle of the import.
    prgset_(
        [](int32_t event, const char*, int64_t, int64_t, void*) {
            if (event == QX_SECTION_ENDS) throw std::bad_alloc();
        },
        nullptr);
    EXPECT_EQ(import(), 0);
    EXPECT_EQ(complaints(), std::vector<std::string>{"The import ended: out of memory"});
    EXPECT_EQ(records("arc").size(), 1U);
    prgset_([](int32_t, const char*, int64_t, int64_t,
               void*) { throw std::runtime_error("a %1% of the host's"); },
            nullptr);
    EXPECT_EQ(import("OTHER"), 0);
    EXPECT_EQ(complaints(), std::vector<std::string>{"The import ended: a %1% of the host's"});
    prgset_(nullptr, nullptr);
}

TEST_F(Driver, AWriteThatFailsIsTold) {
    std::string arcs;
    for (int count = 0; count < 4000; ++count) arcs += std::string(kArcs).substr(7, 100);
    given("EXP  0 X\nARC  2\n" + arcs + std::string(kArcs).substr(7) + "EOS\n");
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit little{16384, before.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &little);
    const int32_t result = import();
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(messages().back(),
              (Message{QX_ERROR, "Could not write " + path("DS/arc") + ": File too large"}));
    EXPECT_EQ(complaints().size(), 1U);
    // What reached the file can be read.
    EXPECT_GT(records("arc").size(), 300U);
}

TEST(Companions, OneThatDoesNotLoadIsToldAndNothingElse) {
    const std::string text = "unable to load Lindmere support dynamic link libraries";
    for (const char* CompanionNames::*missing :
         {&CompanionNames::base, &CompanionNames::feature, &CompanionNames::grid}) {
        CompanionNames names;
        names.*missing = "qxnone.DLL";
        ::testing::internal::CaptureStderr();
        { const Companions box(0, names); }
        EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Intakedl: " + text + "\n");
        ::testing::internal::CaptureStdout();
        { const Companions printed(7, names); }
        EXPECT_EQ(::testing::internal::GetCapturedStdout(), text);
    }
    ::testing::internal::CaptureStderr();
    { const Companions all(0); }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(SectionTable, FindsEachSectionByItsNumber) {
    for (std::size_t row = 0; row < sectionTable().size(); ++row) {
        EXPECT_EQ(findSectionRow(kSectionCodes[row].number), &sectionTable()[row]);
    }
    EXPECT_EQ(findSectionRow(1000), nullptr);
}

}  // namespace
}  // namespace intake::testing
