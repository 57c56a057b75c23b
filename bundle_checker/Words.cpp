#include "bundle_checker/Words.h"

#include "bundle_checker/Utf8.h"

namespace ostrel::bundle_checker {
namespace {

using Kind = bundle_reader::JsonValue::Kind;

constexpr std::string_view hexDigits = "0123456789ABCDEF";

/// Characters beyond ASCII that a terminal takes for commands.
bool isWideControl(std::string_view character)
{
    return character.size() == 2 && character[0] == '\xC2' && static_cast<unsigned char>(character[1]) < 0xA0;
}

void appendEscape(std::string& out, char c)
{
    switch (c) {
    case '\n':
        out += "\\n";
        break;
    case '\r':
        out += "\\r";
        break;
    case '\t':
        out += "\\t";
        break;
    default:
        const auto byte = static_cast<unsigned char>(c);
        out += "\\x";
        out += hexDigits[byte >> 4U];
        out += hexDigits[byte & 0xFU];
    }
}

} // namespace

std::string escaped(std::string_view text, std::size_t limit)
{
    std::string out;
    std::size_t shown = 0;
    while (shown < text.size()) {
        const std::size_t length = characterLength(text.substr(shown));
        const std::string_view character = text.substr(shown, length == 0 ? 1 : length);
        if (shown + character.size() > limit) {
            return out + "…";
        }
        const bool isControl = length == 0 || static_cast<unsigned char>(character[0]) < 0x20 || character == "\x7F" ||
                               isWideControl(character);
        if (isControl) {
            for (const char c : character) {
                appendEscape(out, c);
            }
        } else {
            out += character;
        }
        shown += character.size();
    }
    return out;
}

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
