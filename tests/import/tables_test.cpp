#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "host/cpp/call.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "stream/reader_state.h"
#include "tables/sections.h"
#include "tables/table.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using qx::call;

struct Item {
    std::string name;
    int width;
    int start;
    int type;
    int outputWidth = 10;
    int decimals = -1;
    int number = 1;
    char mark = '-';
};

std::string itemLine(const Item& item) {
    char line[100];
    std::snprintf(line, sizeof line, "%-16s%3d-1%4d*-1%4d%2d%2d*-1  -1  -1-1%-16s%4d%c\n",
                  item.name.c_str(), item.width, item.start, item.outputWidth, item.decimals,
                  item.type, "", item.number, item.mark);
    return line;
}

std::string table(const std::string& name, int stored, int records, const std::vector<Item>& items,
                  const std::string& external = "") {
    char line[100];
    std::snprintf(line, sizeof line, "%-32s%2s%4d%4d%4d%10d\n", name.c_str(), external.c_str(),
                  stored, static_cast<int>(items.size()), 0, records);
    std::string text = line;
    for (const Item& item : items) text += itemLine(item);
    return text;
}

// A record's text in lines of 80 columns, from its fields: the width, negative for one that stands
// to the left, and the text.
std::string record(const std::vector<std::pair<int, std::string>>& fields) {
    std::string text;
    for (const auto& [width, field] : fields) {
        const std::string blanks(static_cast<std::size_t>(std::abs(width)) - field.size(), ' ');
        text += width < 0 ? field + blanks : blanks + field;
    }
    for (std::size_t end = 80; end < text.size(); end += 81) text.insert(end, "\n");
    return text + "\n";
}

const std::string kCoverage =
    "EXP  0 X\nARC  2\n        -1         0         0         0         0         0         0\n";
const std::string kCurrent = kCoverage + "IFO  2\n";
const std::string kOlder = kCoverage + "IFO  1\n";
constexpr char kEnd[] = "EOI\nEOS\n";
constexpr char kOlderEnd[] = "EOS\nEOS\n";

class Tables : public ImportTest {
  protected:
    std::vector<json> values(const std::string& text, const std::string& dataset = "DS") {
        given(text);
        EXPECT_EQ(import(dataset), 1);
        std::vector<json> result;
        for (const json& record : records("record", dataset)) result.push_back(record["values"]);
        return result;
    }
    std::vector<std::string> texts() const {
        std::vector<std::string> result;
        for (const Message& message : messages()) result.push_back(message.text);
        return result;
    }
    int32_t open(const std::string& name) const {
        int32_t handle = 0;
        int32_t count = 0;
        int32_t bytes = 0;
        int32_t status = 0;
        const std::string info = path("info");
        call(infopn_, std::string_view(name), std::string_view(info), "", 1, handle, count, bytes,
             status);
        EXPECT_EQ(status, 0);
        return handle;
    }
};

const std::vector<Item> kEveryKind = {
    {"SHORT", 2, 1, 5},
    {"LONG", 4, 3, 5},
    {"SINGLE", 4, 7, 6},
    {"DOUBLE", 8, 11, 6},
    {"NUMBER", 10, 19, 4, 10, 3},
    {"DAY", 8, 29, 1},
    {"CODE", 5, 37, 3, 5, -1, 7, 'I'},
    {"NAME", 30, 42, 2},
    {"SHARED", 8, 71, 6},  // takes the last byte of NAME too
    {"FIRST", 1, 42, 2, 1, -1, -1, 'I'},
};
const std::string kTwoRecords = record({{6, "-123"},
                                        {11, "1234567890"},
                                        {14, "1.2345678E+02"},
                                        {24, "1.23456789012345678E+02"},
                                        {14, "1234.50"},
                                        {8, "20180621"},
                                        {5, "42"},
                                        {-30, "A name of thirty characters al"},
                                        {24, "5.00000000000000000E-01"}}) +
                                record({{6, "5"},
                                        {11, "-6"},
                                        {14, "12.3450"},
                                        {24, "1.23456789012345"},
                                        {14, "9999"},
                                        {8, "20201231"},
                                        {5, "7"},
                                        {-30, "B"},
                                        {24, ""}});

TEST_F(Tables, HoldEveryKindOfItem) {
    const auto found =
        values(kCurrent + table("SRC.PAT", 9, 2, kEveryKind, "XX") + kTwoRecords + kEnd);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0], json::parse(R"({"SHORT":-123,"LONG":1234567890,
        "SINGLE":123.45677947998047,"DOUBLE":123.45678901234568,"NUMBER":123.45,
        "DAY":"20180621","CODE":"   42","NAME":"A name of thirty characters al","SHARED":0.5,
        "FIRST":"A"})"));
    const json line = records("table")[0];
    EXPECT_EQ(line["external"], true);
    EXPECT_EQ(line["items"][9]["number"], -1);
    EXPECT_EQ(line["items"][0]["kept"], json::parse("[-1,4,0,-1,-1,-1]"));

    // Through the index: one entry a record, in the order of the keys.
    const int32_t handle = open("DS.PAT");
    int32_t first = 0;
    int32_t count = 0;
    int32_t record = 0;
    int32_t status = 0;
    for (const int32_t item : {7, 10}) {
        EXPECT_EQ(line["items"][static_cast<std::size_t>(item - 1)]["indexed"], true);
        const std::string_view key = item == 7 ? "   42" : "B";
        call(inxfnd_, handle, item, 0.0, key, first, count, status);
        EXPECT_EQ(std::tuple(status, first, count), std::tuple(0, item == 7 ? 2 : 2, 1));
        call(inxget_, handle, item, first, record, status);
        EXPECT_EQ(record, item == 7 ? 1 : 2);
    }
    call(inxfnd_, handle, 1, 0.0, "", first, count, status);
    EXPECT_NE(status, 0);
    call(infcls_, handle);
}

// By docs/workspace-format.md and nothing else.
TEST_F(Tables, AreReadByHandFromTheStoredBytes) {
    values(kCurrent + table("SRC.PAT", 9, 2, kEveryKind, "XX") + kTwoRecords + kEnd);
    const auto number = [](const std::string& bytes, std::size_t offset, std::size_t width) {
        uint64_t value = 0;
        for (std::size_t byte = 0; byte < width; ++byte) {
            value = value << 8 | static_cast<unsigned char>(bytes.at(offset + byte));
        }
        return value;
    };
    const std::string catalog = fileBytes(path("info/catalog"));
    EXPECT_EQ(catalog.substr(0, 8), "QXTABLES");
    const std::string name = "info/table" + std::to_string(number(catalog, 20, 4));
    // The number was taken first, without a name.
    EXPECT_EQ(number(catalog, 24, 4), 0U);
    EXPECT_EQ(number(catalog, 28, 4), number(catalog, 20, 4));
    EXPECT_EQ(catalog.substr(36, number(catalog, 32, 4)), "DS.PAT");
    const std::string definition = fileBytes(path(name + ".def"));
    const std::size_t stored = number(definition, 16, 4);
    EXPECT_EQ(number(definition, 12, 4), 78U);
    EXPECT_EQ(stored, 86U);
    EXPECT_EQ(definition.substr(38, number(definition, 34, 4)), "DS/pat.dat");
    const std::string records = fileBytes(path("DS/pat.dat"));
    EXPECT_EQ(records.size(), 128 + 2 * stored);
    const std::string second = records.substr(128 + stored);
    EXPECT_EQ(number(second, 0, 2), 5U);
    EXPECT_EQ(static_cast<int32_t>(number(second, 2, 4)), -6);
    EXPECT_EQ(std::bit_cast<float>(static_cast<uint32_t>(number(second, 6, 4))), 1.2345F);
    EXPECT_EQ(second.substr(18, 24), "     0.00020201231    7B");
    EXPECT_EQ(std::bit_cast<double>(number(records.substr(128), 78, 8)), 0.5);
    const std::string index = fileBytes(path(name + ".index7"));
    EXPECT_EQ(index.substr(128, 5), "    7");
    EXPECT_EQ(number(index, 133, 4), 2U);
}

TEST_F(Tables, OfTheOlderFormAreReadAtTheirDisplayWidths) {
    const std::vector<Item> items = {{"CODE", 6, 1, 3},        {"NAME", 4, 7, 2},
                                     {"COUNT", 2, 11, 5, 4},   {"AREA", 8, 13, 6, 10, 3},
                                     {"TEXT", 8, 21, 4, 8, 2}, {"MORE", 100, 29, 2}};
    const auto found =
        values(kOlder + table("SRC.AAT", 6, 2, items, "XX") + " 161\n" +
               record({{16, "42"},
                       {-5, " ab"},
                       {4, "-7"},
                       {10, "12.5"},
                       {8, "1234.567"},
                       {100, std::string(100, 'x')},
                       {20, ""}}) +
               record({{16, "7"},
                       {-5, " cd"},
                       {4, "8"},
                       {10, "12345"},
                       {8, "-1250"},
                       {100, std::string(100, 'y')},
                       {20, ""}}) +
               table("SRC.EMPTY", 0, 1, {}) + "   0\na line all the same\n" + kOlderEnd);
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0], json({{"CODE", "    42"},
                              {"NAME", "ab"},
                              {"COUNT", -7},
                              {"AREA", 12.5},
                              {"TEXT", 1234.57},
                              {"MORE", std::string(100, 'x')}}));
    EXPECT_EQ(found[1]["AREA"], 12.345);
    EXPECT_EQ(found[1]["TEXT"], -12.5);
    EXPECT_EQ(records("table")[0]["name"], "DS.AAT");
}

TEST_F(Tables, TakeTheNameOfTheTarget) {
    const auto itemsOf = [](const std::string& source) {
        return std::vector<Item>{
            {source + "#", 4, 1, 5}, {source + "-ID", 4, 5, 5}, {source + "X", 4, 9, 5}};
    };
    given(kCurrent + table("SRC.AAT", 0, 0, itemsOf("SRC"), "XX") +
          table("SRC.PATZONES", 0, 0, itemsOf("SRC"), "XX") +
          table("A.B.XYZ", 0, 0, itemsOf("A.B"), "XX") + kEnd);
    ASSERT_EQ(import("LONG_enough_for_a_name"), 1);
    const std::string dataset = "LONG_enough_for_a_name";
    const auto tables = records("table", dataset);
    ASSERT_EQ(tables.size(), 3U);
    EXPECT_EQ(tables[0]["name"], dataset + ".AAT");
    EXPECT_EQ(tables[0]["items"][0]["name"], dataset + "#");
    EXPECT_EQ(tables[0]["items"][1]["name"], dataset + "-ID");
    EXPECT_EQ(tables[0]["items"][2]["name"], "SRCX");
    EXPECT_EQ(tables[1]["items"][0]["name"], "SRC#");
    EXPECT_TRUE(std::filesystem::exists(path(dataset + "/pat.dat.ZONES")));
    EXPECT_EQ(tables[2]["name"], dataset + ".XYZ");
    EXPECT_EQ(tables[2]["external"], false);
    EXPECT_EQ(tables[2]["items"][1]["name"], dataset + "-ID");
    // Names lead nowhere.
    given("EXP  0 X\nIFO  2\n" + table("../../X.DAT", 0, 0, {}) + kEnd);
    ASSERT_EQ(import("T.DAT"), 1);
    EXPECT_EQ(records("table", "T.DAT")[0]["name"], "T.DAT");
    ASSERT_EQ(import("T.DAT"), 1);
    EXPECT_EQ(complaints(), std::vector<std::string>{"T.DAT already exists"});
}

TEST_F(Tables, OnlyANameThatIsTakenIsToldAsOne) {
    namespace fs = std::filesystem;
    const std::string text = "EXP  0 X\nIFO  2\n" + table("SRC.DAT", 0, 0, {}) + kEnd;
    struct Case {
        const char* workspace;
        std::string path;    // in the workspace, of what could not be written
        std::string reason;  // of the system
    };
    const Case cases[] = {{"nowhere", "info", "there is no folder " + path("nowhere")},
                          {"file", "info", "File exists"},
                          {"locked", "info/lock", "Is a directory"},
                          {"damaged", "info/catalog", "it is damaged"}};
    for (const char* folder : {"file", "locked/info/lock", "damaged/info"}) {
        fs::create_directories(path(folder));
    }
    for (const Case& each : cases) {
        const std::string workspace = each.workspace;
        if (workspace == "file") writeFile(path("file/info"), "");
        if (workspace == "damaged") writeFile(path("damaged/info/catalog"), "QXTABLES?");
        given(text);
        EXPECT_EQ(import(workspace + "/TAB"), 0) << workspace;
        const auto told = complaints();
        EXPECT_EQ(told.front(), "Unable to create table TAB.") << workspace;
        EXPECT_EQ(told.back(),
                  "Could not write " + path(workspace + '/' + each.path) + ": " + each.reason);
        // The tables of a coverage are refused in the same way, and its arcs stay.
        if (workspace == "nowhere" || workspace == "file") continue;
        given(kCurrent + table("SRC.AAT", 0, 0, {}) + kEnd);
        EXPECT_EQ(import(workspace + "/DS"), 0) << workspace;
        EXPECT_EQ(complaints().front(), "Unable to create table DS.AAT.") << workspace;
    }
}

TEST_F(Tables, TellWhatCannotBeEncodedAndGoOn) {
    const std::vector<Item> items = {{"SHORT", 2, 1, 5}, {"ODD", 4, 3, 7}, {"NAME", 2, 7, 2}};
    // Nothing of the odd item is read; the text goes on where the item before took it.
    const auto found = values(kCurrent + table("SRC.DAT", 3, 1, items) + " 99999......ab\n" + kEnd);
    const std::vector<std::string> remedy = {
        "This is probably caused by an invalid item definition, or a item not",
        "wide enough for the item value."};
    const std::string end = " item in the 1st record for the INFO file DS.DAT.";
    EXPECT_EQ(texts(),
              (std::vector<std::string>{" Creating Coverage " + path("DS"),
                                        "\nUnable to encode the 1st" + end, remedy[0], remedy[1],
                                        "\nUnable to encode the 2nd" + end, remedy[0], remedy[1]}));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0]["SHORT"], 0);
    EXPECT_EQ(found[0]["NAME"], "ab");
    // Each record begins afresh: an odd item at its front takes nothing of it.
    const auto front =
        values(kCurrent + table("SRC.DAT", 2, 2, {{"ODD", 4, 1, 7}, {"NAME", 2, 5, 2}}) +
                   "ab\ncd\n" + kEnd,
               "FRONT");
    ASSERT_EQ(front.size(), 2U);
    EXPECT_EQ(front[1]["NAME"], "cd");

    const std::pair<int32_t, const char*> ordinals[] = {{1, "1st"},
                                                        {22, "22nd"},
                                                        {11, "11th"},
                                                        {112, "112th"},
                                                        {103, "103rd"},
                                                        {-21, "-21st"},
                                                        {INT32_MIN, "-2147483648th"}};
    for (const auto& [number, text] : ordinals) {
        FixedText<16> ordinal;
        ORDNAM(number, ordinal);
        EXPECT_EQ(ordinal.view(), text);
    }
}

TEST_F(Tables, FailuresEndTheImport) {
    const std::vector<Item> item = {{"A", 4, 1, 5}};
    const std::string one = "          1\n";
    struct Case {
        std::string text;
        std::string message;
    };
    const std::vector<Case> cases = {
        {kCurrent + table("S.A", 1, 1, {{"A", 4, 0, 5}}), "Error in adding item (IMPINF)"},
        {kCurrent + table("S.A", 1, 1, {{"A", -4, 1, 5}}), "Error in adding item (IMPINF)"},
        {kOlder + table("S.A", 1, 1, {{"A", 4, 0, 5}}), "Error in adding item (IM1INF)"},
        {kCurrent + table("S.A", 2, 1, item), "Invalid item count (IMPINF)"},
        {kOlder + table("S.A", 2, 1, item), "Invalid item count (IM1INF)"},
        {kCurrent + table("S.A", 1, -1, item), "Invalid record count (IMPINF)"},
        {kCurrent + table("S.A", 0, 1000001, {}), "Invalid record count (IMPINF)"},
        {kOlder + table("S.A", 0, 1000001, {}) + "   0\n", "Invalid record count (IM1INF)"},
        {kOlder + table("S.A", 1, 1000001, {{"A", 0, 1, 2}}) + " -79\n",
         "Invalid record count (IM1INF)"},
        {kOlder + table("S.STK", 1, 1, item, "XX"), "Illegal coverage filename (IM1INF)"},
        {kOlder + table("NOPOINT", 1, 1, item, "XX"), "Illegal coverage filename (IM1INF)"},
        {kOlder + table("S.A", 1, 1, {{"A", 4, 1, 7}}) + "  10\n" + one,
         "Illegal item type (IM1INF)"},
        {kOlder + table("S.A", 1, 1, item) + "  10\n1234567890\n",
         "Could not read \"1234567890\" in columns 1 to 10 of line 8 of " + path("in.e00")},
        {kCurrent + table("S.A", 2, 1, {{"N", 76, 1, 2}, {"A", 4, 77, 5}}) +
             record({{76, std::string(76, 'n')}, {-11, "1234x6"}}),
         "Could not read \"1234x6\" in columns 77 to 87 of line 8 of " + path("in.e00")},
    };
    int number = 0;
    for (const Case& each : cases) {
        given(each.text + kEnd);
        EXPECT_EQ(import("DS" + std::to_string(++number)), 0) << each.text;
        EXPECT_EQ(complaints(), std::vector<std::string>{each.message});
    }
    // What was read before a failure is there, and the count is right.
    given(kCurrent + table("S.A", 1, 3, item, "XX") + one + one + "          x\n" + kEnd);
    EXPECT_EQ(import("CUT"), 0);
    EXPECT_EQ(records("table", "CUT")[0]["recordCount"], 2);
    EXPECT_EQ(records("record", "CUT").size(), 2U);
}

TEST_F(Tables, OfTargetsWithoutTablesEndTheImport) {
    const std::pair<const char*, const char*> cases[] = {{"IFO  2\n", "Bad TYPE code (IMPINF)"},
                                                         {"IFO  1\n", "Bad TYPE code (IM1INF)"},
                                                         {"IMD  2\n", "Bad TYPE code (IMPIMD)"}};
    int number = 0;
    for (const auto& [header, message] : cases) {
        given(std::string("EXP  0 X\nCS7  2\nEOS\n") + header + " X\n" + kEnd);
        EXPECT_EQ(import("SET" + std::to_string(++number)), 0);
        ASSERT_FALSE(complaints().empty());
        EXPECT_EQ(complaints().back(), message);
    }
}

TEST_F(Tables, OfGridStatisticsTakeTheShapeOfTheirWorkspace) {
    // From the second record on each item is read at the width of the last one.
    const std::string text =
        "EXP  0 X\nGRD  2\n         1         1 2-0.34028234663853E+39\n"
        " 0.10000000000000E+01 0.10000000000000E+01\n 0.00000000000000E+00 0.00000000000000E+00\n"
        " 0.10000000000000E+01 0.10000000000000E+01\n 0.5000000E+00\nEOG\nIFO  2\n" +
        table("SRC.STA", 2, 2, {{"MIN", 4, 1, 6, 12, 3}, {"MAX", 8, 5, 6, 18, 5}}, "XX") +
        " 1.0000000E-01 2.00000000000000000E-01\n"
        " 3.00000000000000000E-01 4.00000000000000000E-01\n" +
        kEnd;
    const auto wide = values(text, "WIDE");
    ASSERT_EQ(wide.size(), 2U);
    EXPECT_EQ(wide[0], json({{"MIN", 0.1}, {"MAX", 0.2}}));
    EXPECT_EQ(wide[1], json({{"MIN", 0.3}, {"MAX", 0.4}}));
    const json items = records("table", "WIDE")[0]["items"];
    EXPECT_EQ(items[1]["start"], 9);
    EXPECT_EQ(items[0]["outputWidth"], 15);

    std::filesystem::create_directory(path("narrow"));
    std::filesystem::create_directory(path("narrow/info"));
    writeFile(path("narrow/info/catalog"), std::string("QXTABLES\0\0\0\2\0\0\0\1\0\0\0\4", 20));
    const auto narrow = values(text, "narrow/GRID");
    ASSERT_EQ(narrow.size(), 2U);
    EXPECT_EQ(narrow[1]["MAX"], static_cast<double>(0.4F));
    EXPECT_EQ(records("table", "narrow/GRID")[0]["items"][1]["start"], 5);
}

// The length of the record text stands in a file without a header line, also where its tables have
// the current form.
TEST_F(Tables, WithoutAFileHeaderEndAtTheEndOfTheFile) {
    const auto found = values(
        "ARC  1\n         1         1         1         1         1         1         1\n"
        " 1.0000000E+00 2.0000000E+00\n"
        "        -1         0         0         0         0         0         0\nIFO  1\n" +
        table("SRC.DAT", 1, 1, {{"A", 4, 1, 5, 10, -1, 1, 'I'}}) + "  11\n          7\nEOS\nEOS\n");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0]["A"], 7);
}

TEST_F(Tables, KeepTheirRecordsInTheWorkspaceAndSurviveDamage) {
    const std::string text =
        kCurrent + table("S.PAT", 1, 1, {{"A", 4, 1, 5}}, "XX") + "          7\n" + kEnd;
    values(text);
    // A file elsewhere is no table's.
    int32_t handle = 0;
    int32_t status = 0;
    const std::string info = path("info");
    call(infdef_, "X.PAT", std::string_view(info), "", 0, handle, status);
    ASSERT_EQ(status, 0);
    for (const std::string& file :
         {path("../pat.dat"), path("DS/../../pat.dat"), info + "/../.."}) {
        call(infxtn_, handle, std::string_view(file), status);
        EXPECT_NE(status, 0) << file;
    }
    call(infcls_, handle);
    // Every prefix of each file leaves the dataset readable or without the table, never worse.
    for (const char* name : {"info/catalog", "info/table1.def", "DS/pat.dat"}) {
        const std::string whole = fileBytes(path(name));
        for (std::size_t size = 0; size < whole.size(); size += 3) {
            writeFile(path(name), whole.substr(0, size));
            EXPECT_LE(records("record").size(), 1U);
        }
        writeFile(path(name), whole);
    }
    EXPECT_EQ(records("record").size(), 1U);
}

// The dataset's directory is missing, so that its file for the records cannot be made.
TEST_F(Tables, WhoseFileCannotBeMadeEndTheImport) {
    std::vector<std::string> told;
    mesink_([](int32_t, const char* text,
               void* user) { static_cast<std::vector<std::string>*>(user)->emplace_back(text); },
            &told);
    given(table("S.PAT", 1, 1, {{"A", 4, 1, 5}}, "XX") + kEnd);
    const Name dataset(path("DS"));
    Status status = kSuccess;
    const auto begin = [&] {
        reader = {};
        call(aopen_, reader.IMPUNT, Name(path("in.e00")), status);
    };
    begin();
    EXPECT_ANY_THROW(IMPIFO(dataset, 0, kSingle, kTablesOfCoverage, false, status));
    begin();
    EXPECT_ANY_THROW(IM1IFO(Name(path("DS1")), 1, kTablesOfCoverage, false, status));
    EXPECT_EQ(told,
              (std::vector<std::string>{"Unable to external " + path("DS/pat.dat") + ". (IMPINF)",
                                        "Error in externaling file (IM1INF)"}));
    // A surface has no tables, and a section that is skipped is only read past.
    begin();
    IMPIFO(dataset, 0, kSingle, kTablesOfTin, false, status);
    EXPECT_EQ(reader.logicalLines, 0);
    begin();
    IMPIFO(dataset, 0, kSingle, kTablesOfCoverage, true, status);
    EXPECT_EQ(reader.logicalLines, 3);
    begin();
    IM1IFO(dataset, 1, kTablesOfCoverage, true, status);
    EXPECT_EQ(reader.logicalLines, 4);
    EXPECT_EQ(told.size(), 2U);
    mesink_(nullptr, nullptr);
    featendC();
    baseendC();
}

// A disk that is full, as a limit on the size of files makes it.
TEST_F(Tables, ThatCannotBeWrittenEndTheImport) {
    const std::vector<Item> item = {{"A", 60, 1, 2}};
    for (const bool older : {false, true}) {
        std::string text = (older ? kOlder : kCurrent) + table("S.PAT", 1, 9000, item, "XX");
        if (older) text += "  60\n";
        for (int record = 0; record < 9000; ++record) text += "a\n";
        given(text + (older ? kOlderEnd : kEnd));
        const std::string dataset = older ? "OLDER" : "DS";
        const std::string routine = older ? "(IM1INF)" : "(IMPINF)";
        if (fork() == 0) {
            signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{65536, 65536};
            setrlimit(RLIMIT_FSIZE, &limit);
            const bool ended = import(dataset) == 0 && !complaints().empty() &&
                               complaints()[0] == "Could not write DF record " + routine;
            _exit(ended ? 0 : 1);
        }
        int status = 0;
        ASSERT_GT(wait(&status), 0);
        EXPECT_EQ(status, 0);
        EXPECT_GT(records("record", dataset).size(), 0U);
    }
}

// Eight imports at the same time lose none of each other's tables.
TEST_F(Tables, AreListedInALogThatIsKeptShortAndMended) {
    const std::string one = table("S.ONE", 1, 1, {{"A", 4, 1, 5}}) + "          1\n";
    std::string text = kCurrent;
    for (int each = 0; each < 500; ++each) text += one;
    values(text + kEnd);
    EXPECT_LT(fileBytes(path("info/catalog")).size(), 5000U);
    // The last entry was cut short. What comes next takes its place.
    const std::string catalog = fileBytes(path("info/catalog"));
    writeFile(path("info/catalog"), catalog + std::string("\0\0\4\0\0\0\0\x9X.B", 11));
    given(kCurrent + one + table("S.B", 1, 1, {{"A", 4, 1, 5}}) + "          2\n" + kEnd);
    EXPECT_EQ(import("LAST"), 1);
    std::vector<std::string> names;
    for (const json& each : records("table", "LAST")) names.push_back(each["name"]);
    EXPECT_EQ(names, (std::vector<std::string>{"LAST.ONE", "LAST.B"}));
    EXPECT_EQ(records("table").size(), 1U);
    // A length that cannot be is damage, and so is one that is not the name's. A table keeps its
    // files where the catalogue gives their number to another.
    const std::string definition = fileBytes(path("info/table500.def"));
    for (const std::string& entry : {std::string("\0\x10\1\5S.B", 7), std::string("\0\0\1\5S.B", 7),
                                     std::string("\0\0\0\6IN.ONE", 10)}) {
        const bool damaged = entry.size() == 7;
        writeFile(path("info/catalog"), catalog.substr(0, 22) + "\1\xF4" + entry);
        given(kCurrent + one + kEnd);
        EXPECT_EQ(import(!damaged ? "IN" : entry[1] == 0 ? "CUT" : "DAMAGED"), damaged ? 0 : 1);
        EXPECT_NE(complaints().empty(), damaged);
        EXPECT_EQ(fileBytes(path("info/table500.def")), definition);
    }
}

// What was read of a catalogue is kept between imports, whatever others do to the file meanwhile.
TEST_F(Tables, AreFoundWhateverOthersDidToTheCatalogue) {
    const auto file = [&](int tables) {
        std::string text = kCurrent;
        for (int each = 0; each < tables; ++each) {
            text += table("S.T" + std::to_string(each), 1, 1, {{"A", 4, 1, 5}}) + "          1\n";
        }
        given(text + kEnd);
    };
    const auto elsewhere = [&](int imports, const std::string& dataset) {
        if (fork() == 0) {
            for (int each = 0; each < imports; ++each) import(dataset);
            _exit(0);
        }
        int status = 1;
        EXPECT_GT(wait(&status), 0);
        EXPECT_EQ(status, 0);
    };
    const auto expectTables = [&](const std::string& dataset, std::size_t count) {
        EXPECT_EQ(records("record", dataset).size(), count) << dataset;
    };
    file(3);
    ASSERT_EQ(import("A"), 1);
    const std::string early = fileBytes(path("info/catalog"));
    elsewhere(1, "B");  // appends
    ASSERT_EQ(import("C"), 1);
    expectTables("B", 3);
    elsewhere(60, "B");  // writes it anew, more than once
    ASSERT_EQ(import("D"), 1);
    for (const char* dataset : {"A", "B", "C", "D"}) expectTables(dataset, 3);
    // Half an entry of a process that was killed, and then its table by another.
    const std::string whole = fileBytes(path("info/catalog"));
    writeFile(path("info/catalog"), whole + std::string("\0\0\4", 3));
    expectTables("D", 3);
    elsewhere(1, "E");
    expectTables("E", 3);
    // The same file, as long as it was but with another content, and one from a copy.
    std::string renamed = fileBytes(path("info/catalog"));
    renamed[renamed.rfind("E.T2")] = 'F';
    writeFile(path("info/catalog"), renamed);
    expectTables("E", 2);
    std::filesystem::remove_all(path("info"));
    std::filesystem::create_directory(path("info"));
    writeFile(path("info/catalog"), early);
    file(1);
    elsewhere(1, "G");
    ASSERT_EQ(import("H"), 1);
    expectTables("G", 1);
    expectTables("H", 1);
    expectTables("D", 0);
}

TEST_F(Tables, AreIndexedInOrderWithoutRoomForAllKeys) {
    constexpr int kRecords = 150000;
    std::string text = kCurrent + table("S.A", 1, kRecords, {{"A", 4, 1, 5, 10, -1, 1, 'I'}});
    for (int number = 0; number < kRecords; ++number) {
        text += record({{11, std::to_string(number * 7919 % kRecords / 2)}});
    }
    given(text + kEnd);
    ASSERT_EQ(import(), 1);
    // The keys lie in a record file of 12 bytes a record: a real with its sign turned, a number.
    const std::string index = fileBytes(path("info/table1.index1")).substr(128);
    ASSERT_EQ(index.size(), std::size_t{12} * kRecords);
    for (std::size_t entry = 12; entry < index.size(); entry += 12) {
        ASSERT_LT(index.compare(entry - 12, 12, index, entry, 12), 0) << entry / 12;
    }
}

// What records and indexes take is justified by their text, but for 16 MiB of an import.
TEST_F(Tables, TakeNoMoreThanTheirTextJustifies) {
    std::vector<Item> items = {{"A", 4, 1, 5}};
    for (int start = 1; start <= 20; ++start) {
        for (int twice = 0; twice < 2; ++twice)
            items.push_back({"B", 900, start, 2, 10, -1, -1, 'I'});
    }
    const std::string blank = table("S.A", 1, 2000, items) + std::string(2000, '\n');
    given(kCurrent + blank + kEnd);
    ASSERT_EQ(import(), 1);
    EXPECT_EQ(complaints(), std::vector<std::string>{"Too many indexes in DS.A (IMPINF)"});
    const json stored = records("table").at(0)["items"];
    EXPECT_EQ(std::count_if(stored.begin(), stored.end(),
                            [](const json& item) { return item["indexed"] == true; }),
              9);
    given(kCurrent + blank + table("S.B", 1, 2000, items) + std::string(2000, '\n') + kEnd);
    EXPECT_EQ(import("OTHER"), 0);
    EXPECT_EQ(complaints().back(), "Invalid record count (IMPINF)");
}

TEST_F(Tables, OfManyProcessesMeetInOneWorkspace) {
    constexpr int kProcesses = 8;
    constexpr int kTables = 12;
    std::string text = kCurrent;
    for (int each = 0; each < kTables; ++each) {
        text += table("S.T" + std::to_string(each), 1, 1, {{"A", 4, 1, 5}}) + "          1\n";
    }
    given(text + kEnd);
    for (int process = 0; process < kProcesses; ++process) {
        if (fork() == 0) _exit(import("DS" + std::to_string(process)) == 1 ? 0 : 1);
    }
    for (int process = 0; process < kProcesses; ++process) {
        int status = 0;
        ASSERT_GT(wait(&status), 0);
        EXPECT_EQ(status, 0);
    }
    for (int process = 0; process < kProcesses; ++process) {
        const std::string dataset = "DS" + std::to_string(process);
        EXPECT_EQ(records("table", dataset).size(), static_cast<std::size_t>(kTables));
        EXPECT_EQ(records("record", dataset).size(), static_cast<std::size_t>(kTables));
    }
}

}  // namespace
}  // namespace intake::testing
