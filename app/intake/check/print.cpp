#include <ostream>

#include "app/intake/check/finding.h"
#include "app/intake/messages.h"
#include "app/intake/utf8.h"

namespace program {

namespace {

const char* verdictOf(const Finding& finding) {
    constexpr const char* kVerdicts[] = {"whole", "partial", "not an interchange file", "unknown"};
    return kVerdicts[static_cast<std::size_t>(finding.verdict)];
}

Description volumesOf(const Finding& finding) {
    Description list = Description::array();
    for (const auto& volume : finding.volumes) {
        list.push_back({{"name", toUtf8(volume.name)}, {"bytes", volume.bytes}});
    }
    return list;
}

const char* precisionOf(int64_t code) {
    constexpr const char* kPrecisions[] = {"none", "oldest", "single", "double"};
    return kPrecisions[code >= 1 && code <= 3 ? code : 0];
}

Description sectionsOf(const Finding& finding) {
    Description list = Description::array();
    for (const FoundSection& section : finding.sections) {
        Description object = {{"code", section.code},
                              {"precision", precisionOf(section.precision)},
                              {"lines", section.lines}};
        if (section.records) object["records"] = *section.records;
        list.push_back(std::move(object));
    }
    return list;
}

Description messagesOf(const Finding& finding) {
    Description list = Description::array();
    for (const FoundMessage& message : finding.messages) {
        list.push_back({{"level", levelName(message.level)}, {"text", toUtf8(message.text)}});
    }
    return list;
}

Description placeOf(const FoundPlace& place) {
    Description object = {{"file", toUtf8(place.file)}, {"line", place.line}};
    if (!place.columns.empty()) {
        object["columns"] = {std::stoll(place.columns),
                             std::stoll(place.columns.substr(place.columns.rfind(' ')))};
    }
    return object;
}

}  // namespace

Description asObject(const Finding& finding) {
    Description object;
    object["file"] = toUtf8(finding.file);
    object["verdict"] = verdictOf(finding);
    if (finding.place) object["place"] = placeOf(*finding.place);
    if (!finding.looksLike.empty()) object["looksLike"] = toUtf8(finding.looksLike);
    if (!finding.container.empty()) object["container"] = finding.container;
    if (finding.compressed) object["form"] = *finding.compressed ? "compressed" : "plain";
    if (!finding.headerLine.empty()) object["header"] = toUtf8(finding.headerLine);
    object["volumes"] = volumesOf(finding);
    if (!finding.kind.empty()) object["kind"] = finding.kind;
    object["sections"] = sectionsOf(finding);
    if (!finding.dataset.empty()) object["dataset"] = finding.dataset;
    object["messages"] = messagesOf(finding);
    if (finding.leftOut != 0) object["leftOut"] = finding.leftOut;
    return object;
}

void printFinding(const Finding& finding, std::ostream& stream) {
    // The same in the same order, but for what is better said in a sentence.
    Description object = asObject(finding);
    if (finding.place) {
        const FoundPlace& place = *finding.place;
        object["place"] = (place.columns.empty() ? "" : "columns " + place.columns + " of ") +
                          "line " + std::to_string(place.line) + " of " + toUtf8(place.file);
    }
    if (finding.headerLine.empty() && finding.compressed) object["header"] = "none";
    print(object, stream);
}

}  // namespace program
