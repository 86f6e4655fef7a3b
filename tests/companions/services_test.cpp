#include "host/cpp/call.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using qx::call;
using qx::Name;

class Services : public ::testing::Test {
  protected:
    Services() {
        baseinitC();
        mesink_(
            [](int32_t level, const char* text, void* user) {
                static_cast<std::vector<Message>*>(user)->push_back({level, text});
            },
            &said);
    }
    ~Services() override {
        mesink_(nullptr, nullptr);
        baseinitC();
    }
    Name path(const std::string& name) const { return std::string_view(workspace.path(name)); }

    Workspace workspace;
    std::vector<Message> said;
    int32_t status = 0;
};

TEST_F(Services, MessagesFillInTheirValuesOnce) {
    const struct {
        std::string text;
        std::vector<std::string> values;
        std::string message;
    } cases[] = {
        {" %1% and %2%", {"a", "b"}, " a and b"},
        {"%2%%1%", {"a", "b"}, "ba"},
        {"%1%", {"%2% /& %1%", "no"}, "%2% /& %1%"},
        {"one/&two", {}, "one\ntwo"},
        {"%1%-%2%-%3%", {"a"}, "a--"},
        {"%1%|", {"  a  "}, "  a|"},
        {"%1%", {"tab\tline\nend\x7F"}, "tab\\x09line\\x0Aend\\x7F"},
        {"%1%",
         {"\xC3\x85 \xC2\x9B \x9B \xE9\x9B \xE2\x80\x9B"},
         "\xC3\x85 \xC2\\x9B \\x9B \xE9\\x9B \xE2\x80\x9B"},
        {"100% %4% %1", {"a"}, "100% %4% %1"},
    };
    for (const auto& each : cases) {
        for (const std::string& value : each.values) call(meschr_, std::string_view(value), 0);
        call(warn_, std::string_view(each.text), -1);
        EXPECT_EQ(said.back(), (Message{QX_WARN, each.message}));
    }
    const int32_t number = -5;
    mesint_(&number);
    call(nonftl_, "%1%%2%", -1);
    EXPECT_EQ(said.back(), (Message{QX_NONFATAL, "-5"}));
    // A message empties the queue.
    call(inform_, "%1%", -1);
    EXPECT_EQ(said.back(), (Message{QX_INFORM, ""}));
    EXPECT_ANY_THROW(call(error_, "e", -1));
    EXPECT_ANY_THROW(call(fatal_, "f", -1));
    EXPECT_EQ(said.back(), (Message{QX_FATAL, "f"}));
    mesink_(nullptr, nullptr);
    ::testing::internal::CaptureStderr();
    call(inform_, "seen", -1);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "seen\n");
}

TEST_F(Services, NextVolumesCountTwoDigitsUp) {
    const struct {
        std::string name;
        std::string next;
        bool successor;
    } cases[] = {{"a.e00", "a.e01", true},  {"A.E09", "A.E10", true},  {"a.e98", "a.e99", true},
                 {"a.e99", "a.e99", false}, {"a.txt", "a.txt", false}, {"a.e0", "a.e0", false},
                 {"7", "7", false}};
    for (const auto& each : cases) {
        Name name = path(each.name);
        call(iename_, name, 1, status);
        EXPECT_EQ(name, path(each.next));
        EXPECT_EQ(status == 0, each.successor) << each.name;
        name = path(each.name);
        call(iename_, name, 2, status);
        EXPECT_NE(status, 0) << each.name;
    }
    writeFile(workspace.path("a.e01"), "");
    Name name = path("a.e00");
    call(iename_, name, 2, status);
    EXPECT_EQ(status, 0);
}

TEST_F(Services, NamesComeApartAndTogether) {
    const struct {
        std::string_view path, directory, name;
    } cases[] = {{"a/b/c", "a/b", "c"}, {"c", "", "c"},     {"/c", "/", "c"},
                 {"a/b/", "a", "b"},    {"a//b", "a", "b"}, {"", "", ""}};
    for (const auto& each : cases) {
        Name directory;
        Name name;
        call(edir_, each.path, directory);
        call(ename_, each.path, name);
        EXPECT_EQ(directory, each.directory) << each.path;
        EXPECT_EQ(name, each.name) << each.path;
    }
    Name joined;
    call(ejoins_, "dir", "name", joined);
    EXPECT_EQ(joined, "dir/name");
    call(ejoin_, "", "name", joined);
    EXPECT_EQ(joined, "name");
    EXPECT_EQ(call(lenchr_, " ab  "), 3);
    EXPECT_EQ(call(lenchr_, "   "), 0);
    call(fname_, "cov", "../x", joined, 16);
    EXPECT_EQ(joined.view().find(".."), std::string_view::npos);
}

TEST_F(Services, ChannelsReadLinesAsTheyAreWritten) {
    int32_t channel = 0;
    call(acreat_, channel, path("t"), status);
    ASSERT_EQ(status, 0);
    call(awrite_, channel, "line  ", status);
    call(aput_, channel, "kept  ", status);
    call(awrite_, channel, "", status);
    call(arewnd_, channel, status);
    char line[4];
    int32_t count = 0;
    const std::vector<std::string> expected = {"line", "kept"};
    for (const std::string& each : expected) {
        aread_(&channel, line, &count, &status, 4);
        EXPECT_EQ(std::string(line, 4), each);
        EXPECT_EQ(status, 0);
    }
    aread_(&channel, line, &count, &status, 4);
    EXPECT_EQ(status, -1);
    EXPECT_EQ(std::string(line, 4), "    ");
    call(aclose_, channel);
    aread_(&channel, line, &count, &status, 4);
    EXPECT_GT(status, 0);
    EXPECT_EQ(fileBytes(workspace.path("t")), "line\nkept  \n");
    call(adelet_, path("t"), status);
    EXPECT_EQ(status, 0);
    call(aexist_, path("t"), status);
    EXPECT_NE(status, 0);
}

TEST_F(Services, ListsGrowByOneAndBitmapsByNeed) {
    int32_t list = 0;
    call(memcre_, 2, list, status);
    const int32_t elements[][2] = {{1, 2}, {3, 4}, {5, 6}};
    memput_(&list, std::array{1}.data(), elements[0]);
    memput_(&list, std::array{2}.data(), elements[1]);
    memput_(&list, std::array{1}.data(), elements[2]);
    memput_(&list, std::array{9}.data(), elements[0]);
    int32_t element[2] = {};
    memget_(&list, std::array{1}.data(), element, &status);
    EXPECT_EQ(element[1], 6);
    memget_(&list, std::array{3}.data(), element, &status);
    EXPECT_NE(status, 0);
    call(memdel_, list);
    memget_(&list, std::array{1}.data(), element, &status);
    EXPECT_NE(status, 0);

    int32_t bitmap = 0;
    call(bitcre_, bitmap);
    call(bitset_, 1, 1, bitmap);
    call(bitset_, 34, 1, bitmap);
    call(bitset_, 0, 1, bitmap);
    int32_t handle = 0;
    call(vcreat_, handle, path("bits"), 74, 0, 0, 0, 1, status);
    call(bitwtr_, handle, 1, bitmap, status);
    EXPECT_EQ(status, 0);
    call(vclose_, handle);
    const std::string bytes = fileBytes(workspace.path("bits"));
    EXPECT_EQ(bytes.substr(128), std::string("\x80\0\0\0\x40\0\0\0", 8));
    // One of more bits than are kept in memory, set in no order.
    for (const int32_t bit : {4000000, 2, 4000001, 65536 * 32 + 1}) call(bitset_, bit, 1, bitmap);
    call(vcreat_, handle, path("more"), 74, 0, 0, 0, 1, status);
    call(bitwtr_, handle, 1, bitmap, status);
    call(vclose_, handle);
    const std::string more = fileBytes(workspace.path("more")).substr(128);
    ASSERT_EQ(more.size(), 500004U);
    EXPECT_EQ(more.substr(0, 8), std::string("\xC0\0\0\0\x40\0\0\0", 8));
    EXPECT_EQ(more.substr(499996), std::string("\0\0\0\1\x80\0\0\0", 8));
    EXPECT_EQ(more[65536 * 4], '\x80');
    EXPECT_EQ(std::count(more.begin(), more.end(), '\0'), 499999);
}

// Writes records of one or two words each, the n-th of value n.
void writeRecords(const Name& path, int32_t words, int32_t count) {
    int32_t handle = 0;
    int32_t status = 0;
    call(vcreat_, handle, path, 5, 1, 2, 3, words, status);
    ASSERT_EQ(status, 0);
    for (int32_t number = 1; number <= count; ++number) {
        const int32_t record[2] = {number, number};
        const int32_t length = words != 0 ? words : 1 + number % 2;
        vwrite_(&handle, &number, record, &length);
    }
    call(vstat_, handle, status);
    EXPECT_EQ(status, 0);
    call(vclose_, handle);
}

// Reads all that can be read; -1 if the file does not open.
int32_t readable(const Name& path) {
    int32_t handle = 0;
    int32_t code = 0;
    int32_t words = 0;
    int32_t count = 0;
    int32_t status = 0;
    call(vopen_, handle, path, code, words, count, status);
    if (status != 0) return -1;
    int32_t number = 1;
    for (;; ++number) {
        int32_t record[2] = {};
        int32_t length = 0;
        vread_(&handle, &number, record, std::array{2}.data(), &length, &status);
        if (status != 0) break;
    }
    call(vclose_, handle);
    return number - 1;
}

TEST_F(Services, DamagedRecordFilesGiveWhatIsWhole) {
    // A file that is emptied and written again goes to the disk each time; a new one does not.
    const auto rewrite = [&](const std::string& bytes) {
        std::filesystem::remove(workspace.path("r"));
        writeFile(workspace.path("r"), bytes);
    };
    for (const int32_t words : {0, 2}) {
        writeRecords(path("r"), words, 8);
        ASSERT_EQ(readable(path("r")), 8);
        const std::string good = fileBytes(workspace.path("r"));
        for (std::size_t size = 0; size < good.size(); ++size) {
            rewrite(good.substr(0, size));
            const int32_t count = readable(path("r"));
            EXPECT_EQ(count < 0, size < 128) << size;
            EXPECT_LT(count, 8) << size;
        }
        for (std::size_t at = 0; at < good.size(); ++at) {
            for (const char byte : {'\x7F', '\xFF', '\0'}) {
                std::string bad = good;
                bad[at] = byte;
                rewrite(bad);
                EXPECT_LE(readable(path("r")), 60) << at;
            }
        }
    }
}

TEST_F(Services, PlainRecordsKeepTheirNumbers) {
    int32_t handle = 0;
    call(icreat_, handle, path("p"), 4, status);
    const int32_t word = 0x01020304;
    iwrite_(&handle, &word, std::array{4}.data(), std::array{3}.data(), &status);
    EXPECT_EQ(status, 0);
    iwrite_(&handle, &word, std::array{8}.data(), std::array{1}.data(), &status);
    EXPECT_NE(status, 0);
    iwrite_(&handle, &word, std::array{4}.data(), std::array{0}.data(), &status);
    EXPECT_NE(status, 0);
    int32_t count = 0;
    call(icount_, handle, count);
    EXPECT_EQ(count, 3);
    int32_t back = 0;
    iread_(&handle, &back, std::array{4}.data(), std::array{3}.data(), &status);
    EXPECT_EQ(back, word);
    iread_(&handle, &back, std::array{4}.data(), std::array{4}.data(), &status);
    EXPECT_NE(status, 0);
    call(iclose_, handle);
    call(icreat_, handle, path("p"), 4, status);
    EXPECT_NE(status, 0);
}

using Damaged = ImportTest;

TEST_F(Damaged, AFileThatIsGoneOnWithIsMendedOrRefused) {
    const std::string arcs =
        "ARC  2\n         1        12         1         2         3         4         1\n"
        " 1.0000000E+00 2.0000000E+00\n"
        "        -1         0         0         0         0         0         0\n";
    given("EXP  0 X\n" + arcs + arcs + "EOS\n");
    ASSERT_EQ(import(), 1);
    const std::string good = fileBytes(path("DS/arc"));
    const auto goOn = [&] {
        int32_t handle = 0;
        int32_t status = 0;
        call(arccre_, handle, std::string_view(path("DS")), 1, 1, status);
        if (status != 0) return false;
        const QxArc none{};
        arcwt_(&handle, std::array{9}.data(), &none);
        call(arccls_, handle);
        return true;
    };
    // The second arc is cut short: the next one takes its place.
    writeFile(path("DS/arc"), good.substr(0, good.size() - 3));
    ASSERT_TRUE(goOn());
    EXPECT_EQ(records("arc").size(), 2U);
    EXPECT_EQ(records("arc")[1]["number"], 9);
    // Another code, record length or width of coordinates.
    for (const std::size_t offset : {15U, 31U, 35U}) {
        std::string bad = good;
        bad[offset] = offset == 35 ? '\x08' : '\x44';
        writeFile(path("DS/arc"), bad);
        EXPECT_FALSE(goOn()) << offset;
        EXPECT_EQ(fileBytes(path("DS/arc")), bad);
    }
}

}  // namespace
}  // namespace intake::testing
