// Annotation in subclasses. The two forms differ by one integer on a record's first line.
#include <cstdlib>

#include "coverage/annotation_record.h"
#include "coverage/overflow.h"
#include "coverage/sections.h"
#include "stream/lines.h"
#include "stream/report.h"

namespace intake {

namespace {

constexpr int32_t kEndOfGroup = -1;
constexpr std::string_view kEndOfSection = "JABBERWOCKY  ";

struct Form {
    std::string_view routine;
    bool hasExtraWord;
};

// Twenty numbers on lines of 7, 7 and 6.
void readLineTable(int16_t (&table)[QX_ANNO_LINES]) {
    static_assert(QX_ANNO_LINES == 20);
    for (int16_t* seven : {table, table + 7}) {
        IMPLIN<"7I10">(seven[0], seven[1], seven[2], seven[3], seven[4], seven[5], seven[6]);
    }
    int16_t* const six = table + 14;
    IMPLIN<"6I10">(six[0], six[1], six[2], six[3], six[4], six[5]);
}

void readPoint(int32_t precision, double& x, double& y) {
    if (precision == kSingle) {
        IMPLIN<"1P,2E14.7">(x, y);
    } else {
        IMPLIN<"1P,2E21.14">(x, y);
    }
}

// Those beyond the room of the record are read and dropped.
void readLeaders(int32_t precision, AnnoRecord& anno) {
    const int64_t count = std::abs(int64_t{anno.leaderCount});
    for (int64_t leader = 0; leader < count; ++leader) {
        double dropped[2];
        auto& point = leader < QX_ANNO_LEADERS ? anno.leaderPoints[leader] : dropped;
        readPoint(precision, point[0], point[1]);
    }
}

// False, and it stays as it is, for one that is no number.
bool readFirstPoint(int32_t precision, Point& point) {
    Line line;
    IMPLIN(line);
    if (line.columns(1, 42).find("NaN") != std::string_view::npos) return false;
    if (precision == kSingle) {
        read<"1P,2E14.7">(line, point.x, point.y);
    } else {
        read<"1P,2E21.14">(line, point.x, point.y);
    }
    return true;
}

// A first point that is no number comes out equal to the second, or 0 where there is none.
void readPoints(int32_t precision, AnnotationRecord& record) {
    const int32_t count = record.front().pointCount;
    record.clearTail();
    bool firstIsMissing = false;
    for (int32_t number = 1; number <= count; ++number) {
        Point point;
        if (number == 1) {
            firstIsMissing = !readFirstPoint(precision, point);
        } else {
            readPoint(precision, point.x, point.y);
        }
        if (number == 2 && firstIsMissing) {
            record.clearTail();
            record.add(point);
        }
        record.add(point);
    }
}

// One annotation; false at the end of its group.
bool readAnnotation(const Form& form, int32_t precision, AnnotationSet& set,
                    AnnotationRecord& record) {
    const auto clearUserId = [&](Line& line) {
        if (!clearOverflow(line, 1) || set.lossReported) return;
        set.lossReported = true;
        inform("Annotation subclass: %1%, Unavoidable loss of data for User-ID, set to 0",
               set.subclass);
        warn("Use IDEDIT command with ANNO.%1% option to recover lost data.", set.subclass);
    };
    record.front() = {};
    AnnoRecord& anno = record.front();
    if (form.hasExtraWord) {
        IMPLIN<"8I10">(clearUserId, anno.userId, anno.groupCode, anno.pointCount, anno.leaderCount,
                       anno.textSymbol, anno.lineCount, anno.textLength, anno.extraWord1);
    } else {
        IMPLIN<"7I10">(clearUserId, anno.userId, anno.groupCode, anno.pointCount, anno.leaderCount,
                       anno.textSymbol, anno.lineCount, anno.textLength);
    }
    if (anno.userId == kEndOfGroup) return false;
    if (anno.pointCount < 0) fatal("Invalid point count (%1%)", form.routine);
    if (anno.textLength < 0) fatal("Invalid text length (%1%)", form.routine);
    readLineTable(anno.lineTableB);
    readLineTable(anno.lineStart);
    IMPLIN<"1P,E14.7">(anno.symbolSize);
    if (precision == kSingle) {
        IMPLIN<"1P,3E14.7">(anno.textHeight, anno.extraValues[0], anno.extraValues[1]);
    } else {
        IMPLIN<"1P,3E21.14">(anno.textHeight, anno.extraValues[0], anno.extraValues[1]);
    }
    readLeaders(precision, anno);
    readPoints(precision, record);
    // The points may have moved the record.
    readText(record.front());
    writeAnnotation(set, record);
    return true;
}

void importGroups(const Form& form, const Name& dataset, int32_t precision, Status& status) {
    Line line;
    AnnotationRecord record;
    for (;;) {
        IMPLIN(line);
        AnnotationSet set;
        read<"A13">(line, set.subclass);
        if (set.subclass == kEndOfSection) {
            status = kSuccess;
            return;
        }
        call(anncre_, set.handle, dataset, set.subclass, 1, 1, status);
        if (status != kSuccess) {
            status = kReported;
            return;
        }
        while (readAnnotation(form, precision, set, record)) {}
        call(anncls_, set.handle);
    }
}

}  // namespace

void IMPTX6(const Name& dataset, const int32_t& precision, Status& status) {
    importGroups({"IMPTX6", false}, dataset, precision, status);
}

void IMPTX7(const Name& dataset, const int32_t& precision, Status& status) {
    importGroups({"IMPTX7", true}, dataset, precision, status);
}

}  // namespace intake
