#include "host/qxfeat/labels.h"

#include "coverage/overflow.h"
#include "coverage/sections.h"
#include "stream/lines.h"
#include "stream/report.h"

namespace intake {

namespace {

// Only all four together end the section: a label may well have the user id -1.
bool endsLabels(const QxLabel& label) {
    return label.userId == -1 && label.polygon == 0 && label.x == 0 && label.y == 0;
}

void readBox(int32_t precision, QxLabel& label) {
    double* box = label.box;
    if (precision == kSingle) {
        IMPLIN<"1P,4E14.7">(box[0], box[1], box[2], box[3]);
        return;
    }
    IMPLIN<"1P,2E21.14">(box[0], box[1]);
    IMPLIN<"1P,2E21.14">(box[2], box[3]);
}

}  // namespace

void IMPLAB(const Name& dataset, const int32_t& precision, Status& status) {
    Handle labels{};
    call(labcre_, labels, dataset, 1, 1, status);
    if (status != kSuccess) {
        status = kReported;
        return;
    }
    bool lossReported = false;
    const auto clearUserId = [&](Line& line) {
        if (!clearOverflow(line, 1) || lossReported) return;
        inform("Label file, Unavoidable loss of data for User-ID, set to 0");
        warn("Use IDEDIT command with POINT or POLY option as appropriate to recover lost data.");
        lossReported = true;
    };
    int32_t scratch = 0;
    QxLabel label{};
    for (;;) {
        if (precision == kSingle) {
            IMPLIN<"2I10,1P,2E14.7">(clearUserId, label.userId, label.polygon, label.x, label.y);
        } else {
            // In the wide form stars are not looked for and fail as a field. Stays.
            IMPLIN<"2I10,1P,2E21.14">(label.userId, label.polygon, label.x, label.y);
        }
        if (endsLabels(label)) break;
        readBox(precision, label);
        call(labwt_, labels, scratch, &label);
    }
    status = kSuccess;
    call(labcls_, labels);
}

}  // namespace intake
