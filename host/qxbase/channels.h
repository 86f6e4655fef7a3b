/* Text channels: a text file open for reading or writing line by line. Files are read and written
 * as bytes; a line ends at a line feed, and a last line without one is a line. */
#ifndef HOST_QXBASE_CHANNELS_H
#define HOST_QXBASE_CHANNELS_H

#include "host/qx_api.h"

QX_BEGIN

/* Opens an existing file for reading. status 0, or not 0 and no channel is open. */
QX_API void aopen_(int32_t* channel, const char* name, int32_t* status, int32_t nameLength);

/* Creates a file for writing and reading back after arewnd_; an existing file is emptied. */
QX_API void acreat_(int32_t* channel, const char* name, int32_t* status, int32_t nameLength);
/* The same for a file that must not be there yet, such as one named by scrnam_. */
QX_API void acrnew_(int32_t* channel, const char* name, int32_t* status, int32_t nameLength);

/* Closes a channel. A number that is no open channel is left alone. */
QX_API void aclose_(const int32_t* channel);

/* Reads the next line into a buffer, cut or padded with blanks to its length.
 * count   characters of the line that are in the buffer, padding not counted
 * status  0; -1 at the end of the file, and the buffer is blank; above 0 for a failed read */
QX_API void aread_(const int32_t* channel, char* line, int32_t* count, int32_t* status,
                   int32_t lineLength);

/* The same for lines of any length: what does not fit the buffer is not cut but given by the next
 * call, and more is 1 instead of 0. */
QX_API void apiece_(const int32_t* channel, char* piece, int32_t* count, int32_t* more,
                    int32_t* status, int32_t pieceLength);

/* The characters of a file that have been read into memory and that the channel has not given out:
 * those from next on, up to but without end. */
typedef struct QxWindow {
    const char* next;
    const char* end;
} QxWindow;

/* Where a channel keeps its window, for a caller that takes characters where they lie: it moves
 * next forward, up to end at most, and every other operation goes on from there. Only the other
 * operations put characters into the window; one without any, next equal to end, says nothing of
 * the file. The address is good until the channel is closed, goes back or is emptied; it is null
 * for a channel that is not read from. */
QX_API void awindo_(const int32_t* channel, QxWindow** window);

/* Writes a text as one line: awrite_ up to its last non-blank character with a line end,
 * aput_ all its characters and no line end. status 0, or not 0 for a failed write. */
QX_API void awrite_(const int32_t* channel, const char* text, int32_t* status, int32_t textLength);
QX_API void aput_(const int32_t* channel, const char* text, int32_t* status, int32_t textLength);

/* Brings what was written to disk. status 0, or not 0 if any write to the file has failed. */
QX_API void aflush_(const int32_t* channel, int32_t* status);

/* ended becomes 1 if there is no further line to read, otherwise 0. */
QX_API void aatend_(const int32_t* channel, int32_t* ended);

/* Goes back to the first line; a channel that was written to is read from then on. */
QX_API void arewnd_(const int32_t* channel, int32_t* status);

/* Empties a file made with acreat_; the channel is written to from then on, read or not before. */
QX_API void aempty_(const int32_t* channel, int32_t* status);

/* How many bytes of the file have been read so far, line ends included. */
QX_API void abytes_(const int32_t* channel, int64_t* bytes);

/* Deletes a file. status 0, or not 0 if it could not be deleted. */
QX_API void adelet_(const char* name, int32_t* status, int32_t nameLength);

/* status 0 if something of that name exists. */
QX_API void aexist_(const char* name, int32_t* status, int32_t nameLength);
/* status 0 if a path is a symbolic link, wherever that leads. */
QX_API void alink_(const char* name, int32_t* status, int32_t nameLength);

/* The name of a scratch file that does not yet exist, in the directory for temporary files. */
QX_API void scrnam_(char* name, int32_t nameLength);
/* The same as a terminated string; name holds QX_NAME_LENGTH + 1 characters. */
QX_API void scrnamC(char* name);
/* Deletes what still has such a name in this process, for a way out that closes nothing. May be
 * called from any thread. */
QX_API void scrdel_(void);

/* Replaces the name of a volume by that of the next: NAME.e00 is followed by NAME.e01 and so on to
 * NAME.e99, the rest of the name kept.
 * mode    2 for a reader: status not 0 if the next volume does not exist (the name is replaced all
 *         the same); 1 for a writer: status not 0 if it already exists
 * A name without two digits at its end, or one that ends in 99, has no successor: the name stays
 * and status is not 0 in either mode. */
QX_API void iename_(char* name, const int32_t* mode, int32_t* status, int32_t nameLength);

QX_END

#endif
