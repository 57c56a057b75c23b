#pragma once

#include <type_traits>

/// The overload of `member` that has exactly this type; does not compile when there is none. Its address is taken in an
/// unevaluated place: where the undefined behaviour sanitizer watches, g++ does not count it as a constant.
#define CONTRACT_MEMBER(type, member, ...)                                                                             \
    static_assert(std::is_same_v<decltype(static_cast<__VA_ARGS__>(&type::member)), __VA_ARGS__>, #type "::" #member)

namespace contract {

template <class T>
constexpr bool isValue = std::is_copy_constructible_v<T>&& std::is_copy_assignable_v<T>&&
    std::is_move_constructible_v<T>&& std::is_default_constructible_v<T>;

} // namespace contract
