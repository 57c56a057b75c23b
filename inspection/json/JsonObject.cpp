#include "inspection/json/JsonObject.h"

#include "bundle_reader/manifest/JsonWriter.h"
#include "bundle_reader/manifest/ManifestRules.h"
#include "text/Escape.h"
#include "text/Utf8.h"

#include <algorithm>
#include <set>
#include <utility>

namespace ostrel::inspection {
namespace {

using Kind = JsonValue::Kind;

constexpr std::string_view replacement = "\xEF\xBF\xBD"; // U+FFFD
constexpr std::string_view hexDigits = "0123456789abcdef";

bool isUtf8(std::string_view text)
{
    while (!text.empty()) {
        const std::size_t length = text::characterLength(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

std::string asUtf8(std::string_view text)
{
    std::string result;
    while (!text.empty()) {
        const std::size_t length = text::characterLength(text);
        result += length == 0 ? replacement : text.substr(0, length);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return result;
}

std::string inHex(std::string_view text)
{
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        result += hexDigits[byte >> 4U];
        result += hexDigits[byte & 0xFU];
    }
    return result;
}

std::string keyOfHex(std::string_view key)
{
    return std::string{key} + "Hex";
}

JsonValue plainText(std::string text)
{
    JsonValue value;
    value.kind = Kind::text;
    value.text = std::move(text);
    return value;
}

JsonValue listOf(std::vector<JsonValue> items)
{
    JsonValue value;
    value.kind = Kind::list;
    value.items = std::move(items);
    return value;
}

JsonValue jsonNumber(std::size_t number)
{
    JsonValue value;
    value.kind = Kind::wideInteger;
    value.aboveSigned = true;
    value.integer = static_cast<std::int64_t>(number);
    return value;
}

bool isCleanText(const JsonValue& value)
{
    return value.kind != Kind::text || isUtf8(value.text);
}

/// The bytes of a text; the same for each text of a list, and null for all else in it.
JsonValue hexOf(const JsonValue& value)
{
    if (value.kind == Kind::text) {
        return plainText(inHex(bundle_reader::localized(value.text)));
    }
    std::vector<JsonValue> items;
    for (const JsonValue& item : value.items) {
        if (!bundle_reader::isDropped(item)) {
            items.push_back(item.kind == Kind::text ? hexOf(item) : JsonValue{});
        }
    }
    return listOf(std::move(items));
}

bool needsHex(const JsonValue& value)
{
    return value.kind == Kind::list ? !std::all_of(value.items.begin(), value.items.end(), isCleanText)
                                    : !isCleanText(value);
}

// Not std::tolower: keys must not depend on the process's locale.
std::string inLowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

JsonValue mapAsFrameworksTake(const JsonValue& map)
{
    JsonObject object;
    std::set<std::string> taken;
    for (const auto& member : map.members) {
        // Of keys that differ in case alone frameworks keep the first.
        if (!bundle_reader::isDropped(member.value) && taken.insert(inLowerCase(member.key)).second) {
            object.add(member.key, asFrameworksTake(member.value));
            if (needsHex(member.value)) {
                object.add(keyOfHex(member.key), hexOf(member.value));
            }
        }
    }
    return object.take();
}

/// JSON with escapes in place of all that a terminal could take for a command; those of one byte have them already, but
/// for U+007F. They stand in texts alone, so that the meaning is the same.
std::string withoutCommands(const std::string& json)
{
    std::string result;
    result.reserve(json.size());
    for (std::string_view rest = json; !rest.empty();) {
        const std::size_t length = std::max<std::size_t>(text::characterLength(rest), 1);
        const std::string_view character = rest.substr(0, length);
        rest.remove_prefix(length);
        if (length == 1 ? character != "\x7F" : text::escaped(character, length) == character) {
            result += character;
            continue;
        }
        unsigned code = static_cast<unsigned char>(character[0]) & (length == 1 ? 0x7FU : length == 2 ? 0x1FU : 0x0FU);
        for (const char c : character.substr(1)) {
            code = code << 6U | (static_cast<unsigned char>(c) & 0x3FU);
        }
        result += "\\u";
        for (unsigned shift = 16; shift > 0; shift -= 4) {
            result += hexDigits[code >> (shift - 4) & 0xFU];
        }
    }
    return result;
}

} // namespace

JsonValue jsonText(std::string_view text)
{
    return plainText(asUtf8(text));
}

JsonValue jsonNull()
{
    return {};
}

JsonValue JsonObject::emptyMap()
{
    JsonValue value;
    value.kind = Kind::map;
    return value;
}

void JsonObject::addAsItIs(std::string_view key, JsonValue value)
{
    m_value.members.push_back({asUtf8(key), 0, std::move(value)});
}

JsonObject& JsonObject::add(std::string_view key, std::string_view text)
{
    addAsItIs(key, jsonText(text));
    if (!isUtf8(text)) {
        addAsItIs(keyOfHex(key), plainText(inHex(text)));
    }
    return *this;
}

JsonObject& JsonObject::add(std::string_view key, bool value)
{
    JsonValue json;
    json.kind = Kind::boolean;
    json.boolean = value;
    addAsItIs(key, std::move(json));
    return *this;
}

JsonObject& JsonObject::add(std::string_view key, std::size_t number)
{
    addAsItIs(key, jsonNumber(number));
    return *this;
}

JsonObject& JsonObject::add(std::string_view key, JsonValue value)
{
    addAsItIs(key, std::move(value));
    return *this;
}

JsonObject& JsonObject::add(std::string_view key, const std::vector<std::string>& texts)
{
    std::vector<JsonValue> items;
    std::vector<JsonValue> hex;
    bool isClean = true;
    for (const std::string& text : texts) {
        items.push_back(jsonText(text));
        hex.push_back(plainText(inHex(text)));
        isClean = isClean && isUtf8(text);
    }
    addAsItIs(key, listOf(std::move(items)));
    if (!isClean) {
        addAsItIs(keyOfHex(key), listOf(std::move(hex)));
    }
    return *this;
}

JsonObject& JsonObject::add(std::string_view key, std::vector<JsonValue> items)
{
    addAsItIs(key, listOf(std::move(items)));
    return *this;
}

JsonObject& JsonObject::addNull(std::string_view key)
{
    addAsItIs(key, {});
    return *this;
}

std::string JsonObject::write() const
{
    return withoutCommands(bundle_reader::writeJson(m_value)) + '\n';
}

JsonValue asFrameworksTake(const JsonValue& value)
{
    switch (value.kind) {
    case Kind::text:
        return jsonText(bundle_reader::localized(value.text));
    case Kind::list: {
        std::vector<JsonValue> items;
        for (const JsonValue& item : value.items) {
            if (!bundle_reader::isDropped(item)) {
                items.push_back(asFrameworksTake(item));
            }
        }
        return listOf(std::move(items));
    }
    case Kind::map:
        return mapAsFrameworksTake(value);
    case Kind::null:
    case Kind::boolean:
    case Kind::integer:
    case Kind::wideInteger:
    case Kind::number:
        break;
    }
    return value;
}

} // namespace ostrel::inspection
