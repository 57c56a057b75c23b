#include "text/Escape.h"

#include "text/Utf8.h"

namespace ostrel::text {
namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";

/// Characters beyond ASCII that a terminal takes for commands: U+0080 to U+009F, and those that end a line or change
/// the direction in which it runs (U+2028 to U+202E, U+2066 to U+2069).
bool isWideControl(std::string_view character)
{
    if (character.size() == 2) {
        return character[0] == '\xC2' && static_cast<unsigned char>(character[1]) < 0xA0;
    }
    const auto last = static_cast<unsigned char>(character.back());
    return character.size() == 3 && ((character.substr(0, 2) == "\xE2\x80" && last >= 0xA8 && last <= 0xAE) ||
                                     (character.substr(0, 2) == "\xE2\x81" && last >= 0xA6 && last <= 0xA9));
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

} // namespace ostrel::text
