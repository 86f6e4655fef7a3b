#include <algorithm>
#include <array>

#include "coverage/sections.h"
#include "host/qxbase/byte_order.h"
#include "host/qxbase/lists.h"
#include "host/qxbase/names.h"
#include "host/qxbase/records.h"
#include "host/qxbase/strings.h"
#include "stream/format.h"
#include "stream/reader.h"
#include "stream/report.h"

namespace intake {

namespace {

constexpr int32_t kTextCode = 42;
constexpr int32_t kIntegerCode = 44;
constexpr int32_t kEndOfTable = -1;
constexpr std::string_view kEndOfTexts = "!!!!!!!!";

void createTable(const Name& dataset, int32_t code, int32_t kind, int32_t recordWords,
                 Handle& table, Status& status) {
    Name path;
    call(aname_, dataset, path, code);
    call(vcreat_, table, path, code, kind, 1, 2, recordWords, status);
}

// A text of 8 characters and an integer.
struct TextEntry {
    FixedText<8> text;
    int32_t value = 0;

    bool endsTable() const { return text == kEndOfTexts && value == kEndOfTable; }
};

void writeText(Handle table, int32_t number, const TextEntry& entry) {
    std::array<int32_t, 3> words;
    // The first record has the integer in front of the text, every later one behind it. Stays.
    int32_t& value = number == 1 ? words[0] : words[2];
    int32_t* text = number == 1 ? &words[1] : &words[0];
    value = entry.value;
    call(swi4fn_, &value, 1, 1, table);
    call(chrstr_, entry.text, 8, reinterpret_cast<char*>(text), 8);
    call(vwrite_, table, number, words.data(), 3);
}

// A line of integers: three entries of four. Only the first count of them are looked at.
constexpr int32_t kIntegersPerLine = 12;
constexpr std::array<std::size_t, 4> kWidths = {10, 6, 6, 1};
using IntegerLine = std::array<int32_t, kIntegersPerLine>;
using IntegerEntry = std::array<int32_t, 4>;

void readIntegers(std::size_t count, IntegerLine& integers) {
    Line line;
    IMPLIN(line);
    std::size_t column = 1;
    for (std::size_t index = 0; index < count; ++index) {
        const std::size_t width = kWidths[index % kWidths.size()];
        integers[index] = integerField<int32_t>(line.columns(column, column + width - 1), column);
        column += width;
    }
}

// The entries of a record, each record over those of the one before.
class EntryList {
  public:
    explicit EntryList(Handle list) : list_(list) {}

    // Puts integers from an entry on. Where they end inside an entry, its other words stay.
    void put(int32_t entry, std::span<const int32_t> integers) {
        for (; !integers.empty(); ++entry) {
            const std::size_t here = std::min(integers.size(), kWidths.size());
            IntegerEntry words{};
            Status status = kSuccess;
            if (here < kWidths.size()) call(memget_, list_, entry, words, status);
            std::copy_n(integers.begin(), here, words.begin());
            call(memput_, list_, entry, words);
            size_ = std::max(size_, entry);
            integers = integers.subspan(here);
        }
    }
    // Entries that nothing was ever put into are zero.
    void reach(int64_t entries) {
        const IntegerEntry zero{};
        while (size_ < entries) call(memput_, list_, ++size_, zero);
    }

  private:
    Handle list_;
    int32_t size_ = 0;
};

void readEntries(int32_t count, Handle table, EntryList& entries) {
    IntegerLine integers;
    int32_t entry = 1;
    for (int64_t start = 1; start <= count; start += kIntegersPerLine, entry += 3) {
        // The last line of a record whose count is a multiple of 12 decodes nothing, and what the
        // record before left in the list stands in its place. Stays.
        const int32_t here =
            start + kIntegersPerLine <= count ? kIntegersPerLine : count % kIntegersPerLine;
        readIntegers(static_cast<std::size_t>(here), integers);
        call(swi4fn_, integers, here, 1, table);
        entries.put(entry, {integers.data(), static_cast<std::size_t>(here)});
        entries.reach(std::min<int64_t>(start + kIntegersPerLine - 1, count) / 4);
    }
}

}  // namespace

void IMPADP(const Name& dataset, Status& status) {
    Handle table{};
    createTable(dataset, kTextCode, 1, 3, table, status);
    if (status != kSuccess) {
        status = kReported;
        return;
    }
    Line line;
    TextEntry entry;
    IMPLIN(line);
    // A first line that does not decode is no failure of the import: an empty table ends that way,
    // since its closing line has the integer in front.
    entry.text = FixedText<8>(line.columns(1, 8));
    const bool decoded = parseInteger(line.columns(9, 18), entry.value);
    for (int32_t number = 1; decoded && !entry.endsTable(); ++number) {
        writeText(table, number, entry);
        IMPLIN(line);
        read<"A8,I10">(line, entry.text, entry.value);
    }
    status = decoded ? kSuccess : kReported;
    call(vclose_, table);
}

void IMPADI(const Name& dataset, Status& status) {
    constexpr int32_t kWords = 4;
    Handle table{};
    Handle list{};
    createTable(dataset, kIntegerCode, 2, 0, table, status);
    if (status == kSuccess) call(memcr2_, kWords, 131072, list, status);
    if (status != kSuccess) {
        status = kReported;
        return;
    }
    EntryList entries(list);
    Line line;
    for (int32_t number = 1;; ++number) {
        int32_t count = 0;
        IMPLIN(line);
        read<"I10">(line, count);
        if (count == kEndOfTable) break;
        if (count < 0) fatal("Invalid entry count (IMPADI)");
        readEntries(count, table, entries);
        call(memvwt_, table, number, list, count / kWords);
    }
    status = kSuccess;
    call(vclose_, table);
    call(memcls_, list);
}

}  // namespace intake
