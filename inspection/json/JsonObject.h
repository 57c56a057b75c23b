#pragma once

#include "bundle_reader/manifest/Json.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::inspection {

using bundle_reader::JsonValue;

JsonValue jsonText(std::string_view text);
JsonValue jsonNull();

/// A JSON object that is made key by key, in this order.
///
/// JSON is UTF-8. In a text, each byte that is none becomes U+FFFD, and the object gets "<key>Hex" with all bytes of
/// the text in hexadecimal digits; for a list of texts that is a list.
class JsonObject {
public:
    JsonObject& add(std::string_view key, std::string_view text);
    JsonObject& add(std::string_view key, const char* text) { return add(key, std::string_view{text}); }
    JsonObject& add(std::string_view key, const std::string& text) { return add(key, std::string_view{text}); }
    JsonObject& add(std::string_view key, bool value);
    JsonObject& add(std::string_view key, std::size_t number);
    JsonObject& add(std::string_view key, JsonValue value);
    JsonObject& add(std::string_view key, const std::vector<std::string>& texts);
    JsonObject& add(std::string_view key, std::vector<JsonValue> items);
    JsonObject& addNull(std::string_view key);

    JsonValue take() { return std::move(m_value); }

    /// In lines, with an end to the last one.
    std::string write() const;

private:
    void addAsItIs(std::string_view key, JsonValue value);

    JsonValue m_value = emptyMap();

    static JsonValue emptyMap();
};

/// A value of a manifest as output holds it, with the same rule for texts; what frameworks leave out of it is left out,
/// and of several members that are one to frameworks there is one.
JsonValue asFrameworksTake(const JsonValue& value);

} // namespace ostrel::inspection
