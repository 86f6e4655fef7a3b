#include <map>
#include <sstream>

#include "app/intake/commands/guide.h"
#include "app/intake/manual/manual.h"
#include "tests/support/program_test.h"

namespace intake::testing {
namespace {

using Manual = ProgramTest;
using Entries = std::map<std::string, std::string>;

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
}

// What the help lists: "-h,--help", "--kind LABEL", "FILE" or "import", and the words on it. The
// words "TEXT", "REQUIRED" and "..." behind a name are the help's own.
Entries ofHelp(const std::string& help) {
    Entries entries;
    std::istringstream lines(help.substr(help.find("\nUsage: ") + 1));
    std::string line;
    std::string last;
    while (std::getline(lines, line)) {
        if (line.starts_with("                ") && !last.empty()) {
            entries[last] += line.substr(line.find_first_not_of(' '));
        } else if (line.starts_with("  ")) {
            std::size_t gap = line.find("  ", 2);
            last = line.substr(2, gap == std::string::npos ? gap : gap - 2);
            for (const char* own : {" REQUIRED", " ...", " TEXT"}) {
                if (const std::size_t at = last.find(own); at != std::string::npos) last.erase(at);
            }
            gap = line.find_first_not_of(' ', gap);
            entries[last] = gap == std::string::npos ? "" : line.substr(gap);
        }
    }
    return entries;
}

// What a page lists under these headings.
Entries ofPage(std::string page) {
    for (const char* mark : {"\\fB", "\\fI", "\\fR"}) replaceAll(page, mark, "");
    replaceAll(page, "\\-", "-");
    replaceAll(page, "\\&", "");
    replaceAll(page, "\\e", "\\");
    Entries entries;
    std::istringstream lines(page);
    std::string line;
    bool listed = false;
    while (std::getline(lines, line)) {
        if (line.starts_with(".SH ")) {
            listed = line == ".SH COMMANDS" || line == ".SH ARGUMENTS" || line == ".SH OPTIONS";
        } else if (listed && line == ".TP") {
            std::string name;
            std::getline(lines, name);
            replaceAll(name, ", ", ",");
            std::getline(lines, entries[name]);
        }
    }
    return entries;
}

TEST_F(Manual, PagesSayWhatTheHelpSays) {
    const std::vector<program::Usage> usages = program::usageOfAll();
    for (std::size_t at = 0; at < usages.size(); ++at) {
        const std::string& command = usages[at].command;
        const auto help = ofHelp(run({"help", command.empty() ? "" : command}).output);
        EXPECT_GT(help.size(), 1U) << command;
        EXPECT_EQ(ofPage(program::manPage(usages, at)), help) << command;
        EXPECT_NE(program::guideTo(command), "") << command;
    }
}

TEST_F(Manual, EveryExampleNamesACommandAndOptionsThatThereAre) {
    const std::vector<program::Usage> usages = program::usageOfAll();
    for (const program::Example& example : program::kExamples) {
        const auto help = run({"help", std::string(example.command())});
        ASSERT_EQ(help.status, 0) << example.line;
        std::istringstream words(example.line);
        for (std::string word; words >> word;) {
            if (word.starts_with("--")) {
                EXPECT_NE(help.output.find("  " + word), std::string::npos) << example.line;
            }
        }
    }
    for (std::size_t at = 1; at < usages.size(); ++at) {
        EXPECT_NE(program::manPage(usages, at).find(".SH EXAMPLES"), std::string::npos);
    }
}

}  // namespace
}  // namespace intake::testing
