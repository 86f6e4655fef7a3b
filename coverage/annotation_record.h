// What the three forms of annotation have in common: the record, its text and its limits.
#ifndef COVERAGE_ANNOTATION_RECORD_H
#define COVERAGE_ANNOTATION_RECORD_H

#include "coverage/growing_record.h"
#include "coverage/point.h"
#include "host/qxfeat/annotation.h"
#include "stream/types.h"

namespace intake {

using AnnotationRecord = GrowingRecord<AnnoRecord, Point>;
using Subclass = FixedText<13>;

// The annotation of one subclass while it is written; the warnings are given once in each.
struct AnnotationSet {
    Handle handle = 0;
    Subclass subclass;
    bool lossReported = false;
    bool cutReported = false;
};

// Reads the lines of an annotation's text, as many as its textLength asks for.
void readText(AnnoRecord& anno);

// Stores the record. Leader points and characters beyond what a record holds were read and are
// dropped here, with counts to match; the first time in a set says so.
void writeAnnotation(AnnotationSet& set, AnnotationRecord& record);

}  // namespace intake

#endif
