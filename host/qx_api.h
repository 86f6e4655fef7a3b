/* What every companion header shares.
 *
 * The companions speak one plain C form: numbers go by address, a text goes as a blank-padded
 * buffer, and the lengths of all texts of a call follow at the end of its arguments, in the order
 * of the texts, as plain 32-bit integers. A status is 0 for success and anything else for failure.
 * Every buffer stays the caller's; an operation never keeps a pointer to one. */
#ifndef HOST_QX_API_H
#define HOST_QX_API_H

#include <stdint.h>

#if defined(__cplusplus)
#define QX_BEGIN extern "C" {
#define QX_END }
#else
#define QX_BEGIN
#define QX_END
#endif

/* Where libraries are not ELF files a list of these names goes with each instead. */
#if defined(__GNUC__) && defined(__ELF__)
#define QX_API __attribute__((visibility("default")))
#else
#define QX_API
#endif
#if defined(__GNUC__)
#define QX_NORETURN __attribute__((noreturn))
#else
#define QX_NORETURN
#endif

/* Characters in a path. The one place to change it. */
#define QX_NAME_LENGTH 1024

/* Characters in the name of a dataset that is to be made: each of its files has a path that fits.
 */
#define QX_DATASET_LENGTH (QX_NAME_LENGTH - 128)

#endif
