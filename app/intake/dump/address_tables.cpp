#include "app/intake/dump/features.h"
#include "host/cpp/call.h"
#include "host/qxbase.h"

namespace program {

namespace {

using qx::call;

constexpr int32_t kTextCode = 42;
constexpr int32_t kIntegerCode = 44;
constexpr int32_t kTextWords = 3;

// A record file of the coverage, and how many records it holds; false if there is none.
bool openTable(const Dataset& dataset, int32_t code, int32_t words, int32_t& table,
               int32_t& count) {
    qx::Name path;
    call(aname_, std::string_view(dataset.path), path, code);
    int32_t foundCode = 0;
    int32_t foundWords = 0;
    int32_t status = 0;
    call(vopen_, table, path, foundCode, foundWords, count, status);
    if (status != 0) return false;
    if (foundCode == code && foundWords == words) return true;
    call(vclose_, table);
    return false;
}

void countTable(const Dataset& dataset, int32_t code, int32_t words, const char* key,
                JsonLine& line) {
    int32_t table = 0;
    int32_t count = 0;
    if (!openTable(dataset, code, words, table, count)) return;
    line.field(key, count);
    call(vclose_, table);
}

}  // namespace

void countAddressTexts(const Dataset& dataset, JsonLine& line) {
    countTable(dataset, kTextCode, kTextWords, "addressText", line);
}

void countAddressIntegers(const Dataset& dataset, JsonLine& line) {
    countTable(dataset, kIntegerCode, 0, "addressIntegers", line);
}

void dumpAddressTexts(Dump& dump, const Dataset& dataset) {
    int32_t table = 0;
    int32_t records = 0;
    if (!openTable(dataset, kTextCode, kTextWords, table, records)) return;
    std::array<int32_t, kTextWords> words{};
    for (int32_t number = 1; number <= records; ++number) {
        int32_t count = 0;
        int32_t status = 0;
        call(vread_, table, number, words.data(), kTextWords, count, status);
        if (status != 0) break;
        // The integer leads in the first record and follows in the others.
        int32_t value = words[number == 1 ? 0 : 2];
        call(swi4bn_, value, 1);
        const auto* text = reinterpret_cast<const char*>(&words[number == 1 ? 1 : 0]);
        JsonLine line(dump.output(), "addressText");
        line.field("number", number).field("text", std::string_view(text, 8));
        line.field("value", value);
    }
    call(vclose_, table);
}

void dumpAddressIntegers(Dump& dump, const Dataset& dataset) {
    int32_t table = 0;
    int32_t records = 0;
    if (!openTable(dataset, kIntegerCode, 0, table, records)) return;
    std::vector<int32_t> words(4000);
    for (int32_t number = 1; number <= records; ++number) {
        int32_t count = 0;
        int32_t status = 0;
        call(vread_, table, number, words.data(), static_cast<int32_t>(words.size()), count,
             status);
        if (status > 0) {
            words.resize(static_cast<std::size_t>(count));
            call(vread_, table, number, words.data(), count, count, status);
        }
        if (status != 0) break;
        call(swi4bn_, words, count);
        const std::span<const int32_t> all(words.data(), static_cast<std::size_t>(count));
        JsonLine line(dump.output(), "addressIntegers");
        line.field("number", number).key("entries").beginList();
        for (std::size_t index = 0; index + 4 <= all.size(); index += 4) {
            line.value(all.subspan(index, 4));
        }
        line.endList();
    }
    call(vclose_, table);
}

}  // namespace program
