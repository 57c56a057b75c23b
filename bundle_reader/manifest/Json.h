#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::bundle_reader {

/// What is let through beyond the standard of JSON, and how exactly numbers are read.
enum class JsonDialect {
    strict,    ///< nothing; numbers as the frameworks have them, which may be off by the last digits
    commented, ///< a byte order mark and comments; exact numbers
    lenient,   ///< these, and a comma before a closing bracket; exact numbers
};

struct JsonMember;

/// One value of a JSON text, and where it stands. Nothing of the text is left out: neither null, nor members whose key
/// stands there already.
struct JsonValue {
    enum class Kind {
        null,
        boolean,
        integer,     ///< fits an `int`: the frameworks take no other integers
        wideInteger, ///< an integer that fits 64 bits, signed or unsigned, but no `int`
        number,      ///< any other number; finite
        text,
        list,
        map,
    };

    Kind kind = Kind::null;
    bool boolean = false;     ///< so for all other kinds
    bool aboveSigned = false; ///< wideInteger: `integer` is to be read as unsigned
    std::size_t offset = 0;   ///< of its first byte in the text
    std::int64_t integer = 0; ///< of both kinds of integers; of one above the signed range: the same 64 bits
    double number = 0;
    std::string text;                ///< UTF-8 if the manifest was and escapes no half of a pair; may hold zero bytes
    std::vector<JsonValue> items;    ///< of a list
    std::vector<JsonMember> members; ///< of a map, in the order of the text

    JsonValue() = default;
};

struct JsonMember {
    std::string key;
    std::size_t offset = 0; ///< of the key's opening quotation mark
    JsonValue value;
};

/// Why a text is no JSON object: the first fault of its syntax; if there is none, that the root is no map.
struct JsonFault {
    enum class Kind {
        documentEmpty,
        rootIsNoMap,
        rootIsFollowed,
        invalidValue,
        missingKey,
        missingColon,
        missingCommaOrBrace,
        missingCommaOrBracket,
        badUnicodeEscape,
        loneSurrogate,
        badEscape,
        unclosedText,     ///< the text of the manifest ends within a text
        controlCharacter, ///< one stands within a text
        numberTooBig,
        infiniteNumber, ///< too big as well, by its last digits only: the parser let it through
        missingFraction,
        missingExponent,
        badComment, ///< one that is not closed, or a slash that begins none
        tooDeep,    ///< more than nestingLimit maps and lists lie in one another
    };

    Kind kind = Kind::documentEmpty;
    std::string words;      ///< as the frameworks tell it ("Missing a name for object member.")
    std::size_t offset = 0; ///< where the parser stood; at most the size of the text
    std::string path;       ///< of the last key or index before it, as "zq.ostrelFilters[1].language"; "" when none
    bool otherRoot = false; ///< the root was seen to be no map, whatever the fault is
};

/// What a text holds: a root that is a map, or why not.
struct Json {
    std::optional<JsonFault> fault;
    JsonValue root;
};

/// Maps and lists may lie this deep in one another.
inline constexpr int nestingLimit = 200;

/// Reads a text whose root is a map. A zero byte between two values ends the text.
///
/// @throws std::bad_alloc and nothing else
/// @locks  none
/// @cost   linear in the text's size; nesting is bounded, so no text exhausts the stack
Json readJson(std::string_view text, JsonDialect dialect = JsonDialect::strict);

/// A place in a text as editors count it.
struct Position {
    std::size_t line = 1;
    std::size_t column = 1; ///< in bytes
};

/// @param offset  at most the size of the text
/// @cost   linear in the offset
Position positionOf(std::string_view text, std::size_t offset);

} // namespace ostrel::bundle_reader
