// Messages in one line: nonftl("%1% already exists", dataset).
#ifndef STREAM_REPORT_H
#define STREAM_REPORT_H

#include <string_view>

#include "host/cpp/call.h"
#include "host/qxbase/messages.h"

namespace intake {

namespace detail {

inline void handOver(int32_t value) { mesint_(&value); }
inline void handOver(std::string_view value) { qx::call(meschr_, value, 0); }
template <std::size_t N>
void handOver(const qx::FixedText<N>& value) {
    qx::call(meschr_, value, 0);
}

}  // namespace detail

// Texts hold %1%, %2%, %3% for the values in their order, and "/&" for a line break.
template <class... Values>
void inform(std::string_view text, const Values&... values) {
    (detail::handOver(values), ...);
    qx::call(inform_, text, -1);
}
template <class... Values>
void warn(std::string_view text, const Values&... values) {
    (detail::handOver(values), ...);
    qx::call(warn_, text, -1);
}
template <class... Values>
void nonftl(std::string_view text, const Values&... values) {
    (detail::handOver(values), ...);
    qx::call(nonftl_, text, -1);
}
// These two end the import and do not return.
template <class... Values>
[[noreturn]] void error(std::string_view text, const Values&... values) {
    (detail::handOver(values), ...);
    qx::call(error_, text, -1);
    __builtin_unreachable();
}
template <class... Values>
[[noreturn]] void fatal(std::string_view text, const Values&... values) {
    (detail::handOver(values), ...);
    qx::call(fatal_, text, -1);
    __builtin_unreachable();
}

}  // namespace intake

#endif
