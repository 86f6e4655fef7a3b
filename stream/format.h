// Lines cut by the notation that describes them, checked when compiled:
//
//     read<"7I10">(line, number, userId, from, to, left, right, count);
//     read<"1P,2E21.14">(line, x, y);
//     read<"6I10,A16">(line, words..., name);
//
// nIw integers, nEw.d reals, nAw texts, nLw logicals, nX skips; 1P sets the scale for the reals
// behind it. What lies beyond the end of the line reads as blanks. A field that breaks its rule
// ends the import. Fields that nobody asked for are written _ (intake::ignored) and not decoded.
// Integers go into int16_t, int32_t or int64_t and must fit; reals into double, or into float by
// one rounding of the 64-bit value; texts into a FixedText.
#ifndef STREAM_FORMAT_H
#define STREAM_FORMAT_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "host/cpp/fixed_text.h"
#include "stream/fast_fields.h"
#include "stream/fast_integers.h"
#include "stream/fast_reals.h"
#include "stream/fields.h"

namespace intake {

struct Ignored {};
inline constexpr Ignored ignored{};

namespace detail {

template <std::size_t N>
struct FormatText {
    char characters[N];
    consteval FormatText(const char (&text)[N]) { std::copy_n(text, N, characters); }  // NOLINT
    constexpr std::string_view view() const { return {characters, N - 1}; }
};

struct Field {
    char kind = 0;
    std::size_t first = 0;  // from 0
    std::size_t width = 0;
    int decimals = 0;
    int scale = 0;
};

constexpr std::size_t kMaximumFields = 24;

struct Layout {
    std::array<Field, kMaximumFields> fields{};
    std::size_t count = 0;
    std::size_t width = 0;  // columns up to the end of the last field
};

consteval Layout parseFormat(std::string_view text) {
    Layout layout;
    std::size_t column = 0;
    int scale = 0;
    std::size_t index = 0;
    const auto digit = [&] {
        return index < text.size() && text[index] >= '0' && text[index] <= '9';
    };
    const auto number = [&](std::size_t otherwise) {
        if (!digit()) return otherwise;
        std::size_t value = 0;
        while (digit()) value = value * 10 + static_cast<std::size_t>(text[index++] - '0');
        return value;
    };
    while (index < text.size()) {
        const std::size_t repeat = number(1);
        if (index >= text.size()) throw "a number at the end of a format";
        const char kind = text[index++];
        if (kind == 'P') {
            scale = static_cast<int>(repeat);
        } else if (kind == 'X') {
            column += repeat;
        } else if (kind == 'I' || kind == 'E' || kind == 'A' || kind == 'L') {
            const std::size_t width = number(0);
            int decimals = 0;
            if (width == 0) throw "a field without a width";
            if (kind == 'E') {
                if (index >= text.size() || text[index++] != '.') throw "a real without decimals";
                decimals = static_cast<int>(number(0));
            }
            for (std::size_t count = 0; count < repeat; ++count) {
                if (layout.count == kMaximumFields) throw "too many fields";
                layout.fields[layout.count++] = {kind, column, width, decimals, scale};
                column += width;
            }
            layout.width = column;
        } else {
            throw "an unknown letter in a format";
        }
        if (index < text.size() && text[index] == ',') ++index;
    }
    return layout;
}

// Out of the way of the fast reading, which goes to where a line is read.
template <class T>
[[gnu::noinline]] T carefulInteger(std::string_view field, std::size_t firstColumn) {
    T value{};
    if (!parseInteger(field, value)) failedField(field, firstColumn);
    return value;
}

template <class T>
inline constexpr bool isFixedText = false;
template <std::size_t N>
inline constexpr bool isFixedText<qx::FixedText<N>> = true;

template <Field field, class T>
[[gnu::always_inline]] inline void readField(std::string_view line, T& value) {
    if constexpr (!std::is_same_v<std::remove_const_t<T>, Ignored>) {
        const std::string_view text =
            field.first < line.size() ? line.substr(field.first, field.width) : std::string_view{};
        if constexpr (isFixedText<T>) {
            static_assert(field.kind == 'A', "a text wants an A field");
            value.assign(text);
        } else if constexpr (std::is_same_v<T, bool>) {
            static_assert(field.kind == 'L', "a logical wants an L field");
            if (!parseLogical(text, value)) failedField(text, field.first + 1);
        } else if constexpr (std::is_floating_point_v<T>) {
            static_assert(field.kind == 'E', "a real wants an E field");
            double wide = 0;
            if constexpr (fast::isRealShape(field.width, field.decimals)) {
                if (text.size() == field.width &&
                    fast::readReal<field.decimals>(text.data(), wide)) {
                    value = static_cast<T>(wide);
                    return;
                }
            }
            if (!parseReal(text, field.decimals, field.scale, wide)) {
                failedField(text, field.first + 1);
            }
            value = static_cast<T>(wide);
        } else {
            static_assert(field.kind == 'I', "an integer wants an I field");
            if (text.size() == field.width && fast::readInteger<field.width>(text.data(), value)) {
                return;
            }
            value = carefulInteger<T>(text, field.first + 1);
        }
    }
}

template <FormatText text>
inline constexpr Layout kLayout = parseFormat(text.view());

// Whether the fast readers know all fields, which leave no column to anything else.
template <class... Values>
consteval bool isFast(const Layout& layout) {
    std::size_t column = 0;
    for (std::size_t index = 0; index < layout.count; ++index) {
        const Field& field = layout.fields[index];
        const bool known = field.kind == 'I'   ? field.width <= fast::kWidestInteger
                           : field.kind == 'E' ? fast::isRealShape(field.width, field.decimals)
                                               : false;
        if (!known || field.first != column) return false;
        column += field.width;
    }
    return layout.count > 0 && (!std::is_same_v<std::remove_const_t<Values>, Ignored> && ...);
}

// How many fields of one shape stand side by side from one on.
constexpr std::size_t runOfFields(const Layout& layout, std::size_t first) {
    std::size_t end = first;
    while (end < layout.count && layout.fields[end].kind == layout.fields[first].kind &&
           layout.fields[end].width == layout.fields[first].width) {
        ++end;
    }
    return end - first;
}

// All fields from one on, by the fast readers. False, and some values are set, if one of them asks
// for more care.
template <const Layout& layout, std::size_t index = 0, class... Values>
[[gnu::always_inline]] inline bool readFast(const char* line,
                                            const std::tuple<Values&...>& values) {
    if constexpr (index == layout.count) {
        return true;
    } else {
        constexpr Field field = layout.fields[index];
        constexpr std::size_t count = runOfFields(layout, index);
        const char* const fields = line + field.first;
        const bool read = [&]<std::size_t... each>(std::index_sequence<each...>) {
            if constexpr (field.kind == 'E') {
                std::array<double, count> reals;
                if (!fast::readReals<field.decimals, count>(fields, reals.data())) return false;
                ((std::get<index + each>(values) = static_cast<std::remove_reference_t<
                      std::tuple_element_t<index + each, std::tuple<Values&...>>>>(reals[each])),
                 ...);
                return true;
            } else if constexpr ((std::is_same_v<
                                      int32_t&,
                                      std::tuple_element_t<index + each, std::tuple<Values&...>>> &&
                                  ...)) {
                std::array<int32_t, count> integers;
                if (!fast::readIntegers<field.width, count>(fields, integers.data())) return false;
                ((std::get<index + each>(values) = integers[each]), ...);
                return true;
            } else {
                return (fast::readInteger<field.width>(fields + each * field.width,
                                                       std::get<index + each>(values)) &&
                        ...);
            }
        }
        (std::make_index_sequence<count>{});
        return read && readFast<layout, index + count>(line, values);
    }
}

template <const Layout& layout, class... Values>
void readEach(std::string_view line, Values&... values) {
    [&]<std::size_t... index>(std::index_sequence<index...>) {
        (readField<layout.fields[index]>(line, values), ...);
    }
    (std::index_sequence_for<Values...>{});
}

}  // namespace detail

// Reads the fields of the format in their order into the values, of which there must be as many.
template <detail::FormatText text, class... Values>
void read(std::string_view line, Values&... values) {
    constexpr const detail::Layout& layout = detail::kLayout<text>;
    static_assert(layout.count == sizeof...(values), "as many values as the format has fields");
    if constexpr (detail::isFast<Values...>(layout) && layout.count > 1) {
        if (line.size() >= layout.width + fast::kBehindReals &&
            detail::readFast<layout>(line.data(), std::tie(values...))) [[likely]] {
            return;
        }
    }
    detail::readEach<layout>(line, values...);
}
template <detail::FormatText text, std::size_t N, class... Values>
void read(const qx::FixedText<N>& line, Values&... values) {
    read<text>(line.full(), values...);
}

}  // namespace intake

#endif
