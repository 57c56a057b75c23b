#pragma once

#include "cppmicroservices/FrameworkConfig.h"

#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

/// How values held by an Any are written, in three forms: text, JSON, and C++ source.
///
/// Any calls `any_value_to_<form>(os, value, …)` unqualified, so a type joins by an overload in its own namespace or by
/// a specialisation of the general template. Included by Any.h only; the definitions for maps stand in AnyMapText.h,
/// because they need Any complete.
namespace cppmicroservices {

class Any;

/// Begins a line with `indent` blanks, unless `increment` is 0: then all stays on one line.
US_Framework_EXPORT std::ostream& newline_and_indent(std::ostream& os, uint8_t const increment, int32_t const indent);

US_Framework_EXPORT std::ostream& any_value_to_string(std::ostream& os, Any const& any);
US_Framework_EXPORT std::ostream& any_value_to_json(std::ostream& os, Any const& val, uint8_t const, int32_t const);
/// Quoted, with the escapes of JSON; bytes from 0x7f on are written as they are.
US_Framework_EXPORT std::ostream& any_value_to_json(std::ostream& os, std::string const& val, uint8_t const,
                                                    int32_t const);
US_Framework_EXPORT std::ostream& any_value_to_json(std::ostream& os, bool val, uint8_t const, int32_t const);
US_Framework_EXPORT std::ostream& any_value_to_cpp(std::ostream& os, Any const& val, uint8_t const, int32_t const);
US_Framework_EXPORT std::ostream& any_value_to_cpp(std::ostream& os, std::string const& val, uint8_t const,
                                                   int32_t const);
US_Framework_EXPORT std::ostream& any_value_to_cpp(std::ostream& os, bool val, uint8_t const, int32_t const);

// Predicates have no text; without these overloads they could not be held at all.
template <typename T>
std::ostream& any_value_to_string(std::ostream& os, std::function<bool(T const&)> const&)
{
    return os;
}

template <typename T>
std::ostream& any_value_to_json(std::ostream& os, std::function<bool(T const&)> const&, uint8_t const, int32_t const)
{
    return os;
}

template <typename T>
std::ostream& any_value_to_cpp(std::ostream& os, std::function<bool(T const&)> const&, uint8_t const, int32_t const)
{
    return os;
}

template <class T>
std::ostream& any_value_to_string(std::ostream& os, T const& val)
{
    return os << val;
}

template <class T>
std::ostream& any_value_to_json(std::ostream& os, T const& val, uint8_t const = 0, int32_t const = 0)
{
    return os << val;
}

template <class T>
std::ostream& any_value_to_cpp(std::ostream& os, T const& val, uint8_t const = 0, int32_t const = 0)
{
    return os << val;
}

template <class E>
std::ostream& any_value_to_string(std::ostream& os, std::vector<E> const& vec);
template <class E>
std::ostream& any_value_to_json(std::ostream& os, std::vector<E> const& vec, uint8_t const, int32_t const);
template <class E>
std::ostream& any_value_to_cpp(std::ostream& os, std::vector<E> const& vec, uint8_t const, int32_t const);

template <class E>
std::ostream& any_value_to_string(std::ostream& os, std::list<E> const& l);
template <class E>
std::ostream& any_value_to_json(std::ostream& os, std::list<E> const& l, uint8_t const, int32_t const);
template <class E>
std::ostream& any_value_to_cpp(std::ostream& os, std::list<E> const& l, uint8_t const, int32_t const);

template <class E>
std::ostream& any_value_to_string(std::ostream& os, std::set<E> const& s);
template <class E>
std::ostream& any_value_to_json(std::ostream& os, std::set<E> const& s, uint8_t const, int32_t const);
template <class E>
std::ostream& any_value_to_cpp(std::ostream& os, std::set<E> const& s, uint8_t const, int32_t const);

template <class K>
std::ostream& any_value_to_string(std::ostream& os, std::map<K, Any> const& m);
template <class K, class V>
std::ostream& any_value_to_string(std::ostream& os, std::map<K, V> const& m);
template <class K>
std::ostream& any_value_to_json(std::ostream& os, std::map<K, Any> const& m, uint8_t const, int32_t const);
template <class K, class V>
std::ostream& any_value_to_json(std::ostream& os, std::map<K, V> const& m, uint8_t const, int32_t const);
template <class K>
std::ostream& any_value_to_cpp(std::ostream& os, std::map<K, Any> const& m, uint8_t const, int32_t const);
template <class K, class V>
std::ostream& any_value_to_cpp(std::ostream& os, std::map<K, V> const& m, uint8_t const, int32_t const);

namespace detail {

/// Writes the items of [first, last) with `writeItem`, separated by `separator`, each on a line of its own when
/// `increment` is not 0, and ends the last line in front of the closing bracket.
template <typename Iterator, typename WriteItem>
void writeItems(std::ostream& os, Iterator first, Iterator last, char const* separator, uint8_t increment,
                int32_t indent, WriteItem&& writeItem)
{
    if (first == last) {
        return;
    }
    char const* before = "";
    for (; first != last; ++first) {
        os << before;
        before = separator;
        newline_and_indent(os, increment, indent);
        writeItem(*first);
    }
    newline_and_indent(os, increment, indent - increment);
}

} // namespace detail

/// `[a,b]`
template <typename Iterator>
std::ostream& container_to_string(std::ostream& os, Iterator i1, Iterator i2)
{
    os << '[';
    detail::writeItems(os, i1, i2, ",", 0, 0, [&os](auto const& item) { any_value_to_string(os, item); });
    return os << ']';
}

template <typename Iterator>
std::ostream& container_to_json(std::ostream& os, Iterator i1, Iterator i2, uint8_t const increment = 0,
                                int32_t const indent = 0)
{
    os << '[';
    detail::writeItems(os, i1, i2, ",", increment, indent,
                       [&](auto const& item) { any_value_to_json(os, item, increment, indent + increment); });
    return os << ']';
}

/// `AnyVector {{a,b}}`
template <typename Iterator>
std::ostream& container_to_cpp(std::ostream& os, Iterator i1, Iterator i2, uint8_t const increment = 0,
                               int32_t const indent = 0)
{
    os << "AnyVector {{";
    detail::writeItems(os, i1, i2, ",", increment, indent,
                       [&](auto const& item) { any_value_to_cpp(os, item, increment, indent + increment); });
    return os << "}}";
}

template <class E>
std::ostream& any_value_to_string(std::ostream& os, std::vector<E> const& vec)
{
    return container_to_string(os, vec.begin(), vec.end());
}

template <class E>
std::ostream& any_value_to_json(std::ostream& os, std::vector<E> const& vec, uint8_t const increment,
                                int32_t const indent)
{
    return container_to_json(os, vec.begin(), vec.end(), increment, indent);
}

template <class E>
std::ostream& any_value_to_cpp(std::ostream& os, std::vector<E> const& vec, uint8_t const increment,
                               int32_t const indent)
{
    return container_to_cpp(os, vec.begin(), vec.end(), increment, indent);
}

template <class E>
std::ostream& any_value_to_string(std::ostream& os, std::list<E> const& l)
{
    return container_to_string(os, l.begin(), l.end());
}

template <class E>
std::ostream& any_value_to_json(std::ostream& os, std::list<E> const& l, uint8_t const increment, int32_t const indent)
{
    return container_to_json(os, l.begin(), l.end(), increment, indent);
}

template <class E>
std::ostream& any_value_to_cpp(std::ostream& os, std::list<E> const& l, uint8_t const increment, int32_t const indent)
{
    return container_to_cpp(os, l.begin(), l.end(), increment, indent);
}

template <class E>
std::ostream& any_value_to_string(std::ostream& os, std::set<E> const& s)
{
    return container_to_string(os, s.begin(), s.end());
}

template <class E>
std::ostream& any_value_to_json(std::ostream& os, std::set<E> const& s, uint8_t const increment, int32_t const indent)
{
    return container_to_json(os, s.begin(), s.end(), increment, indent);
}

template <class E>
std::ostream& any_value_to_cpp(std::ostream& os, std::set<E> const& s, uint8_t const increment, int32_t const indent)
{
    return container_to_cpp(os, s.begin(), s.end(), increment, indent);
}

} // namespace cppmicroservices
