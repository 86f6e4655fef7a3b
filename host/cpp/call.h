// The one way that C++ code calls an operation of the companions.
//
//     call(arccre_, handle, dataset, 1, 1, status);
//
// Numbers and records go by address, texts as pointer with their lengths gathered at the end, in
// order; pointers and callbacks as they are. An argument list that does not fit the operation's
// declaration does not compile: an output needs a variable of just its type.
#ifndef HOST_CPP_CALL_H
#define HOST_CPP_CALL_H

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "host/cpp/fixed_text.h"

namespace qx {

namespace detail {

template <class T>
struct Argument {  // a number or a record
    static T* address(T& value) { return &value; }
    static std::tuple<> length(const T&) { return {}; }
};
template <class T>
struct Argument<T*> {
    static T* address(T* value) { return value; }
    static std::tuple<> length(T*) { return {}; }
};
template <class T>
struct Argument<T* const> : Argument<T*> {};
template <std::size_t N>
struct Argument<FixedText<N>> {
    static char* address(FixedText<N>& text) { return text.data(); }
    static std::tuple<int32_t> length(const FixedText<N>&) { return {static_cast<int32_t>(N)}; }
};
template <std::size_t N>
struct Argument<const FixedText<N>> {
    static const char* address(const FixedText<N>& text) { return text.data(); }
    static std::tuple<int32_t> length(const FixedText<N>&) { return {static_cast<int32_t>(N)}; }
};
template <>
struct Argument<const std::string_view> {
    static const char* address(const std::string_view& text) { return text.data(); }
    static std::tuple<int32_t> length(const std::string_view& text) {
        return {static_cast<int32_t>(text.size())};
    }
};
template <>
struct Argument<std::string_view> : Argument<const std::string_view> {};
template <std::size_t N>
struct Argument<const char[N]> {  // a literal
    static const char* address(const char (&text)[N]) { return text; }
    static std::tuple<int32_t> length(const char (&)[N]) { return {static_cast<int32_t>(N - 1)}; }
};
template <class T, std::size_t N>
struct Argument<std::array<T, N>> {
    static T* address(std::array<T, N>& values) { return values.data(); }
    static std::tuple<> length(const std::array<T, N>&) { return {}; }
};
template <class T, std::size_t N>
struct Argument<const std::array<T, N>> {
    static const T* address(const std::array<T, N>& values) { return values.data(); }
    static std::tuple<> length(const std::array<T, N>&) { return {}; }
};
template <class T>
struct Argument<std::vector<T>> {
    static T* address(std::vector<T>& values) { return values.data(); }
    static std::tuple<> length(const std::vector<T>&) { return {}; }
};
template <class T>
struct Argument<const std::vector<T>> {
    static const T* address(const std::vector<T>& values) { return values.data(); }
    static std::tuple<> length(const std::vector<T>&) { return {}; }
};
template <class T>
struct Argument<std::span<T>> {
    static T* address(const std::span<T>& values) { return values.data(); }
    static std::tuple<> length(const std::span<T>&) { return {}; }
};
template <class T>
struct Argument<const std::span<T>> : Argument<std::span<T>> {};

// What an argument is seen as: an rvalue is constant, so that it cannot stand for an output.
template <class A>
using Seen = std::conditional_t<std::is_lvalue_reference_v<A>, std::remove_reference_t<A>,
                                const std::remove_reference_t<A>>;

}  // namespace detail

template <class R, class... Parameters, class... Arguments>
R call(R (*operation)(Parameters...), Arguments&&... arguments) {
    return std::apply(
        operation,
        std::tuple_cat(
            std::make_tuple(detail::Argument<detail::Seen<Arguments>>::address(arguments)...),
            detail::Argument<detail::Seen<Arguments>>::length(arguments)...));
}

}  // namespace qx

#endif
