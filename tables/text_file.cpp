#include "host/qxbase/channels.h"
#include "stream/reader.h"
#include "stream/report.h"
#include "tables/sections.h"

namespace intake {

void IMPASC(const Name& dataset, Status& status) {
    call(aexist_, dataset, status);
    if (status == kSuccess) {
        nonftl("File %1% already exists.", dataset);
        status = kReported;
        return;
    }
    Handle channel{};
    call(acreat_, channel, dataset, status);
    if (status != kSuccess) {
        nonftl("Unable to create %1%.", dataset);
        return;
    }
    FixedText<300> line;
    for (;;) {
        IMPLIN(line);
        if (line.view() == "EOA") break;
        Status written = kSuccess;
        call(awrite_, channel, line, written);
    }
    call(aclose_, channel);
}

}  // namespace intake
