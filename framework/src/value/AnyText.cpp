#include "cppmicroservices/AnyMap.h"

#include <string_view>

namespace cppmicroservices {

namespace {

void writeQuoted(std::ostream& os, std::string_view text)
{
    constexpr char hexDigits[] = "0123456789abcdef";
    os << '"';
    for (const char c : text) {
        switch (c) {
        case '"':
            os << "\\\"";
            break;
        case '\\':
            os << "\\\\";
            break;
        case '\b':
            os << "\\b";
            break;
        case '\f':
            os << "\\f";
            break;
        case '\n':
            os << "\\n";
            break;
        case '\r':
            os << "\\r";
            break;
        case '\t':
            os << "\\t";
            break;
        default:
            if (const auto byte = static_cast<unsigned char>(c); byte < 0x20) {
                os << "\\u00" << hexDigits[byte >> 4] << hexDigits[byte & 0xf];
            } else {
                os << c;
            }
        }
    }
    os << '"';
}

std::string_view kindName(AnyMap const& m)
{
    switch (m.GetType()) {
    case AnyMap::ORDERED_MAP:
        return "ORDERED_MAP";
    case AnyMap::UNORDERED_MAP:
        return "UNORDERED_MAP";
    default:
        return "UNORDERED_MAP_CASEINSENSITIVE_KEYS";
    }
}

} // namespace

std::ostream& newline_and_indent(std::ostream& os, uint8_t const increment, int32_t const indent)
{
    if (increment > 0) {
        os << '\n';
        for (int32_t blank = 0; blank < indent; ++blank) {
            os << ' ';
        }
    }
    return os;
}

std::ostream& any_value_to_string(std::ostream& os, Any const& any)
{
    return os << any.ToString();
}

std::ostream& any_value_to_json(std::ostream& os, Any const& val, uint8_t const increment, int32_t const indent)
{
    return os << val.ToJSON(increment, indent);
}

std::ostream& any_value_to_json(std::ostream& os, std::string const& val, uint8_t const, int32_t const)
{
    writeQuoted(os, val);
    return os;
}

std::ostream& any_value_to_json(std::ostream& os, bool val, uint8_t const, int32_t const)
{
    return os << (val ? "true" : "false");
}

std::ostream& any_value_to_cpp(std::ostream& os, Any const& val, uint8_t const increment, int32_t const indent)
{
    return os << val.ToCPP(increment, indent);
}

std::ostream& any_value_to_cpp(std::ostream& os, std::string const& val, uint8_t const, int32_t const)
{
    os << "std::string(";
    writeQuoted(os, val);
    return os << ')';
}

std::ostream& any_value_to_cpp(std::ostream& os, bool val, uint8_t const, int32_t const)
{
    return os << (val ? "true" : "false");
}

template <>
std::ostream& any_value_to_string(std::ostream& os, AnyMap const& m)
{
    os << '{';
    detail::writeItems(os, m.begin(), m.end(), ", ", 0, 0,
                       [&os](AnyMap::const_reference item) { os << item.first << " : " << item.second.ToString(); });
    return os << '}';
}

template <>
std::ostream& any_value_to_json(std::ostream& os, AnyMap const& m, uint8_t const increment, int32_t const indent)
{
    os << '{';
    detail::writeItems(os, m.begin(), m.end(), ", ", increment, indent, [&](AnyMap::const_reference item) {
        os << '"' << item.first << "\" : " << item.second.ToJSON(increment, indent + increment);
    });
    return os << '}';
}

template <>
std::ostream& any_value_to_cpp(std::ostream& os, AnyMap const& m, uint8_t const increment, int32_t const indent)
{
    os << "AnyMap { " << kindName(m) << ", {";
    bool first = true;
    for (auto const& item : m) {
        os << (first ? "" : ", ");
        first = false;
        // Entries stand one level further in than those of a std::map do.
        newline_and_indent(os, increment, indent + increment);
        os << "{\"" << item.first << "\" , " << item.second.ToCPP(increment, indent + 2 * increment) << '}';
    }
    if (!first) {
        newline_and_indent(os, increment, indent - increment);
    }
    return os << "}}";
}

} // namespace cppmicroservices
