/* Annotation of a coverage: the text placed on it, a file for each subclass. */
#ifndef HOST_QXFEAT_ANNOTATION_H
#define HOST_QXFEAT_ANNOTATION_H

#include "host/qx_api.h"

QX_BEGIN

enum {
    QX_ANNO_LINES = 20,       /* lines of text that have an entry in the tables */
    QX_ANNO_CHARACTERS = 320, /* room for the text */
    QX_ANNO_LEADERS = 5       /* room for leader points */
};

/* The fixed front of an annotation's record; pointCount pairs x, y of 64-bit reals in coverage
 * units follow it with no gap. */
typedef struct AnnoRecord {
    int32_t userId;
    int32_t groupCode;
    float symbolSize;
    int32_t textSymbol;  /* number of the text symbol, from 1 */
    int32_t pointCount;  /* 0: nothing to place */
    int32_t lineCount;   /* lines of text; 0 is one line that starts at point 1 */
    int32_t textLength;  /* characters of text */
    int32_t leaderCount; /* its absolute value is the number of leader points */
    /* Number of each line's first point; the line ends before that of the next one. A negative
     * number marks a line that is not placed. */
    int16_t lineStart[QX_ANNO_LINES];
    int16_t lineTableB[QX_ANNO_LINES];
    double textHeight; /* in coverage units */
    double extraValues[2];
    char text[QX_ANNO_CHARACTERS]; /* as chrstr_ makes it: padded with blanks */
    double leaderPoints[QX_ANNO_LEADERS][2];
    int32_t extraWord1;
    int32_t extraWord2;
} AnnoRecord;

/* Opens the annotation file of one subclass for writing, creating it; a blank subclass is the one
 * set without a name. What is written goes behind what it holds. The two words in between are both
 * 1. status 0, or not 0 and nothing is open. */
QX_API void anncre_(int32_t* handle, const char* coverage, const char* subclass, const int32_t* one,
                    const int32_t* oneMore, int32_t* status, int32_t coverageLength,
                    int32_t subclassLength);

/* Appends one annotation, an AnnoRecord with its points, and gives the number of its record, from
 * 1. Reals of 64 bits are kept in the coverage's precision. A record with a negative pointCount is
 * not kept, and number is then 0. */
QX_API void annwt_(const int32_t* handle, int32_t* number, const void* record);

QX_API void anncls_(const int32_t* handle);

/* Reading. annopn_ opens the file of a subclass, status not 0 if there is none; annrec_ gives how
 * many records it holds; annpos_ makes the one of a number, from 1, the next one.
 * annrd_ reads the next annotation, its points into room for capacity pairs.
 *   status 0; -1 behind the last one; 1 if it has more points than there is room for: then record
 *   tells how many, no points are given, and the next call gives the same one again.
 * annbig_ reads the next annotation, one of three points or more, for its box alone, as annbox_ has
 *   it: status 0 or -1. */
QX_API void annopn_(int32_t* handle, const char* coverage, const char* subclass, int32_t* status,
                    int32_t coverageLength, int32_t subclassLength);
QX_API void annrec_(const int32_t* handle, int32_t* count);
QX_API void annpos_(const int32_t* handle, const int32_t* number, int32_t* status);
QX_API void annrd_(const int32_t* handle, AnnoRecord* record, double* points,
                   const int32_t* capacity, int32_t* status);
QX_API void annbig_(const int32_t* handle, double* box, int32_t* status);

/* The box of an annotation: xmin, ymin, xmax, ymax. The text is taken to be as long as its height
 * for each character; it begins at a single point, runs from the first of two points towards the
 * second, or keeps within its height of more. Without points the box stays as it is. */
QX_API void annbox_(const AnnoRecord* record, const double* points, double* box);

QX_END

#endif
