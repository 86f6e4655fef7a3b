// The process-wide state of the library: what each file here puts back when an import starts.
#ifndef COMPANIONS_QXBASE_STATE_H
#define COMPANIONS_QXBASE_STATE_H

#include <string>
#include <string_view>

namespace qxbase {

void clearMessages();
void forgetFailures();
// Gives the failed read as a message, if there is one.
void tellFailedRead();
void closeChannels();
void closePlainRecordFiles();
void closeRecordFiles();
void closePlots();
void closeLists();
void closeBitmaps();
void closeTransfers();
void closeSurfaces();
void closeMemberChannels();
void closeScratchFiles();
void leaveDirectories();

// A name of a plain record file as a path from the process's current directory.
std::string located(std::string_view name);

// Brings what is written so far to disk.
void flushFiles();

}  // namespace qxbase

#endif
