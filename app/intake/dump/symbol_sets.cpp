#include "app/intake/symbol_sets.h"

#include <bit>

#include "app/intake/dump/dump.h"
#include "host/cpp/call.h"
#include "host/qxbase.h"

namespace program {

namespace {

using qx::call;

constexpr int32_t kRead = 1;
constexpr std::size_t kNameWords = 4;
constexpr int32_t kFontBytes = 80;
constexpr int32_t kFontReals = 20;

void datasetLine(Dump& dump, const Dataset& dataset) {
    if (!dump.wants("dataset")) return;
    JsonLine(dump.output(), "dataset").field("kind", dataset.kind).field("name", dataset.name);
}

// A record of words in file byte order.
class RecordWords {
  public:
    explicit RecordWords(int32_t recordBytes) : words_(static_cast<std::size_t>(recordBytes / 4)) {}
    bool read(int32_t file, int32_t number) {
        int32_t status = 0;
        const auto bytes = static_cast<int32_t>(words_.size() * 4);
        call(iread_, file, static_cast<void*>(words_.data()), bytes, number, status);
        return status == 0;
    }
    int32_t integer(std::size_t index) const {
        int32_t word = words_[index];
        call(swi4bn_, word, 1);
        return word;
    }
    float real(std::size_t index) const { return std::bit_cast<float>(integer(index)); }
    std::string_view text(std::size_t index, std::size_t words) const {
        return {reinterpret_cast<const char*>(words_.data() + index), words * 4};
    }

  private:
    std::vector<int32_t> words_;
};

void symbolLine(Dump& dump, int32_t number, const RecordWords& record, const SetLayout& layout) {
    JsonLine line(dump.output(), "symbol");
    line.field("number", number).key("words").beginList();
    std::string_view name;
    std::size_t index = 0;
    for (const WordRun& run : layout.words) {
        if (run.kind == 'n') {
            name = record.text(index, kNameWords);
            index += kNameWords;
            continue;
        }
        for (int count = 0; count < run.count; ++count, ++index) {
            if (run.kind == 'r') {
                line.value(record.real(index));
            } else {
                line.value(record.integer(index));
            }
        }
    }
    line.endList();
    if (name.data()) line.field("name", name);
}

}  // namespace

void dumpSymbolSet(Dump& dump, const Dataset& dataset) {
    datasetLine(dump, dataset);
    const SetLayout layout =
        layoutOf(dataset.kind, findRecordBytesOfNamed(dataset.path, dataset.kind));
    int32_t file = 0;
    int32_t status = 0;
    call(iopen_, file, std::string_view(dataset.path), layout.recordBytes, kRead, status);
    if (status != 0) return;
    int32_t count = 0;
    call(icount_, file, count);
    if (dump.wants("symbolSet")) {
        JsonLine(dump.output(), "symbolSet")
            .field("recordBytes", layout.recordBytes)
            .field("recordCount", count);
    }
    RecordWords record(layout.recordBytes);
    for (int32_t number = 1; dump.wants("symbol") && record.read(file, number); ++number) {
        symbolLine(dump, number, record, layout);
    }
    call(iclose_, file);
}

void dumpFont(Dump& dump, const Dataset& dataset) {
    datasetLine(dump, dataset);
    int32_t file = 0;
    int32_t status = 0;
    const std::string path = fontFile(dataset.path);
    call(iopen_, file, std::string_view(path), kFontBytes, kRead, status);
    if (status != 0) return;
    int32_t count = 0;
    call(icount_, file, count);
    if (dump.wants("font")) JsonLine(dump.output(), "font").field("recordCount", count);
    RecordWords record(kFontBytes);
    for (int32_t number = 1; dump.wants("fontRecord") && record.read(file, number); ++number) {
        JsonLine line(dump.output(), "fontRecord");
        line.field("number", number).key("reals").beginList();
        for (std::size_t index = 0; index < kFontReals; ++index) line.value(record.real(index));
        line.endList();
    }
    call(iclose_, file);
}

}  // namespace program
