#include "coverage/sections.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "stream/reader.h"
#include "tests/support/columns.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using Lines = std::vector<std::string>;
using Box = std::array<double, 4>;

constexpr char kListedRegion[] = "ZONES";

// One section of each kind with two features, and what it is stored in.
struct Kind {
    const char* file;
    Lines lines;
};
const std::vector<Kind>& kinds() {
    static const std::string end = integers({-1, 0, 0, 0, 0, 0, 0});
    static const std::string boxes[] = {integers({1}) + reals(2, {-1.5, 2, 3, 4}),
                                        integers({0}) + reals(2, {0, 0, 1, 6.1})};
    static const std::string arcs = integers({7, 1, 2});
    static const std::vector<Kind> all = {
        {"arc",
         {"ARC  2", integers({1, 1, 1, 1, 1, 1, 2}), reals(2, {-1.5, 6.1, 0, 0}),
          integers({2, 1, 1, 1, 1, 1, 1}), reals(2, {3, 0}), end}},
        {"lab",
         {"LAB  2", integers({5, 1}) + reals(2, {-1.5, 6.1}), reals(2, {9, 9, 9, 9}),
          integers({6, 1}) + reals(2, {3, 0}), reals(2, {9, 9, 9, 9}), end}},
        {"pal", {"PAL  2", boxes[0], arcs, boxes[1], "", end}},
        {"pff", {"PFF  2", boxes[0], boxes[1], end}},
        {"rpl.ZONES", {"RPL  2", kListedRegion, boxes[0], arcs, boxes[1], "", end, "JABBERWOCKY"}},
        {"lnk",
         {"LNK  2", reals(2, {-1.5, 0, 0, 6.1}), reals(2, {3, 1, 1, 1}), "END OF LINK DATA"}},
        {"cnt",
         {"CNT  2", integers({1}) + reals(2, {-1.5, 0}), integers({4}),
          integers({0}) + reals(2, {3, 6.1}), end}},
        {"adp", {"ADP  2", "MAIN ST         5", "SIDE ST         6", "!!!!!!!!        -1"}},
        {"adi", {"ADI  2", "         4", "         1     2     33", "         0", "        -1"}},
        {"rxp.ZONES",
         {"RXP  2", kListedRegion, integers({1, 2}), integers({-1, 0}), "JABBERWOCKY"}},
    };
    return all;
}

class Features : public ImportTest {
  protected:
    Box extent(const std::string& dataset) const {
        Box box{};
        int32_t status = 0;
        call(boxget_, std::string_view(path(dataset)), box, status);
        return status == 0 ? box : Box{};
    }
    // Objects of the dump; none if it is no coverage any more.
    std::size_t dumped() const {
        try {
            return records("").size();
        } catch (const std::runtime_error&) {
            return 0;
        }
    }
    static Lines whole() {
        Lines lines = {"EXP  0 X"};
        for (const Kind& kind : kinds()) {
            lines.insert(lines.end(), kind.lines.begin(), kind.lines.end());
        }
        lines.emplace_back("EOS");
        return lines;
    }
};

TEST_F(Features, GiveTheExtentOfTheirCoverage) {
    const Box expected = {-1.5, 0, 3, double{6.1F}};
    for (const Kind& kind : kinds()) {
        Lines lines = {"EXP  0 X"};
        lines.insert(lines.end(), kind.lines.begin(), kind.lines.end());
        lines.emplace_back("EOS");
        given(lines);
        ASSERT_EQ(import(kind.file), 1);
        if (std::string_view("adp adi rxp.ZONES").find(kind.file) != std::string_view::npos) {
            EXPECT_EQ(extent(kind.file), Box{}) << kind.file;
            continue;
        }
        EXPECT_EQ(extent(kind.file), expected) << kind.file;
        // A file that was cut off has no extent in its header: the records give it.
        const std::string stored = path(std::string(kind.file) + "/" + kind.file);
        std::string bytes = fileBytes(stored);
        bytes.replace(40, 8, 8, '\xff').replace(48, 44, 44, '\0');
        writeFile(stored, bytes);
        EXPECT_EQ(extent(kind.file), expected) << kind.file;
    }
    // What is written behind such a file does not take its place.
    int32_t labels = 0;
    int32_t status = 0;
    const std::string coverage = path("lab");
    call(labcre_, labels, std::string_view(coverage), 1, 1, status);
    ASSERT_EQ(status, 0);
    const QxLabel label = {1, 1, 100, 2, {}};
    call(labwt_, labels, 0, &label);
    call(labcls_, labels);
    EXPECT_EQ(extent("lab"), (Box{-1.5, 0, 100, double{6.1F}}));
}

TEST_F(Features, AreFoundByNumberAndByPath) {
    given(whole());
    ASSERT_EQ(import(), 1);
    const std::string coverage = path("DS");
    int32_t handle = 0;
    int32_t status = 0;
    int32_t number = 0;
    call(labopn_, handle, std::string_view(coverage), status);
    call(labpos_, handle, 2, status);
    QxLabel label{};
    call(labrd_, handle, number, label, status);
    EXPECT_EQ(std::pair(number, label.userId), std::pair(2, 6));
    call(labcls_, handle);

    Name stored;
    call(fname_, std::string_view(coverage), kListedRegion, stored, 90);
    call(palopn_, handle, stored, 1, 3, status);
    ASSERT_EQ(status, 0);
    QxPolygon polygon{};
    std::array<int32_t, 3> arc{};
    int32_t count = 0;
    call(palrd_, handle, number, polygon, arc, 0, status);
    EXPECT_EQ(polygon.box[0], -1.5);
    call(palrdm_, handle, arc, 1, count);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(arc, (std::array<int32_t, 3>{7, 1, 2}));
    call(palrdm_, handle, arc, 1, count);
    EXPECT_EQ(count, 0);
    call(palcls_, handle);
    call(palopn_, handle, std::string_view(path("DS/arc")), 1, 3, status);
    EXPECT_NE(status, 0) << "arcs are no polygons";

    int32_t flag = 0;
    call(pffexi_, std::string_view(coverage), flag);
    EXPECT_EQ(flag, 1);
    call(rxpprl_, std::string_view(coverage), kListedRegion, flag);
    EXPECT_EQ(flag, 0);
    call(rxpprl_, std::string_view(coverage), "OTHER", flag);
    EXPECT_EQ(flag, 1);
    call(copen_, handle, std::string_view(path("DS/none")), 89, 90, status);
    EXPECT_NE(status, 0);
}

TEST_F(Features, OfADamagedFileAreReadAsFarAsTheyGo) {
    given(whole());
    ASSERT_EQ(import(), 1);
    const std::size_t all = records("").size();
    Lines names = {"coverage", "subclasses"};
    for (const Kind& kind : kinds()) names.emplace_back(kind.file);
    for (const std::string& name : names) {
        const std::string stored = path("DS/" + name);
        const std::string bytes = fileBytes(stored);
        for (std::size_t place = 0; place < bytes.size(); place += 9) {
            for (const char damage : {'\x7f', '\x80'}) {
                std::string other = bytes;
                other[place] = damage;
                writeFile(stored, other);
                dumped();
                extent("DS");
            }
            writeFile(stored, bytes.substr(0, place));
            EXPECT_LE(dumped(), all) << name << place;
        }
        writeFile(stored, bytes);
    }
    EXPECT_EQ(records("").size(), all);
}

TEST_F(Features, WhoseFileCannotBeMadeLeaveTheirSectionUnread) {
    given(Lines{"EXP  0 X", "ZONES", "ZONES"});
    import("NONE");  // leaves the libraries started
    const Name nowhere(path("NONE"));
    const int32_t precision = kSingle;
    Status status = kSuccess;
    const Name file(path("in.e00"));
    call(aopen_, reader.IMPUNT, file, status);
    RDVER(reader.IMPUNT);
    for (const auto routine : {IMPARC, IMPLAB, IMPCNT, IMPPAL, IMPPFF, IMPLNK, IMPRXP, IMPRPL}) {
        status = kSuccess;
        routine(nowhere, precision, status);
        EXPECT_EQ(status, kReported);
    }
    for (const auto routine : {IMPADP, IMPADI}) {
        status = kSuccess;
        routine(nowhere, status);
        EXPECT_EQ(status, kReported);
    }
    call(aclose_, reader.IMPUNT);
}

}  // namespace
}  // namespace intake::testing
