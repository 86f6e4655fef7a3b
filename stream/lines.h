// The next logical line, read by its format:
//
//     IMPLIN<"1P,2E21.14">(x, y);
//
// does what IMPLIN(line) and read<"1P,2E21.14">(line, x, y) do.
//
// Most lines are read where they lie in the block that was read, without a copy. Precondition: the
// fast readers know all fields, and a line end stands right behind the last one. The readers refuse
// a line end within a field, so that nothing looks for it. Any other line goes the way of those
// two, and so do those of the compressed form that packed_lines.h does not take.
#ifndef STREAM_LINES_H
#define STREAM_LINES_H

#include "host/qxbase/channels.h"
#include "stream/format.h"
#include "stream/packed_lines.h"
#include "stream/reader.h"

namespace intake {

namespace detail {

// In the plain form.
template <const Layout& layout, class... Values>
[[gnu::always_inline]] inline bool takePlainLine(Values&... values) {
    constexpr std::size_t kBehind = std::max<std::size_t>(fast::kBehindReals, 2);
    QxWindow& window = *reader.window;
    const char* next = window.next;
    if (window.end - next < static_cast<std::ptrdiff_t>(layout.width + kBehind) ||
        !readFast<layout>(next, std::tie(values...))) {
        return false;
    }
    next += layout.width;
    if (*next == '\r') ++next;
    if (*next != '\n') return false;
    window.next = next + 1;
    ++reader.lineNumber;
    ++reader.logicalLines;
    return true;
}

// In the compressed form.
template <const Layout& layout, class... Values>
[[gnu::always_inline]] inline bool takePackedLine(Values&... values) {
    if constexpr (layout.fields[0].kind == 'E' && runOfFields(layout, 0) == layout.count) {
        std::array<double, layout.count> reals;
        if (!takePackedReals<layout.fields[0].decimals, layout.count>(reals.data())) return false;
        const double* next = reals.data();
        ((values = static_cast<Values>(*next++)), ...);
        return true;
    }
    return false;
}

}  // namespace detail

// False, and nothing is read, if the next line does not lie there like that; the values are then
// left with anything.
template <detail::FormatText text, class... Values>
[[gnu::always_inline]] inline bool takeLine(Values&... values) {
    constexpr const detail::Layout& layout = detail::kLayout<text>;
    if constexpr (detail::isFast<Values...>(layout)) {
        if (isReportDue()) return false;
        return reader.EXPVER == 0 ? detail::takePlainLine<layout>(values...)
                                  : detail::takePackedLine<layout>(values...);
    }
    return false;
}

// A line that is not taken is shown to mend before it is read, which may change it.
template <detail::FormatText text, class Mend, class... Values>
requires std::invocable<Mend, Line&>
[[gnu::always_inline]] inline void IMPLIN(Mend mend, Values&... values) {
    if (takeLine<text>(values...)) [[likely]]
        return;
    Line line;
    IMPLIN(line);
    mend(line);
    read<text>(line, values...);
}
template <detail::FormatText text, class... Values>
[[gnu::always_inline]] inline void IMPLIN(Values&... values) {
    IMPLIN<text>([](Line&) {}, values...);
}

}  // namespace intake

#endif
