#include "host/qxfeat/labels.h"

#include "coverage/overflow.h"
#include "coverage/sections.h"
#include "stream/format.h"
#include "stream/reader.h"
#include "stream/report.h"

namespace intake {

namespace {

// Only all four together end the section: a label may well have the user id -1.
bool endsLabels(const QxLabel& label) {
    return label.userId == -1 && label.polygon == 0 && label.x == 0 && label.y == 0;
}

void readBox(int32_t precision, Line& line, QxLabel& label) {
    double* box = label.box;
    IMPLIN(line);
    if (precision == kSingle) {
        read<"1P,4E14.7">(line, box[0], box[1], box[2], box[3]);
        return;
    }
    read<"1P,2E21.14">(line, box[0], box[1]);
    IMPLIN(line);
    read<"1P,2E21.14">(line, box[2], box[3]);
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
    int32_t scratch = 0;
    QxLabel label{};
    Line line;
    for (;;) {
        IMPLIN(line);
        if (precision == kSingle) {
            // In the wide form stars are not looked for and fail as a field. Stays.
            if (clearOverflow(line, 1) && !lossReported) {
                inform("Label file, Unavoidable loss of data for User-ID, set to 0");
                warn(
                    "Use IDEDIT command with POINT or POLY option as appropriate to recover lost "
                    "data.");
                lossReported = true;
            }
            read<"2I10,1P,2E14.7">(line, label.userId, label.polygon, label.x, label.y);
        } else {
            read<"2I10,1P,2E21.14">(line, label.userId, label.polygon, label.x, label.y);
        }
        if (endsLabels(label)) break;
        readBox(precision, line, label);
        call(labwt_, labels, scratch, &label);
    }
    status = kSuccess;
    call(labcls_, labels);
}

}  // namespace intake
