#include "tables/text_copy.h"

#include <string>

#include "host/qxbase/channels.h"
#include "stream/reader.h"
#include "stream/report.h"
#include "tables/state.h"

namespace intake {

namespace {

// The columns of a line behind the mark in its first.
constexpr std::size_t kPieceLength = Line::kLength - 1;

// The next line of a body; false at its end.
bool readPiece(Line& line) {
    IMPLIN(line);
    return line.view() != "EOD";
}

void TXTOPN(const Name& file, Status& status) {
    call(acreat_, tablesState.textChannel, file, status);
}

// A piece that does not end its line gets a blank behind it, unless it fills its columns, so that
// words stay apart.
void TXTPUT(std::string_view piece, bool endsLine) {
    std::string text(qx::trimText(piece));
    if (endsLine) {
        text += '\n';
    } else if (text.size() < kPieceLength) {
        text += ' ';
    }
    Status status = kSuccess;
    call(aput_, tablesState.textChannel, std::string_view(text), status);
}

void TXTCLS() {
    call(aclose_, tablesState.textChannel);
    tablesState.textChannel = 0;
}

}  // namespace

void IMPTXF(const Name& file, Status& status) {
    call(aexist_, file, status);
    if (status == kSuccess) {
        nonftl("File %1% already exists.", file);
        status = kReported;
        return;
    }
    TXTOPN(file, status);
    if (status != kSuccess) {
        nonftl("Unable to create %1%.", file);
        return;
    }
    Line line;
    while (readPiece(line)) TXTPUT(line.columns(2, Line::kLength), line[0] == '1');
    TXTCLS();
}

void passText() {
    Line line;
    while (readPiece(line)) {}
}

}  // namespace intake
