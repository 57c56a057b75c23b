// Any bytes as JSON. A fault lies within the text; every value and key stands where it says, one behind the other; what
// is written out and read again is the same, number for number; and the more a dialect lets through, the more it reads.
#include "bundle_reader/manifest/Json.h"
#include "bundle_reader/manifest/JsonWriter.h"
#include "fuzz/FuzzTarget.h"

#include <cmath>
#include <limits>
#include <string>

using namespace ostrel::bundle_reader;
using ostrel::fuzz::require;

namespace {

bool beginsWith(std::string_view text, std::string_view beginning)
{
    return text.substr(0, beginning.size()) == beginning;
}

bool mayBegin(JsonValue::Kind kind, std::string_view text)
{
    switch (kind) {
    case JsonValue::Kind::null:
        return beginsWith(text, "null");
    case JsonValue::Kind::boolean:
        return beginsWith(text, "true") || beginsWith(text, "false");
    case JsonValue::Kind::integer:
    case JsonValue::Kind::wideInteger:
    case JsonValue::Kind::number:
        return !text.empty() && std::string_view{"-0123456789"}.find(text.front()) != std::string_view::npos;
    case JsonValue::Kind::text:
        return beginsWith(text, "\"");
    case JsonValue::Kind::list:
        return beginsWith(text, "[");
    case JsonValue::Kind::map:
        return beginsWith(text, "{");
    }
    return false;
}

/// @param end  of what was read before; moves behind the beginning of the value's last part
void checkPlaces(std::string_view text, const JsonValue& value, std::size_t& end)
{
    require(value.offset >= end && value.offset < text.size(), "values stand in the order of the text");
    require(mayBegin(value.kind, text.substr(value.offset)), "a value begins where it says");
    end = value.offset + 1;
    for (const JsonValue& item : value.items) {
        checkPlaces(text, item, end);
    }
    for (const JsonMember& member : value.members) {
        require(member.offset >= end && text.at(member.offset) == '"', "a key begins where it says");
        end = member.offset + 2;
        checkPlaces(text, member.value, end);
    }
}

void checkNumber(const JsonValue& value)
{
    require(std::isfinite(value.number), "numbers are finite");
    const bool fits =
        value.integer >= std::numeric_limits<int>::min() && value.integer <= std::numeric_limits<int>::max();
    require(value.kind != JsonValue::Kind::integer || fits, "an integer is an int");
    require(value.kind != JsonValue::Kind::wideInteger || value.aboveSigned || !fits, "a wide integer is no int");
}

/// @param numbers  whether numbers must be equal, too
bool alike(const JsonValue& left, const JsonValue& right, bool numbers)
{
    bool result = left.kind == right.kind && left.boolean == right.boolean && left.integer == right.integer &&
                  left.aboveSigned == right.aboveSigned && left.text == right.text &&
                  left.items.size() == right.items.size() && left.members.size() == right.members.size();
    result = result &&
             (!numbers || (left.number == right.number && std::signbit(left.number) == std::signbit(right.number)));
    for (std::size_t i = 0; result && i < left.items.size(); ++i) {
        result = alike(left.items[i], right.items[i], numbers);
    }
    for (std::size_t i = 0; result && i < left.members.size(); ++i) {
        result = left.members[i].key == right.members[i].key &&
                 alike(left.members[i].value, right.members[i].value, numbers);
    }
    return result;
}

void checkNumbers(const JsonValue& value)
{
    checkNumber(value);
    for (const JsonValue& item : value.items) {
        checkNumbers(item);
    }
    for (const JsonMember& member : value.members) {
        checkNumbers(member.value);
    }
}

Json checked(std::string_view text, JsonDialect dialect)
{
    Json json = readJson(text, dialect);
    if (json.fault) {
        require(json.fault->offset <= text.size(), "a fault lies within the text");
        require(!json.fault->words.empty(), "a fault is told in words");
        return json;
    }
    std::size_t end = 0;
    checkPlaces(text, json.root, end);
    checkNumbers(json.root);
    return json;
}

void checkOrder(const Json& narrow, const Json& wide, bool numbers)
{
    require(narrow.fault || (!wide.fault && alike(narrow.root, wide.root, numbers)),
            "what a dialect reads, those that let through more read alike");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = ostrel::fuzz::textOf(data, size);
    const Json strict = checked(text, JsonDialect::strict);
    const Json commented = checked(text, JsonDialect::commented);
    const Json lenient = checked(text, JsonDialect::lenient);
    checkOrder(strict, commented, false);
    checkOrder(commented, lenient, true);
    if (!lenient.fault) {
        const std::string written = writeJson(lenient.root);
        const Json again = checked(written, JsonDialect::commented);
        require(!again.fault && alike(lenient.root, again.root, true),
                "what is written out and read again is the same");
        require(writeJson(again.root) == written, "writing has one form");
    }
    return 0;
}
