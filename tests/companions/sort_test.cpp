#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "host/cpp/call.h"
#include "host/qxbase.h"

namespace {

using Record = std::array<int32_t, 2>;

// A sort calls back without a pointer of its own.
std::vector<Record> input;
std::vector<Record> output;
std::size_t next;

int32_t readRecord(int32_t* record) {
    if (next == input.size()) return -1;
    std::copy_n(input[next++].data(), 2, record);
    return 0;
}
int32_t compareFirst(const int32_t* first, const int32_t* second) {
    return first[0] < second[0] ? -1 : first[0] > second[0];
}
void writeRecord(const int32_t* record) { output.push_back({record[0], record[1]}); }

TEST(Sort, KeepsEveryRecordAndTheOrderOfEquals) {
    constexpr int32_t kWords = 2;
    constexpr int32_t kCapacity = 128;
    std::mt19937 random(1);
    // None, one run, just one, a few, and more than one merge takes.
    for (const int32_t count : {0, 5, 128, 129, 1000, 20000}) {
        input.clear();
        output.clear();
        next = 0;
        for (int32_t record = 0; record < count; ++record) {
            input.push_back({static_cast<int32_t>(random() % 300) - 150, record});
        }
        std::vector<int32_t> area(static_cast<std::size_t>((kWords + 1) * kCapacity));
        QxSortCounters counters{};
        qx::call(srtfilC, kWords, kCapacity, area, readRecord, compareFirst, writeRecord, counters);
        EXPECT_EQ(counters.status, 0);
        EXPECT_EQ(counters.records, count);
        EXPECT_EQ(counters.runs, count < kCapacity ? 0 : (count - 1) / kCapacity + 1);
        std::sort(input.begin(), input.end());
        EXPECT_EQ(output, input);
    }
}

TEST(Sort, ThatHasNoRoomSaysSo) {
    QxSortCounters counters{};
    std::vector<int32_t> area(1);
    qx::call(srtfilC, 2, 5, area, readRecord, compareFirst, writeRecord, counters);
    EXPECT_NE(counters.status, 0);
}

TEST(ScratchFiles, GiveBackWhatWasWritten) {
    int32_t file = 0;
    int32_t status = 0;
    int32_t value = 0;
    qx::call(scrgetC, file);
    ASSERT_NE(file, 0);
    constexpr int32_t kRecords = 200000;
    for (int32_t record = 0; record < kRecords; ++record) qx::call(BwriteC, file, 1, &record);
    for (int pass = 0; pass < 2; ++pass) {
        qx::call(BrewndC, file);
        for (int32_t record = 0; record < kRecords; ++record) {
            qx::call(BreadC, file, 1, &value, status);
            if (status != 0 || value != record) FAIL() << "record " << record;
        }
        qx::call(BreadC, file, 1, &value, status);
        EXPECT_NE(status, 0);
    }
    qx::call(scrgivC, file);
    qx::call(BreadC, file, 1, &value, status);
    EXPECT_NE(status, 0);
}

}  // namespace
