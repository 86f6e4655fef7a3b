// The environment record of a surface, TINENV: its counts, extent and format version.
#ifndef TIN_ENVIRONMENT_H
#define TIN_ENVIRONMENT_H

#include <cstddef>
#include <cstdint>

#include "host/qxbase/tins.h"

namespace intake {

using TINENV = QxTinEnvironment;
static_assert(offsetof(TINENV, digit) == 12 && offsetof(TINENV, secondHullCount) == 24);
static_assert(offsetof(TINENV, lowestZ) == 28 && offsetof(TINENV, reserved) == 36);
static_assert(offsetof(TINENV, box) == 40 && offsetof(TINENV, fifthReal) == 72);
static_assert(offsetof(TINENV, version) == 88 && sizeof(TINENV) == 96);

// Turn a record in place to the file's byte order and back.
void environmentToFile(TINENV& environment);
void environmentFromFile(TINENV& environment);

// The real form of a version: 6.1 for 60100, 6.11 for 60101.
float realVersion(int32_t version);

// A version's word in the record: integers from 60200 on, the bits of a real below.
int32_t versionWord(int32_t version);

}  // namespace intake

#endif
