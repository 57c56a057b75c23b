#include "bundle_checker/Words.h"

namespace ostrel::bundle_checker {
namespace {

using Kind = bundle_reader::JsonValue::Kind;

} // namespace

std::string quoted(std::string_view text)
{
    return '"' + escaped(text, 60) + '"';
}

std::string ahead(std::string_view text, std::size_t offset)
{
    const std::string_view rest = text.substr(offset);
    return '\'' + escaped(rest.substr(0, rest.find_first_of("\r\n")), 20) + '\'';
}

std::string keyAt(std::string_view path)
{
    return "key \"" + escaped(path) + '"';
}

std::string_view kindOf(const bundle_reader::JsonValue& value)
{
    switch (value.kind) {
    case Kind::null:
        return "null";
    case Kind::boolean:
        return "a boolean";
    case Kind::integer:
    case Kind::wideInteger:
        return "an integer";
    case Kind::number:
        return "a number";
    case Kind::text:
        return "a string";
    case Kind::list:
        return "an array";
    case Kind::map:
        break;
    }
    return "an object";
}

} // namespace ostrel::bundle_checker
