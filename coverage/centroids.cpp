#include "host/qxfeat/centroids.h"

#include <algorithm>
#include <array>
#include <tuple>

#include "coverage/growing_record.h"
#include "coverage/overflow.h"
#include "coverage/sections.h"
#include "stream/lines.h"
#include "stream/report.h"

namespace intake {

namespace {

constexpr int32_t kEndOfCentroids = -1;
constexpr int32_t kLabelsPerLine = 8;
constexpr std::size_t kLabelWidth = 10;

using CentroidRecord = GrowingRecord<QxCentroid, int32_t>;

void readLabels(int32_t count, bool& lossReported, CentroidRecord& record) {
    Line line;
    for (int32_t left = count; left > 0; left -= kLabelsPerLine) {
        if (left >= kLabelsPerLine) {
            std::array<int32_t, kLabelsPerLine> labels;
            const bool taken =
                std::apply([](auto&... each) { return takeLine<"8I10">(each...); }, labels);
            if (taken) {
                std::copy(labels.begin(), labels.end(), record.grow(labels.size()));
                continue;
            }
        }
        IMPLIN(line);
        // The first number of a line only. Stays.
        if (clearOverflow(line, 1) && !lossReported) {
            warn("Centroid file, Unavoidable loss of data for LABEL ID, set to 0");
            lossReported = true;
        }
        const int32_t here = left < kLabelsPerLine ? left : kLabelsPerLine;
        for (int32_t index = 0; index < here; ++index) {
            const std::size_t first = static_cast<std::size_t>(index) * kLabelWidth + 1;
            record.add(integerField<int32_t>(line.columns(first, first + kLabelWidth - 1), first));
        }
    }
}

}  // namespace

void IMPCNT(const Name& dataset, const int32_t& precision, Status& status) {
    Handle centroids{};
    call(cntcre_, centroids, dataset, 1, 1, status);
    if (status != kSuccess) {
        status = kReported;
        return;
    }
    bool lossReported = false;
    int32_t scratch = 0;
    CentroidRecord record;
    for (;;) {
        QxCentroid& centroid = record.front();
        if (precision == kSingle) {
            IMPLIN<"I10,1P,2E14.7">(centroid.labelCount, centroid.x, centroid.y);
        } else {
            IMPLIN<"I10,1P,2E21.14">(centroid.labelCount, centroid.x, centroid.y);
        }
        if (centroid.labelCount == kEndOfCentroids) break;
        if (centroid.labelCount < 0) fatal("Invalid label count (IMPCNT)");
        record.clearTail();
        readLabels(centroid.labelCount, lossReported, record);
        call(cntwt_, centroids, scratch, record.data());
    }
    status = kSuccess;
    call(cntcls_, centroids);
}

}  // namespace intake
