/* Paths and names. Inputs first, results last; lengths at the end in the order of the texts. A path
 * that is too long for its buffer is blank, which names no file. */
#ifndef HOST_QXBASE_NAMES_H
#define HOST_QXBASE_NAMES_H

#include "host/qx_api.h"

QX_BEGIN

/* Length without trailing blanks, 0 for a blank text. */
QX_API int32_t lenchr_(const char* text, int32_t textLength);

/* The directory part of a path, blank if it has none. edirs_ is the same operation. */
QX_API void edir_(const char* path, char* directory, int32_t pathLength, int32_t directoryLength);
QX_API void edirs_(const char* path, char* directory, int32_t pathLength, int32_t directoryLength);

/* The last name in a path. */
QX_API void ename_(const char* path, char* name, int32_t pathLength, int32_t nameLength);

/* Directory and name joined to a path. A blank directory gives the name alone, a name that is an
 * absolute path gives that path. ejoins_ is the same operation. */
QX_API void ejoin_(const char* directory, const char* name, char* joined, int32_t directoryLength,
                   int32_t nameLength, int32_t joinedLength);
QX_API void ejoins_(const char* directory, const char* name, char* joined, int32_t directoryLength,
                    int32_t nameLength, int32_t joinedLength);

/* The path of a file that belongs to a dataset, by its file code: code 0 is the dataset's own
 * directory. A code that belongs to no file gives a blank path. docs/workspace-format.md lists the
 * codes and their files. */
QX_API void aname_(const char* dataset, char* path, const int32_t* code, int32_t datasetLength,
                   int32_t pathLength);

/* The same for a file of one subclass of a coverage; a blank subclass is none. The subclass is
 * encoded so that no name leaves the coverage's directory or meets another's file. */
QX_API void fname_(const char* coverage, const char* subclass, char* path, const int32_t* code,
                   int32_t coverageLength, int32_t subclassLength, int32_t pathLength);

QX_END

#endif
