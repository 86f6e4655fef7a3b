#include <algorithm>

#include "host/qxbase.h"
#include "plots/sections.h"
#include "stream/fields.h"
#include "stream/reader.h"
#include "stream/report.h"

namespace intake {

namespace {

constexpr Status kNoDirectory = -1;
constexpr Status kNoMap = -2;
constexpr Status kElementFailed = -3;

// An element's name is data: it must be the name of one file in the map's directory.
bool isPlainName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           std::none_of(name.begin(), name.end(), [](char character) {
               const auto code = static_cast<unsigned char>(character);
               return character == '/' || character == '\\' || code < 32 || code == 127;
           });
}

// A letter and four digits. The number serves one message only: one that is none counts as 0.
int32_t elementNumber(const Line& name) {
    int32_t number = 0;
    parseInteger(name.columns(2, 5), number);
    return number;
}

}  // namespace

void IMPMAP(const Name& map, Status& status) {
    Name directory;
    call(aname_, map, directory, 0);
    call(dcreat_, directory, status);
    if (status != kSuccess) {
        nonftl("Cannot create MAP %1%", map);
        status = kNoDirectory;
        return;
    }
    for (;;) {
        Line name;
        IMPLIN(name);
        if (name.startsWith("EOM")) break;
        Name element;
        call(ejoin_, directory, name, element);
        Line header;
        if (isPlainName(name.view())) IMPLIN(header);
        if (!header.startsWith("PLT")) {
            nonftl("Invalid MAP import file");
            status = kNoMap;
            return;
        }
        IMPPLT(element, status);
        if (status != kSuccess) {
            nonftl("Error importing MAP element %1%", elementNumber(name));
            status = kElementFailed;
            return;
        }
    }
    status = kSuccess;
}

}  // namespace intake
