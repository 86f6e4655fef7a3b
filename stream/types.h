// The few types that every section routine speaks.
#ifndef STREAM_TYPES_H
#define STREAM_TYPES_H

#include <cstdint>

#include "host/cpp/call.h"
#include "host/cpp/fixed_text.h"

namespace intake {

using qx::call;
using qx::FixedText;
using qx::Name;

// A section line.
using Line = FixedText<80>;

// 0 is success, kReported a failure that has been reported or is none of the caller's business.
using Status = int32_t;
inline constexpr Status kSuccess = 0;
inline constexpr Status kReported = -1;

// A handle that an operation of the companions gave out.
using Handle = int32_t;

// Precision codes of a section. Routines ask for kSingle only: every other code reads the wide
// form.
inline constexpr int32_t kOldest = 1;
inline constexpr int32_t kSingle = 2;
inline constexpr int32_t kDouble = 3;

}  // namespace intake

#endif
