#include "host/qxfeat/boxes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "companions/qxfeat/feature_files.h"
#include "host/cpp/call.h"
#include "host/qxfeat/annotation.h"
#include "host/qxfeat/table_reading.h"

using qx::call;

void boxfd2_(const double* points, const int32_t* count, double* box) {
    if (*count < 1) {
        box[0] = box[1] = box[2] = box[3] = 0;
        return;
    }
    box[0] = box[2] = points[0];
    box[1] = box[3] = points[1];
    for (int64_t index = 1; index < *count; ++index) {
        box[0] = std::fmin(box[0], points[2 * index]);
        box[1] = std::fmin(box[1], points[2 * index + 1]);
        box[2] = std::fmax(box[2], points[2 * index]);
        box[3] = std::fmax(box[3], points[2 * index + 1]);
    }
}

void qxfeat::boxOfStored(std::span<const std::byte> pairs, int32_t realBytes, double* box) {
    std::array<double, 1024> values;
    bool first = true;
    do {
        const std::size_t count =
            std::min(values.size(), pairs.size() / static_cast<std::size_t>(realBytes));
        getCoordinates(pairs.data(), std::span(values).first(count), realBytes);
        pairs = pairs.subspan(count * static_cast<std::size_t>(realBytes));
        double here[4];
        call(boxfd2_, values, static_cast<int32_t>(count / 2), +here);
        for (int side = 0; side < 4; ++side) {
            const double wider =
                side < 2 ? std::fmin(box[side], here[side]) : std::fmax(box[side], here[side]);
            box[side] = first ? here[side] : wider;
        }
        first = false;
    } while (!pairs.empty());
}

void annbox_(const AnnoRecord* record, const double* points, double* box) {
    const double height = record->textHeight;
    const double length = record->textLength * height;
    if (record->pointCount < 1) return;
    if (record->pointCount == 1) {
        const double ends[] = {points[0], points[1], points[0] + length, points[1] + height};
        std::copy_n(ends, 4, box);
        return;
    }
    int32_t count = record->pointCount;
    double ends[4];
    if (count == 2) {
        const double dx = points[2] - points[0];
        const double dy = points[3] - points[1];
        const double distance = std::hypot(dx, dy);
        const double share = distance == 0 ? 0 : length / distance;
        ends[0] = points[0];
        ends[1] = points[1];
        ends[2] = points[0] + share * dx;
        ends[3] = points[1] + share * dy;
        points = ends;
    }
    boxfd2_(points, &count, box);
    box[0] -= height;
    box[1] -= height;
    box[2] += height;
    box[3] += height;
}

void bndget_(const char* coverage, double* box, int32_t* status, int32_t coverageLength) {
    constexpr std::string_view kItems[] = {"XMIN", "YMIN", "XMAX", "YMAX"};
    constexpr int32_t kToRead = 1;
    *status = qxfeat::kFailed;
    qx::Name directory;
    qx::Name prefix;
    qx::FixedText<QX_TABLE_NAME_LENGTH> name;
    call(infarc_, qx::textArgument(coverage, coverageLength), directory, prefix, name);
    if (name.blank()) return;
    const std::string table = std::string(name.view()) + ".BND";
    int32_t handle = 0;
    int32_t records = 0;
    int32_t recordLength = 0;
    int32_t result = 0;
    call(infopn_, std::string_view(table), directory, prefix, kToRead, handle, records,
         recordLength, result);
    if (result != 0) return;
    call(infget_, handle, 1, result);
    for (std::size_t side = 0; side < 4 && result == 0; ++side) {
        int32_t place = 0;
        qx::FixedText<64> text;
        call(inffnd_, handle, kItems[side], place);
        call(infval_, handle, place, box[side], text, result);
    }
    call(infcls_, handle);
    if (result == 0) *status = qxfeat::kSuccess;
}
