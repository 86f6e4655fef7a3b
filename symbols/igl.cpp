#include "symbols/igl.h"

#include <algorithm>

#include "host/qxbase.h"

namespace intake {

namespace {

constexpr int32_t kUnits = 16;
constexpr int32_t kHighestType = 6;
constexpr int32_t kRecordFile = 5;
constexpr int32_t kRecordBytes = kFontReals * 4;
constexpr int32_t kReadAndWrite = 2;
// More than any font holds; what a file claims beyond it is refused.
constexpr int32_t kMostRecords = 1000000;

enum Routine : int32_t { kOpen = 205, kClose = 206, kWrite = 215 };

struct Unit {
    int32_t internalNumber = 0;
    int32_t type = 0;
    int32_t recordCount = 0;
    int32_t wordsPerRecord = 0;
    bool open = false;
    int32_t currentRecord = 0;
    Handle file = 0;
    FixedText<64> name;
};

struct Layer {
    int32_t error = 0;
    std::array<Unit, kUnits> IGLSET{};
};

Layer layer;

void fail(Routine routine, int32_t code) { layer.error = routine * 100 + code; }

Unit* findUnit(int32_t unit, Routine routine) {
    if (unit < 1 || unit > kUnits) {
        fail(routine, 1);
        return nullptr;
    }
    return &layer.IGLSET[static_cast<std::size_t>(unit - 1)];
}

char lowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

// A new file of zeros. Only the last record is written: the system fills in what lies before it.
Status makeRecords(const FixedText<64>& name, int32_t recordCount) {
    Handle file{};
    Status status = kSuccess;
    call(icreat_, file, name, kRecordBytes, status);
    if (status != kSuccess) return status;
    const std::array<float, kFontReals> zeros{};
    call(iwrite_, file, zeros, kRecordBytes, recordCount, status);
    call(iclose_, file);
    return status;
}

Status openRecordFile(Unit& unit) {
    Status status = kSuccess;
    if (unit.recordCount > kMostRecords) return kReported;
    call(iexist_, unit.name, status);
    if (status != kSuccess) {
        status = makeRecords(unit.name, unit.recordCount);
        if (status != kSuccess) return status;
    }
    call(iopen_, unit.file, unit.name, kRecordBytes, kReadAndWrite, status);
    return status;
}

struct ErrorText {
    int32_t number;
    std::string_view text;
};

constexpr ErrorText kErrorTexts[] = {
    {kOpen * 100 + 1, "The unit to open is outside 1 to 16."},
    {kOpen * 100 + 3, "The type of the file to open is outside 1 to 6."},
    {kOpen * 100 + 4, "The number of words in a record is not above 0."},
    {kOpen * 100 + 5, "The number of records is not above 0."},
    {kOpen * 100 + 21, "The unit to open is open already."},
    {kOpen * 100 + 22, "The file could not be opened or made."},
    {kClose * 100 + 1, "The unit to close is outside 1 to 16."},
    {kClose * 100 + 21, "The unit to close is not open."},
    {kWrite * 100 + 1, "The unit to write to is outside 1 to 16."},
    {kWrite * 100 + 2, "The record number is outside the records of the file."},
    {kWrite * 100 + 21, "The unit to write to is not open."},
    {kWrite * 100 + 22, "The unit to write to is no record file."},
    {kWrite * 100 + 24, "The record could not be written."},
};

}  // namespace

void IGLINI(int32_t, int32_t) { layer = {}; }

void IGLEND() {
    for (Unit& unit : layer.IGLSET) {
        if (unit.open) call(iclose_, unit.file);
    }
    layer.IGLSET = {};
}

int32_t IGLERR(bool clear) {
    const int32_t error = layer.error;
    if (clear) layer.error = 0;
    return error;
}

FixedText<80> IGLTXT(int32_t number) {
    const auto* found = std::find_if(std::begin(kErrorTexts), std::end(kErrorTexts),
                                     [&](const ErrorText& each) { return each.number == number; });
    return found == std::end(kErrorTexts) ? "Unknown error." : found->text;
}

void IGLOPN(int32_t unit, const Name& name, int32_t type, int32_t recordCount,
            int32_t wordsPerRecord) {
    Unit* found = findUnit(unit, kOpen);
    if (!found) return;
    if (type < 1 || type > kHighestType) return fail(kOpen, 3);
    if (found->open) return fail(kOpen, 21);
    *found = {};
    found->internalNumber = unit + 20;
    found->type = type;
    found->name = name;
    std::transform(found->name.data(), found->name.data() + found->name.size(), found->name.data(),
                   lowerCase);
    if (recordCount <= 0) return fail(kOpen, 5);
    if (wordsPerRecord <= 0) return fail(kOpen, 4);
    found->recordCount = recordCount;
    if (type != kRecordFile || openRecordFile(*found) != kSuccess) return fail(kOpen, 22);
    found->wordsPerRecord = kFontReals;
    found->open = true;
}

void IGLWRT(int32_t unit, int32_t record, std::span<float, kFontReals> reals) {
    Unit* found = findUnit(unit, kWrite);
    if (!found) return;
    if (!found->open) return fail(kWrite, 21);
    if (found->type != kRecordFile) return fail(kWrite, 22);
    if (record < 1 || record > found->recordCount) return fail(kWrite, 2);
    const auto count = static_cast<int32_t>(kFontReals);
    Status status = kSuccess;
    call(swr4nb_, reals.data(), count);
    call(iwrite_, found->file, static_cast<const void*>(reals.data()), kRecordBytes, record,
         status);
    call(swr4bn_, reals.data(), count);
    if (status != kSuccess) return fail(kWrite, 24);
    found->currentRecord = record;
}

void IGLCLS(int32_t unit, bool) {
    Unit* found = findUnit(unit, kClose);
    if (!found) return;
    if (!found->open) return fail(kClose, 21);
    call(iclose_, found->file);
    *found = {};
}

}  // namespace intake
