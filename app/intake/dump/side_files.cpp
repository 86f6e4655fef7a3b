#include "app/intake/dump/side_files.h"

#include "host/cpp/call.h"
#include "host/qxbase.h"

namespace program {

using qx::call;

namespace {

constexpr int32_t kLogCode = 31;
constexpr int32_t kProjectionCode = 28;
constexpr int32_t kMetadataCode = 104;

std::string memberPath(const std::string& dataset, int32_t code) {
    qx::Name path;
    call(aname_, std::string_view(dataset), path, code);
    return std::string(path.view());
}

}  // namespace

void dumpText(Dump& dump, std::string_view className, const std::string& path,
              std::string_view table) {
    if (!dump.wants(className)) return;
    int32_t channel = 0;
    int32_t status = 0;
    call(aopen_, channel, std::string_view(path), status);
    if (status != 0) return;
    JsonLine line(dump.output(), className);
    line.key("lines").beginList();
    qx::FixedText<1024> piece;
    std::string text;
    for (;;) {
        int32_t count = 0;
        int32_t more = 0;
        call(apiece_, channel, piece, count, more, status);
        if (status != 0) break;
        text += piece.full().substr(0, static_cast<std::size_t>(count));
        if (more != 0) continue;
        line.value(text);
        text.clear();
    }
    line.endList();
    if (!table.empty()) line.field("table", table);
    call(aclose_, channel);
}

void dumpLog(Dump& dump, const std::string& dataset) {
    dumpText(dump, "log", memberPath(dataset, kLogCode));
}

void dumpProjection(Dump& dump, const std::string& dataset) {
    dumpText(dump, "projection", memberPath(dataset, kProjectionCode));
}

void dumpMetadata(Dump& dump, const std::string& dataset) {
    dumpText(dump, "metadata", memberPath(dataset, kMetadataCode));
}

void dumpSideTexts(Dump& dump, const std::string& dataset) {
    dumpLog(dump, dataset);
    dumpProjection(dump, dataset);
    dumpMetadata(dump, dataset);
}

}  // namespace program
