#pragma once

#include "cppmicroservices/detail/AnyText.h"

/// The texts of `std::map`s held by an Any. Included by Any.h, at its end. Keys are written as they are, unescaped.
namespace cppmicroservices {

/// `{key : value, key : value}`
template <class K>
std::ostream& any_value_to_string(std::ostream& os, std::map<K, Any> const& m)
{
    os << '{';
    detail::writeItems(os, m.begin(), m.end(), ", ", 0, 0,
                       [&os](auto const& item) { os << item.first << " : " << item.second.ToString(); });
    return os << '}';
}

template <class K, class V>
std::ostream& any_value_to_string(std::ostream& os, std::map<K, V> const& m)
{
    os << '{';
    detail::writeItems(os, m.begin(), m.end(), ", ", 0, 0,
                       [&os](auto const& item) { os << item.first << " : " << item.second; });
    return os << '}';
}

/// `{"key" : value, "key" : value}`
template <class K>
std::ostream& any_value_to_json(std::ostream& os, std::map<K, Any> const& m, uint8_t const increment,
                                int32_t const indent)
{
    os << '{';
    detail::writeItems(os, m.begin(), m.end(), ", ", increment, indent, [&](auto const& item) {
        os << '"' << item.first << "\" : " << item.second.ToJSON(increment, indent + increment);
    });
    return os << '}';
}

/// As above; but the values are written by `<<`, so that strings come without quotes.
template <class K, class V>
std::ostream& any_value_to_json(std::ostream& os, std::map<K, V> const& m, uint8_t const increment,
                                int32_t const indent)
{
    os << '{';
    detail::writeItems(os, m.begin(), m.end(), ", ", increment, indent,
                       [&](auto const& item) { os << '"' << item.first << "\" : " << item.second; });
    return os << '}';
}

/// `AnyMap { ORDERED_MAP, {{"key" , value}, {"key" , value}}}`
template <class K>
std::ostream& any_value_to_cpp(std::ostream& os, std::map<K, Any> const& m, uint8_t const increment,
                               int32_t const indent)
{
    os << "AnyMap { ORDERED_MAP, {";
    detail::writeItems(os, m.begin(), m.end(), ", ", increment, indent, [&](auto const& item) {
        os << "{\"" << item.first << "\" , " << item.second.ToCPP(increment, indent + increment) << '}';
    });
    return os << "}}";
}

template <class K, class V>
std::ostream& any_value_to_cpp(std::ostream& os, std::map<K, V> const& m, uint8_t const increment, int32_t const indent)
{
    os << "AnyMap { ORDERED_MAP, {";
    detail::writeItems(os, m.begin(), m.end(), ", ", increment, indent,
                       [&](auto const& item) { os << "{\"" << item.first << "\" , " << item.second << '}'; });
    return os << "}}";
}

} // namespace cppmicroservices
