#include <array>

#include "host/qxbase.h"
#include "plots/sections.h"
#include "stream/format.h"
#include "stream/reader.h"
#include "stream/report.h"

namespace intake {

namespace {

enum Code : int32_t { kColour = 0, kBoundsX = 8, kBoundsY = 9, kShade = 10 };

// What a record holds. A line sets what it carries; the rest is left over from the lines before.
struct PlotRecord {
    int32_t code = 0;
    std::array<float, 2> R{};
    std::array<int32_t, 2> I{};
    FixedText<QX_PLOT_TEXT> T;
};

// In the order xmin, ymin, xmax, ymax; what no line sets stays as it is here.
using Bounds = std::array<float, 4>;
constexpr Bounds kUnsetBounds = {9.0E27F, 9.0E27F, -9.0E27F, -9.0E27F};

// Reads a line. False if it gives bounds and is no record.
bool readRecord(const Line& line, PlotRecord& record, Bounds& bounds) {
    read<"I2">(line, record.code);
    if (record.code < 0) {
        read<"2X,A8">(line, record.T);
        return true;
    }
    switch (record.code) {
        case kColour:
            read<"2X,I10">(line, record.I[0]);
            return true;
        case kBoundsX:
            read<"2X,1P,2E12.5">(line, bounds[0], bounds[2]);
            return false;
        case kBoundsY:
            read<"2X,1P,2E12.5">(line, bounds[1], bounds[3]);
            return false;
        case kShade: {
            bool flag = false;
            read<"2X,I10,L1">(line, record.I[0], flag);
            record.R[0] = static_cast<float>(record.I[0]);
            record.I[1] = flag ? 1 : 0;
            return true;
        }
        default:
            read<"2X,1P,2E12.5">(line, record.R[0], record.R[1]);
            return true;
    }
}

}  // namespace

void IMPPLT(const Name& file, Status& status) {
    call(ptexis_, file, status);
    if (status == kSuccess) {
        nonftl("File %1% already exists.", file);
        status = kReported;
        return;
    }
    Handle plot{};
    call(ptcrea_, plot, file, status);
    if (status != kSuccess) {
        nonftl("Unable to create %1%.", file);
        return;
    }
    Line line;
    IMPLIN(line);
    const FixedText<QX_PLOT_TITLE> title = line;
    PlotRecord record;
    Bounds bounds = kUnsetBounds;
    for (;;) {
        IMPLIN(line);
        if (line == "EOP") break;
        if (readRecord(line, record, bounds)) {
            call(ptwrit_, plot, record.code, record.R, record.I, record.T, status);
        }
    }
    call(ptclos_, plot);
    call(ptbndw_, file, bounds[0], bounds[1], bounds[2], bounds[3], status);
    call(pthdrw_, file, title, status);
    // Whatever the writers said: nothing looks at it.
    status = kSuccess;
}

}  // namespace intake
