// The state of the interchange stream: one record for the process, at rest between imports.
#ifndef STREAM_READER_STATE_H
#define STREAM_READER_STATE_H

#include <atomic>
#include <cstdint>
#include <string_view>

#include "host/qxbase/channels.h"
#include "stream/types.h"

namespace intake {

// Of a stream that is not open.
inline QxWindow emptyWindow{};

struct ReaderState {
    Name IMPNAM;          // name of the current volume
    Line IMPBUF;          // physical line at hand, in compressed form only
    int32_t IMPUNT = 0;   // channel of the interchange file
    int32_t VOLMAX = 0;   // writer: lines in a volume, 0 for no limit
    int32_t VOLCNT = 1;   // writer: lines written in this volume
    int32_t IMPCOL = 81;  // next unread column of IMPBUF; 81: a new physical line is needed
    int32_t EXPCOL = 0;   // writer: filled columns of IMPBUF
    int32_t EXPVER = 0;   // version number of the file: 0 plain, any other compressed
    int32_t EXPCMP = 0;   // writer: level of compression
    int32_t NOHEAD = 0;   // 1 for a file without a header line
    bool HASCR = false;   // lines carry a carriage return that is to be blanked

    Name firstVolume;                 // to go back to from the precision pass
    int64_t lineNumber = 0;           // physical lines read of the current volume
    int64_t logicalLines = 0;         // lines given out by IMPLIN
    int32_t volumesMade = 0;          // writer: volumes that have been created
    bool onlyCounts = false;          // writer: physical lines are counted and not written
    int64_t linesCounted = 0;         // writer: how many
    std::string_view atHand;          // text of IMPBUF where it lies in the window, or empty
    QxWindow* window = &emptyWindow;  // of the channel, while lines are read from it
};

extern ReaderState reader;

// The logical line behind which a report is due. A host that wishes the end sets it to 0, in
// whatever thread.
inline int64_t dueLine = 0;

// Whether the host is told of the progress, or wishes the end, before the next logical line.
inline bool isReportDue() {
    return reader.logicalLines >= std::atomic_ref<int64_t>{dueLine}.load(std::memory_order_relaxed);
}

}  // namespace intake

#endif
