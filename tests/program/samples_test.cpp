#include <map>

#include "tests/support/program_test.h"

namespace intake::testing {
namespace {

using Counts = std::map<std::string, std::size_t>;

// What a line of the dump counts for among the classes of an expectation; nothing for a class that
// expectations do not count.
std::pair<std::string, std::size_t> countOf(const json& line, const std::string& grid) {
    const std::string name = line["class"];
    static const std::map<std::string, std::string> kRecords = {
        {"arc", "ARC"},       {"label", "LAB"},      {"centroid", "CNT"},
        {"tolerance", "TOL"}, {"symbol", "SET"},     {"symbolSet", "SET.HEAD"},
        {"font", "FNT.HEAD"}, {"fontRecord", "FNT"}, {"annotation", "ANN.TXT"}};
    if (const auto found = kRecords.find(name); found != kRecords.end()) return {found->second, 1};
    if (name == "polygon") return {line["source"], 1};
    if (name == "textFile") return {"TEXT", line["lines"].size()};
    if (name == "log") return {"LOG" + grid, line["lines"].size()};
    if (name == "projection") return {"PRJ" + grid, line["lines"].size()};
    if (name == "row") return {"GRD" + grid, 1};
    if (name == "grid") return {"GRD.HEAD" + grid, 1};
    if (name == "stack") return {"STK", line["members"].size()};
    if (name == "map") return {"MAP", line["elements"].size()};
    if (name == "plotRecord") return {"PLT/" + line["element"].get<std::string>(), 1};
    if (name == "table") return {"ITEMS/" + line["name"].get<std::string>(), line["items"].size()};
    if (name == "record") return {"TABLE/" + line["table"].get<std::string>(), 1};
    return {};
}

Counts countsOf(const std::string& dump) {
    Counts counts;
    std::string grid;
    std::istringstream lines(dump);
    for (std::string text; std::getline(lines, text);) {
        const json line = json::parse(text);
        if (line["class"] == "dataset" && line["kind"] == "Grid") {
            grid = "/" + line["name"].get<std::string>();
        }
        const auto [key, count] = countOf(line, grid);
        if (!key.empty()) counts[key] += count;
    }
    return counts;
}

// The classes that countOf knows, of an expectation.
Counts expectedCounts(const json& content) {
    constexpr std::string_view kUncounted[] = {"COVERAGE", "EXT/", "INDEX/",    "SIN",
                                               "MTD",      "IMD/", "PLT.TITLE", "PLT.BOUNDS"};
    Counts counts;
    for (const auto& [key, description] : content.items()) {
        const bool counted = std::none_of(
            std::begin(kUncounted), std::end(kUncounted),
            [key = std::string_view(key)](std::string_view each) { return key.starts_with(each); });
        if (counted) counts[key] = description["count"];
    }
    return counts;
}

class Samples : public ProgramTest {
  protected:
    void check(const std::filesystem::path& manifest) {
        const json expected = json::parse(fileBytes(manifest.string()));
        const std::string name = expected["dataset"];
        const std::string file = expected["file"];
        const auto outcome =
            run({"import", "--json", (manifest.parent_path() / file).string(), "@" + name});
        EXPECT_EQ(outcome.status, 0);
        const json told = outcome.object();
        EXPECT_EQ(told["kind"], expected["kind"]);
        EXPECT_EQ(told["result"], expected["result"]);
        json messages = expected["messages"];
        for (json& message : messages) {
            std::string text = message["text"];
            if (const auto place = text.find("{DS}"); place != text.npos) {
                text.replace(place, 4, path(name));
            }
            message["text"] = text;
        }
        EXPECT_EQ(told["messages"], messages);
        const auto dump = run({"dump", "@" + name, "--kind", expected["kind"]});
        EXPECT_EQ(dump.status, 0) << dump.errors;
        EXPECT_EQ(countsOf(dump.output), expectedCounts(expected["content"]));
    }
};

TEST_F(Samples, ComeInAsTheyAreExpected) {
    int number = 0;
    for (const auto& each : std::filesystem::directory_iterator(INTAKE_SOURCE_DIR "/samples")) {
        const std::string name = each.path().filename().string();
        if (!name.ends_with(".expect.json")) continue;
        SCOPED_TRACE(name);
        check(each.path());
        ++number;
    }
    EXPECT_GE(number, 9);
}

}  // namespace
}  // namespace intake::testing
