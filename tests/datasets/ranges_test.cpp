// Ranges over what is stored: left early, asked by number, over damaged files; and what rows say.
#include <ranges>

#include "datasets/features.h"
#include "datasets/indexes.h"
#include "datasets/small_tables.h"
#include "datasets/tables.h"
#include "host/cpp/call.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using namespace datasets;

static_assert(std::ranges::input_range<Arcs> && std::ranges::input_range<Table>);
static_assert(!std::copyable<Arcs> && std::is_nothrow_move_constructible_v<Arcs>);

class Ranges : public ImportTest {
  protected:
    void SetUp() override {
        given(fileBytes(INTAKE_SOURCE_DIR "/samples/wcr.e00"));
        ASSERT_EQ(import(), 1);
        baseinitC();
        featinitC();
    }
    void TearDown() override { baseendC(); }

    std::string coverage() const { return path("DS"); }
    static std::size_t openFiles() {
        const std::filesystem::directory_iterator files("/proc/self/fd");
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }
};

TEST_F(Ranges, LeftEarlyOrMovedCloseTheirFiles) {
    const std::size_t before = openFiles();
    for (int each = 0; each < 50; ++each) {
        for (const Arc& arc : arcs(coverage())) {
            ASSERT_GT(arc.vertices.size(), 1U);
            break;
        }
        for ([[maybe_unused]] const Row& row : table(coverage() + ".PAT")) break;
        for ([[maybe_unused]] const IndexBlock& block : indexOf(coverage(), Indexed::arcs)) break;
        Labels first = labels(coverage());
        ASSERT_TRUE(first.next());
        Labels moved = std::move(first);
        EXPECT_FALSE(first);  // NOLINT: it is empty now
        EXPECT_FALSE(first.next());
        ASSERT_TRUE(moved.next());
        EXPECT_EQ(moved.current().number, 2);
        moved = labels(path("nowhere"));
        EXPECT_FALSE(moved);
        EXPECT_EQ(moved.begin(), moved.end());
        EXPECT_EQ(moved.count(), 0);
    }
    EXPECT_EQ(openFiles(), before);
}

TEST_F(Ranges, GiveTheRecordOfANumberAndGoOnBehindIt) {
    Arcs byNumber = arcs(coverage());
    const int32_t count = byNumber.count();
    int32_t record = 0;
    for (const Arc& arc : arcs(coverage())) {
        const Arc* same = byNumber.at(++record);
        ASSERT_NE(same, nullptr);
        EXPECT_EQ(same->number, arc.number);
        ASSERT_EQ(same->vertices.size(), arc.vertices.size());
        EXPECT_EQ(same->vertices.back().x, arc.vertices.back().x);
    }
    EXPECT_EQ(record, count);
    EXPECT_EQ(byNumber.at(0), nullptr);
    EXPECT_EQ(byNumber.at(count + 1), nullptr);
    ASSERT_TRUE(byNumber.go(count - 2));
    EXPECT_EQ(std::ranges::distance(byNumber), 3);

    for (const std::string& subclass : subclasses(coverage(), Subclassed::annotation)) {
        Annotations texts = annotations(coverage(), subclass);
        const int32_t last = texts.count();
        ASSERT_GT(last, 1);
        ASSERT_NE(texts.at(last), nullptr);
        EXPECT_EQ(texts.current().number, last);
        EXPECT_EQ(texts.at(1)->number, 1);
    }

    given(fileBytes(INTAKE_SOURCE_DIR "/fuzz/seeds/import/adp.e00"));
    ASSERT_EQ(import("ADDRESSES"), 1);
    AddressTexts addresses = addressTexts(path("ADDRESSES"));
    const AddressText* address = addresses.at(addresses.count());
    ASSERT_NE(address, nullptr);
    EXPECT_EQ(address->number, addresses.count());
    EXPECT_EQ(addresses.at(addresses.count() + 1), nullptr);

    Table rows = table(coverage() + ".PAT");
    const int32_t area = rows.find("AREA");
    ASSERT_GE(area, 0);
    EXPECT_EQ(rows.find("NOTHING"), -1);
    std::vector<Value> areas;
    for (const Row& row : rows) areas.push_back(row[static_cast<std::size_t>(area)]);
    ASSERT_EQ(areas.size(), static_cast<std::size_t>(rows.count()));
    EXPECT_EQ(std::get<double>(rows.at(2)->stored(static_cast<std::size_t>(area))),
              std::get<double>(areas[1]));
    EXPECT_EQ(rows.at(rows.count() + 1), nullptr);
    ASSERT_TRUE(rows.go(1));
    EXPECT_EQ(rows.begin()->number(), 1);
}

// The arcs before the damage are read; the end of the session tells the file, and says it once.
TEST_F(Ranges, EndAtADamagedRecordWhichIsTold) {
    const std::string name = coverage() + "/arc";
    const auto whole = std::ranges::distance(arcs(coverage()));
    std::filesystem::resize_file(name, std::filesystem::file_size(name) / 2);
    Arcs damaged = arcs(coverage());
    const auto left = std::ranges::distance(damaged);
    EXPECT_GT(left, 0);
    EXPECT_LT(left, whole);
    EXPECT_FALSE(damaged.next());
    static std::vector<std::string> told;
    told.clear();
    mesink_([](int32_t, const char* text, void*) { told.emplace_back(text); }, nullptr);
    baseendC();
    mesink_(nullptr, nullptr);
    EXPECT_EQ(told, std::vector<std::string>{name + " is damaged and cannot be read to its end"});
}

struct Field {
    QxItemDescriptor shape;
    double value;
    const char* text;
};

TEST_F(Ranges, OfRowsSayWhatAColumnMeans) {
    constexpr int32_t kNone = -1;
    const Field fields[] = {{{1, 8, QX_ITEM_DATE, kNone, 8}, 20260131, ""},
                            {{9, 8, QX_ITEM_DATE, kNone, 8}, 20261301, ""},
                            {{17, 6, QX_ITEM_CHARACTER, kNone, 6}, 0, "ab"},
                            {{23, 6, QX_ITEM_INTEGER_TEXT, kNone, 6}, -42, ""},
                            {{29, 8, QX_ITEM_NUMBER_TEXT, 2, 8}, 1.25, ""},
                            {{37, 8, QX_ITEM_INTEGER, kNone, 8}, -5e9, ""},
                            {{45, 4, QX_ITEM_REAL, kNone, 8}, 0.5, ""}};
    const TablePlace place = tablePlace(path("KINDS"));
    int32_t handle = 0;
    int32_t status = 0;
    qx::call(infdef_, std::string_view(place.name), std::string_view(place.directory), "", 0,
             handle, status);
    ASSERT_EQ(status, 0);
    std::array<char, 48> record{};
    const auto bytes = static_cast<int32_t>(record.size());
    for (const Field& each : fields) {
        const QxItemDescriptor& shape = each.shape;
        qx::call(infadi_, handle, 0, "ITEM", "", "", shape.type, shape.width, shape.outputWidth,
                 shape.decimals, 0, 0, 0, 0, 0, 0, shape.start, status);
        ASSERT_EQ(status, 0);
        qx::call(infenc_, shape, each.value, std::string_view(each.text), bytes,
                 static_cast<void*>(record.data()), status);
        ASSERT_EQ(status, 0);
    }
    qx::call(infput_, handle, 1, static_cast<const void*>(record.data()), status);
    // Texts that are blank, and texts that are no numbers.
    record.fill(' ');
    qx::call(infput_, handle, 2, static_cast<const void*>(record.data()), status);
    record.fill('?');
    qx::call(infput_, handle, 3, static_cast<const void*>(record.data()), status);
    qx::call(infcls_, handle);

    Table kinds = table(place);
    const Row& row = *kinds.at(1);
    const Date date = std::get<Date>(row[0]);
    EXPECT_EQ((std::array{date.year, date.month, date.day}), (std::array{2026, 1, 31}));
    EXPECT_EQ(std::get<Date>(row[1]).year, 0);
    EXPECT_EQ(std::get<Date>(row[1]).text, "20261301");
    EXPECT_EQ(std::get<std::string_view>(row[2]), "ab    ");
    EXPECT_EQ(std::get<int64_t>(row[3]), -42);
    EXPECT_EQ(std::get<std::string_view>(row.stored(3)), "   -42");
    EXPECT_EQ(std::get<double>(row[4]), 1.25);
    EXPECT_EQ(row.bytes(4), "    1.25");
    EXPECT_EQ(std::get<int64_t>(row[5]), -5000000000);
    EXPECT_EQ(std::get<double>(row[6]), 0.5);
    ASSERT_NE(kinds.at(2), nullptr);
    for (const std::size_t blank : {3U, 4U}) {
        EXPECT_TRUE(std::holds_alternative<std::monostate>(row[blank])) << blank;
    }
    EXPECT_EQ(std::get<double>(row.stored(4)), 0);
    ASSERT_NE(kinds.at(3), nullptr);
    EXPECT_EQ(std::get<std::string_view>(row[3]), "??????");
    EXPECT_EQ(std::get<std::string_view>(row[4]), "????????");
}

}  // namespace
}  // namespace intake::testing
