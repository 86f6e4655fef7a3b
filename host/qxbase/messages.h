/* The message service. A message is a text with the placeholders %1%, %2%, %3%, filled in the order
 * in which values were handed over since the last message; "/&" in the text is a line break. The
 * text is looked through once: a value that holds a placeholder or "/&" is shown as it stands.
 * Control characters in a value are shown escaped. Giving a message empties the queue of values. */
#ifndef HOST_QXBASE_MESSAGES_H
#define HOST_QXBASE_MESSAGES_H

#include "host/qx_api.h"

QX_BEGIN

enum QxMessageLevel { QX_INFORM = 1, QX_WARN = 2, QX_NONFATAL = 3, QX_ERROR = 4, QX_FATAL = 5 };

/* Receives each message as it is given: its level, its text (values filled in, line breaks as line
 * feeds, terminated) and the pointer that was handed to mesink_. Must not throw. */
typedef void (*QxMessageSink)(int32_t level, const char* text, void* user);

/* Sends messages to a host's function, or with a null sink back to standard error. Stays in force
 * until it is set again, over any number of imports. */
QX_API void mesink_(QxMessageSink sink, void* user);

/* Hands over a value for the next placeholder; trailing blanks are not part of a text value. */
QX_API void meschr_(const char* text, const int32_t* zero, int32_t textLength);
QX_API void mesint_(const int32_t* value);

/* Give a message and return. The second argument is always -1. */
QX_API void inform_(const char* text, const int32_t* minusOne, int32_t textLength);
QX_API void warn_(const char* text, const int32_t* minusOne, int32_t textLength);
QX_API void nonftl_(const char* text, const int32_t* minusOne, int32_t textLength);

/* Give a message, see to it that everything written so far is on disk, and unwind to ImportFile by
 * an exception: they do not return, and may only be called below ImportFile or another guard. */
QX_API QX_NORETURN void error_(const char* text, const int32_t* minusOne, int32_t textLength);
QX_API QX_NORETURN void fatal_(const char* text, const int32_t* minusOne, int32_t textLength);

/* The forms for terminated texts. mesrtnC names the routine that the next message comes from; the
 * name is no part of the text, and is shown behind it only where messages go to standard error. */
QX_API void mesrtnC(const char* routine);
QX_API void nonftlC(const char* text);
QX_API QX_NORETURN void fatalC(const char* text);

/* Gives a text as it stands and returns, whatever the level. The queue of values is left alone, and
 * no memory is needed: for a word from another thread, and for one that memory has run out. */
QX_API void mesrawC(int32_t level, const char* text);

/* Registers a function that error_ and fatal_ call before they unwind: each companion gives one
 * that brings its open files to disk. Registering it again has no effect. It must not throw. */
QX_API void onunwC(void (*beforeUnwinding)(void));

QX_END

#endif
