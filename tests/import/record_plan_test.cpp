// The planned walk through records, held against the careful one.
#include "tables/record_plan.h"

#include <random>

#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

class RecordPlans : public ::testing::Test {
  protected:
    struct Outcome {
        std::string stored;
        std::vector<std::string> told;
        int planned = 0;
    };

    RecordPlans() {
        baseinitC();
        featinitC();
        std::filesystem::create_directory(workspace_.path("info"));
    }
    ~RecordPlans() override {
        mesink_(nullptr, nullptr);
        featendC();
        baseendC();
        reader = {};
    }

    std::vector<QxItemDescriptor> someItems() {
        constexpr int32_t kWidths[] = {2, 4, 8, 1, 5};
        std::vector<QxItemDescriptor> items;
        int32_t start = 1;
        for (std::size_t count = 1 + engine_() % 9; count > 0; --count) {
            const auto type = static_cast<int32_t>(1 + engine_() % 6);
            int32_t width =
                type < 5 ? static_cast<int32_t>(engine_() % 30) : kWidths[engine_() % 3];
            if (type == QX_ITEM_REAL) width = 4 + static_cast<int32_t>(engine_() % 2) * 4;
            if (type == QX_ITEM_DATE) width = 8;
            if (engine_() % 64 == 0) width = kWidths[engine_() % 5];
            items.push_back({start, width, type, static_cast<int32_t>(engine_() % 5) - 1, 10});
            start += width;
        }
        // Bytes that no item has.
        if (engine_() % 4 == 0) items.back().start += 3;
        return items;
    }
    std::string field(const QxItemDescriptor& item) {
        const double value = std::normal_distribution<double>(0, 5e4)(engine_);
        char text[64];
        if (item.type <= QX_ITEM_INTEGER_TEXT) {
            std::snprintf(text, sizeof text, "%-*s", item.width, "a text of thirty columns or so");
            return std::string(text).substr(0, static_cast<std::size_t>(item.width));
        }
        if (item.type == QX_ITEM_INTEGER) {
            std::snprintf(text, sizeof text, "%*d", item.width > 2 ? 11 : 6,
                          static_cast<int>(value / (item.width > 2 ? 1 : 4)));
            return text;
        }
        const bool wide = item.type == QX_ITEM_REAL && item.width > 4;
        const char* shape = engine_() % 3 == 0 ? "%*.*f" : "%*.*E";
        std::snprintf(text, sizeof text, shape, wide ? 24 : 14, wide ? 17 : 7, value);
        std::string cut(text);
        cut.resize(wide ? 24 : 14);
        return cut;
    }

    // Reads the file's records into a table of some items, as planned or with care.
    Outcome read(const std::vector<QxItemDescriptor>& items, int32_t records, bool planned) {
        Outcome outcome;
        mesink_(
            [](int32_t, const char* text, void* user) {
                static_cast<std::vector<std::string>*>(user)->emplace_back(text);
            },
            &outcome.told);
        const std::string name = "T" + std::to_string(++tables_);
        reader = {};
        reader.IMPNAM.assign(workspace_.path("in.e00"));
        Status status = kSuccess;
        call(aopen_, reader.IMPUNT, reader.IMPNAM, status);
        RDVER(reader.IMPUNT);
        Table table;
        table.routine = "(IMPINF)";
        table.TBLNAM.assign("T");
        table.ITMTAB = items;
        table.header.storedItems = static_cast<int32_t>(items.size());
        table.header.records = records;
        call(infdef_, std::string_view(name), std::string_view(workspace_.path("info")), "", 0,
             table.handle, status);
        int64_t columns = 0;
        for (const QxItemDescriptor& item : items) {
            call(infadi_, table.handle, 0, "A", "", "", item.type, item.width, item.outputWidth,
                 item.decimals, -1, -1, -1, -1, -1, -1, item.start, status);
            EXPECT_EQ(status, kSuccess);
            columns += static_cast<int64_t>(field(item).size());
        }
        try {
            const int64_t lines = (columns + 79) / 80;
            RecordPlan plan(table, lines);
            std::vector<std::byte> record(table.recordBytes());
            RecordText text;
            for (int32_t number = 1; number <= records; ++number) {
                text.readLines(lines);
                if (planned && plan.put(table, text, number)) {
                    ++outcome.planned;
                } else {
                    readRecord(table, text, number, record);
                }
            }
        } catch (...) {
            outcome.told.push_back("ended");
        }
        call(infcls_, table.handle);
        call(aclose_, reader.IMPUNT);
        outcome.stored =
            fileBytes(workspace_.path("info/table" + std::to_string(tables_) + ".dat"));
        return outcome;
    }

    std::mt19937_64 engine_{18112511};
    Workspace workspace_;
    int tables_ = 0;
};

TEST_F(RecordPlans, StoreAndTellWhatTheCarefulWalkDoes) {
    constexpr int32_t kRecords = 12;
    int planned = 0;
    int faults = 0;
    int stored = 0;
    constexpr int kRounds = 1500;
    for (int round = 0; round < kRounds; ++round) {
        const std::vector<QxItemDescriptor> items = someItems();
        std::string text = "EXP  0 X\n";
        for (int32_t number = 0; number < kRecords; ++number) {
            std::string record;
            for (const QxItemDescriptor& item : items) record += field(item);
            if (engine_() % 16 == 0 && !record.empty()) {
                record[engine_() % record.size()] = " 0+-.E*x"[engine_() % 8];
            }
            for (std::size_t at = 0; at < record.size(); at += 80) {
                text += std::string(qx::trimText(record.substr(at, 80))) + '\n';
            }
        }
        // So that the last lines do not end the block that was read.
        writeFile(workspace_.path("in.e00"), text + std::string(200, '\n'));
        const Outcome quick = read(items, kRecords, true);
        const Outcome careful = read(items, kRecords, false);
        ASSERT_TRUE(quick.stored == careful.stored) << text;
        ASSERT_EQ(quick.told, careful.told) << text;
        planned += quick.planned;
        stored += careful.stored.empty() ? 0 : 1;
        faults += careful.told.empty() ? 0 : 1;
    }
    // Most records go by the plan, and enough of them do not.
    EXPECT_GT(planned, kRounds * kRecords / 2);
    EXPECT_GT(stored, kRounds * 9 / 10);
    EXPECT_GT(faults, kRounds / 20);
}

}  // namespace
}  // namespace intake::testing
