// The process-wide state of the library: what each file here puts back when an import starts.
#ifndef COMPANIONS_QXBASE_STATE_H
#define COMPANIONS_QXBASE_STATE_H

namespace qxbase {

void clearMessages();
void closeChannels();
void closePlainRecordFiles();
void closeRecordFiles();
void closeLists();
void closeBitmaps();
void leaveDirectories();

// Brings what is written so far to disk.
void flushFiles();

}  // namespace qxbase

#endif
