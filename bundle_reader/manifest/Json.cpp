#include "bundle_reader/manifest/Json.h"

#include "bundle_reader/manifest/JsonTree.h"

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <utility>

namespace ostrel::bundle_reader {
namespace {

using Kind = JsonFault::Kind;

constexpr unsigned flagsOf(JsonDialect dialect)
{
    // The parser has two modes with words that differ for a text like "}". The tools have always had this one.
    constexpr unsigned commented =
        rapidjson::kParseIterativeFlag | rapidjson::kParseCommentsFlag | rapidjson::kParseNumbersAsStringsFlag;
    switch (dialect) {
    case JsonDialect::strict:
        return rapidjson::kParseDefaultFlags;
    case JsonDialect::commented:
        return commented;
    case JsonDialect::lenient:
        break;
    }
    return commented | rapidjson::kParseTrailingCommasFlag;
}

bool endsAt(std::string_view text, std::size_t offset)
{
    return offset >= text.size() || text[offset] == '\0';
}

/// The parser has one code for several faults, which the place tells apart.
Kind kindOf(rapidjson::ParseErrorCode code, std::string_view text, std::size_t offset)
{
    switch (code) {
    case rapidjson::kParseErrorDocumentEmpty:
        return endsAt(text, offset) ? Kind::documentEmpty : Kind::invalidValue;
    case rapidjson::kParseErrorDocumentRootNotSingular:
        return Kind::rootIsFollowed;
    case rapidjson::kParseErrorObjectMissName:
        return Kind::missingKey;
    case rapidjson::kParseErrorObjectMissColon:
        return Kind::missingColon;
    case rapidjson::kParseErrorObjectMissCommaOrCurlyBracket:
        return Kind::missingCommaOrBrace;
    case rapidjson::kParseErrorArrayMissCommaOrSquareBracket:
        return Kind::missingCommaOrBracket;
    case rapidjson::kParseErrorStringUnicodeEscapeInvalidHex:
        return Kind::badUnicodeEscape;
    case rapidjson::kParseErrorStringUnicodeSurrogateInvalid:
        return Kind::loneSurrogate;
    case rapidjson::kParseErrorStringEscapeInvalid:
        return text[offset] == '\\' ? Kind::badEscape : Kind::controlCharacter;
    case rapidjson::kParseErrorStringMissQuotationMark:
        return offset < text.size() ? Kind::controlCharacter : Kind::unclosedText;
    case rapidjson::kParseErrorNumberTooBig:
        return Kind::numberTooBig;
    case rapidjson::kParseErrorNumberMissFraction:
        return Kind::missingFraction;
    case rapidjson::kParseErrorNumberMissExponent:
        return Kind::missingExponent;
    case rapidjson::kParseErrorUnspecificSyntaxError:
        return Kind::badComment;
    default:
        return Kind::invalidValue;
    }
}

template <JsonDialect dialect>
Json read(std::string_view text)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    const bool marked = dialect != JsonDialect::strict && text.substr(0, byteOrderMark.size()) == byteOrderMark;

    JsonStream stream{text, marked ? byteOrderMark.size() : 0};
    CheckedAllocator memory;
    JsonTree tree{stream, dialect, memory};
    JsonReader reader{&memory};
    constexpr unsigned flags = flagsOf(dialect);
    const rapidjson::ParseResult result =
        // NOLINTNEXTLINE(bugprone-branch-clone): the flags differ, which the check does not compare
        mayHoldHugeExponent(text) ? reader.Parse<flags | rapidjson::kParseNumbersAsStringsFlag>(stream, tree)
                                  : reader.Parse<flags>(stream, tree);

    Json json;
    if (result.Code() == rapidjson::kParseErrorTermination) {
        json.fault = tree.takeFault();
    } else if (result.IsError()) {
        json.fault = JsonFault{kindOf(result.Code(), text, result.Offset()), rapidjson::GetParseError_En(result.Code()),
                               result.Offset(), tree.path(), false};
    } else if (tree.root().kind != JsonValue::Kind::map) {
        json.fault =
            JsonFault{Kind::rootIsNoMap, "The Json root element must be an object.", tree.root().offset, {}, true};
    }
    if (json.fault) {
        json.fault->otherRoot = tree.hasOtherRoot();
    } else {
        json.root = std::move(tree.root());
    }
    return json;
}

} // namespace

Json readJson(std::string_view text, JsonDialect dialect)
{
    switch (dialect) {
    case JsonDialect::strict:
        return read<JsonDialect::strict>(text);
    case JsonDialect::commented:
        return read<JsonDialect::commented>(text);
    case JsonDialect::lenient:
        break;
    }
    return read<JsonDialect::lenient>(text);
}

Position positionOf(std::string_view text, std::size_t offset)
{
    Position position;
    for (std::size_t i = 0; i < offset && i < text.size(); ++i) {
        if (text[i] == '\n') {
            ++position.line;
            position.column = 1;
        } else {
            ++position.column;
        }
    }
    return position;
}

} // namespace ostrel::bundle_reader
