#pragma once

#include "bundle_reader/manifest/CheckedAllocator.h"
#include "bundle_reader/manifest/Json.h"

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace ostrel::bundle_reader {

using JsonReader = rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, CheckedAllocator>;

/// True when a negative exponent somewhere has so many digits that the parser must not read the number: its sums run
/// over, and then it looks outside of its tables. With kParseNumbersAsStringsFlag it leaves that to JsonTree.
bool mayHoldHugeExponent(std::string_view text);

/// The bytes of a text. RapidJSON's streams that know encodings skip a byte order mark, which is an error to
/// frameworks.
class JsonStream : public rapidjson::MemoryStream {
public:
    JsonStream(std::string_view text, std::size_t begin) : MemoryStream{text.data(), text.size()}, m_text{text}
    {
        src_ += begin;
    }

    std::string_view text() const { return m_text; }

private:
    std::string_view m_text;
};

/// Grows the values of a text from what the parser calls out, and finds where each began.
///
/// The parser tells only where it stands. Between two calls lies nothing but blanks, commas, colons, closing brackets
/// and comments, so what it calls out begins behind these.
class JsonTree : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, JsonTree> {
public:
    /// All are referred to for as long as the tree lives.
    JsonTree(const JsonStream& stream, JsonDialect dialect, CheckedAllocator& memory);

    // What the parser calls; false ends the parsing.
    bool Null();
    bool Bool(bool value);
    bool Int(int number) { return Int64(number); }
    bool Uint(unsigned number) { return Int64(number); }
    bool Int64(std::int64_t number);
    bool Uint64(std::uint64_t number);
    bool Double(double number);
    bool RawNumber(const char* digits, rapidjson::SizeType length, bool copy);
    bool String(const char* text, rapidjson::SizeType length, bool copy);
    bool Key(const char* text, rapidjson::SizeType length, bool copy);
    bool StartObject() { return open(JsonValue::Kind::map); }
    bool EndObject(rapidjson::SizeType /*members*/) { return close(); }
    bool StartArray() { return open(JsonValue::Kind::list); }
    bool EndArray(rapidjson::SizeType /*items*/) { return close(); }

    /// As far as it was read.
    JsonValue& root() { return m_root; }

    /// True once the root is known to be no map.
    bool hasOtherRoot() const { return m_rootSeen && m_root.kind != JsonValue::Kind::map; }

    /// Why the tree itself ended the parsing.
    JsonFault takeFault() { return std::move(m_fault); }

    /// Of the last key or index before the place where the parser gave up.
    std::string path() const;

private:
    struct Gap {
        std::size_t end;
        bool hasComma;
    };

    Gap gapAfterLast() const;
    std::size_t behindComment(std::size_t begin) const;
    JsonValue& place(JsonValue::Kind kind);
    bool open(JsonValue::Kind kind);
    bool close();
    bool refuse(JsonFault::Kind kind, std::string words);
    std::string pathTo(bool next) const;

    const JsonStream& m_stream;
    JsonDialect m_dialect;
    CheckedAllocator& m_memory;
    std::string_view m_digits; // of the number that is being read, where it shall be exact
    JsonValue m_root;
    bool m_rootSeen = false;
    // The maps and lists that are not closed yet. Each is the last value of the one before, which stays as it is until
    // then, so that none moves.
    std::array<JsonValue*, nestingLimit> m_open{};
    std::size_t m_depth = 0;
    std::size_t m_end = 0; // of what was called out last
    JsonFault m_fault;
};

} // namespace ostrel::bundle_reader
