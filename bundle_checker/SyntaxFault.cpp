#include "bundle_checker/SyntaxFault.h"

#include "bundle_checker/Words.h"

#include <algorithm>
#include <cctype>

namespace ostrel::bundle_checker {
namespace {

using Kind = bundle_reader::JsonFault::Kind;

constexpr std::string_view blanks = " \t\r\n";
constexpr std::string_view numberCharacters = "+-.0123456789Ee";

/// A description in the making.
struct Place {
    std::size_t offset;
    std::string text;
};

bool isLetter(char c)
{
    return std::isalpha(static_cast<unsigned char>(c)) != 0;
}

/// Behind the last byte before `offset` that is no blank.
std::size_t endOfWhatStands(std::string_view text, std::size_t offset)
{
    return text.substr(0, offset).find_last_not_of(blanks) + 1;
}

bool isComment(std::string_view rest)
{
    return rest.substr(0, 2) == "//" || rest.substr(0, 2) == "/*";
}

/// The opening quotation mark of the text in which `offset` lies. All before it is as JSON wants it.
std::size_t openingQuote(std::string_view text, std::size_t offset)
{
    std::size_t opening = 0;
    bool inText = false;
    for (std::size_t i = 0; i < offset; ++i) {
        if (text[i] == '"') {
            inText = !inText;
            opening = i;
        } else if (inText && text[i] == '\\') {
            ++i;
        }
    }
    return opening;
}

Place describeUnclosedText(std::string_view text, std::size_t offset)
{
    const std::size_t opening = openingQuote(text, offset);
    const std::string hint = offset < text.size() ? "; a line break in a string is written as \\n" : "";
    return {opening, "the string " + ahead(text, opening) + " is not closed: its closing '\"' is missing" + hint};
}

Place describeControlCharacter(std::string_view text, std::size_t offset)
{
    const char c = offset < text.size() ? text[offset] : '\n';
    if (c == '\n' || c == '\r') {
        return describeUnclosedText(text, offset);
    }
    return {offset, "a control character inside a string must be written as an escape: it is " +
                        escaped(text.substr(offset, 1))};
}

Place describeEscape(std::string_view text, std::size_t offset)
{
    const std::string_view escape = text.substr(offset, 2);
    if (escape.size() < 2 || escape[1] == '\n' || escape[1] == '\r') {
        return describeUnclosedText(text, offset);
    }
    return {offset,
            "unknown escape '" + escaped(escape) + R"(' in a string; known are \" \\ \/ \b \f \n \r \t and \uXXXX)"};
}

/// @param wanted  what JSON allows here
Place describeExpected(std::string_view text, std::size_t offset, const std::string& wanted)
{
    if (offset >= text.size()) {
        // Not behind the blank lines at the end, where nobody looks for it.
        return {endOfWhatStands(text, offset), "the text ends too early: " + wanted + " is missing"};
    }
    return {offset, wanted + " was expected at " + ahead(text, offset)};
}

/// A bracket that follows a comma: the comma is what has to go.
bool followsComma(std::string_view text, std::size_t offset)
{
    const std::size_t end = endOfWhatStands(text, offset);
    return end > 0 && text[end - 1] == ',';
}

Place describeComma(std::string_view text, std::size_t offset)
{
    return {endOfWhatStands(text, offset) - 1, std::string{"a comma may not stand before '"} + text[offset] + '\''};
}

Place describeMissingKey(std::string_view text, std::size_t offset)
{
    if (text.substr(offset, 1) == "}" && followsComma(text, offset)) {
        return describeComma(text, offset);
    }
    if (offset >= text.size() && !followsComma(text, offset)) {
        return describeExpected(text, offset, "'}'");
    }
    Place place = describeExpected(text, offset, "a key");
    if (offset < text.size() && (isLetter(text[offset]) || text[offset] == '\'')) {
        place.text += "; keys stand in double quotation marks";
    }
    return place;
}

Place describeMissingComma(std::string_view text, std::size_t offset, char closing)
{
    if (offset >= text.size()) {
        return describeExpected(text, offset, std::string{'\'', closing, '\''});
    }
    const bool isDigit = std::isdigit(static_cast<unsigned char>(text[offset])) != 0;
    if (isDigit && offset > 0 && text[offset - 1] == '0') {
        return {offset - 1, "a number of several digits may not begin with 0"};
    }
    return describeExpected(text, offset, std::string{"',' or '"} + closing + '\'');
}

/// The parser may have gone into a word that looked like "true", or past a sign.
Place describeValue(std::string_view text, std::size_t offset)
{
    while (offset > 0 && (isLetter(text[offset - 1]) || text[offset - 1] == '-')) {
        --offset;
    }
    if (text.substr(offset, 1) == "]" && followsComma(text, offset)) {
        return describeComma(text, offset);
    }
    Place place = describeExpected(text, offset, "a value");
    if (text.substr(offset, 1) == "'") {
        place.text += "; strings stand in double quotation marks";
    }
    return place;
}

Place describeNumber(std::string_view text, std::size_t offset, const std::string& fault)
{
    while (offset > 0 && numberCharacters.find(text[offset - 1]) != std::string_view::npos) {
        --offset;
    }
    const std::string_view rest = text.substr(offset);
    const std::string_view number = rest.substr(0, rest.find_first_not_of(numberCharacters));
    return {offset, "the number " + escaped(number, 40) + fault};
}

/// What editors write before the text, by its first bytes; empty when there is nothing of the kind.
std::string_view describeMark(std::string_view text)
{
    if (text.substr(0, 2) == "\xFF\xFE" || text.substr(0, 2) == "\xFE\xFF") {
        return "the file is UTF-16; save it as UTF-8";
    }
    if (text.substr(0, 3) == "\xEF\xBB\xBF") {
        return "the file begins with a byte order mark; save it as UTF-8 without one";
    }
    return {};
}

Place describe(std::string_view text, Kind kind, std::size_t offset)
{
    switch (kind) {
    case Kind::documentEmpty:
        return {0, "the file is empty"};
    case Kind::rootIsNoMap:
        return {offset, "the root must be an object, {…}"};
    case Kind::rootIsFollowed:
        return {offset, "nothing may follow the root object, but there is " + ahead(text, offset)};
    case Kind::missingKey:
        return describeMissingKey(text, offset);
    case Kind::missingColon:
        return describeExpected(text, offset, "':'");
    case Kind::missingCommaOrBrace:
        return describeMissingComma(text, offset, '}');
    case Kind::missingCommaOrBracket:
        return describeMissingComma(text, offset, ']');
    case Kind::badUnicodeEscape:
        return {offset, "\\u must be followed by four hexadecimal digits: " + ahead(text, offset)};
    case Kind::loneSurrogate:
        return {offset,
                "half of a surrogate pair: " + ahead(text, offset) + " lacks its other half, \\udc00 to \\udfff"};
    case Kind::badEscape:
        return describeEscape(text, offset);
    case Kind::unclosedText:
        return describeUnclosedText(text, offset);
    case Kind::controlCharacter:
        return describeControlCharacter(text, offset);
    case Kind::numberTooBig:
    case Kind::infiniteNumber:
        return describeNumber(text, offset, " is too big for any reader");
    case Kind::missingFraction:
        return describeNumber(text, offset, " lacks digits behind its point");
    case Kind::missingExponent:
        return describeNumber(text, offset, " lacks the digits of its exponent");
    case Kind::tooDeep:
        return {offset,
                "objects and arrays nest deeper than " + std::to_string(bundle_reader::nestingLimit) + " levels"};
    case Kind::badComment:
    case Kind::invalidValue:
        break;
    }
    return describeValue(text, offset);
}

bool isInsideText(Kind kind)
{
    return kind == Kind::badUnicodeEscape || kind == Kind::loneSurrogate || kind == Kind::badEscape ||
           kind == Kind::unclosedText || kind == Kind::controlCharacter;
}

} // namespace

Finding describeFault(std::string_view text, const bundle_reader::JsonFault& fault)
{
    const std::size_t offset = std::min(fault.offset, text.size());
    Place place{};
    if (const std::string_view mark = describeMark(text); !mark.empty()) {
        place = {0, std::string{mark}};
    } else if (isComment(text.substr(offset)) && !isInsideText(fault.kind)) {
        place = {offset, "comments are not allowed"};
    } else {
        place = describe(text, fault.kind, offset);
    }
    std::string words = "invalid JSON: ";
    if (!fault.path.empty() && fault.kind != Kind::tooDeep) {
        // Of a list the path tells the place at which something was expected.
        words += (fault.path.back() == ']' ? "at the " : "after the ") + keyAt(fault.path) + ", ";
    }
    return {Severity::error, place.offset, words + place.text};
}

} // namespace ostrel::bundle_checker
