#pragma once

#include "bundle_reader/manifest/Json.h"

#include <string>
#include <string_view>
#include <vector>

namespace ostrel::test {

/// A value of an output in JSON, by keys and indices.
class Json {
public:
    /// @throws std::runtime_error if the text is no object
    explicit Json(const std::string& text);

    /// The member of that key.
    /// @throws std::runtime_error if there is none
    Json operator[](std::string_view key) const;
    Json operator[](std::size_t index) const;

    bool has(std::string_view key) const;
    std::size_t size() const { return m_value.items.size(); }
    bool isNull() const { return m_value.kind == bundle_reader::JsonValue::Kind::null; }
    bool boolean() const { return m_value.boolean; }
    const std::string& text() const { return m_value.text; }
    long number() const { return static_cast<long>(m_value.integer); }
    /// Of a list of texts.
    std::vector<std::string> texts() const;
    /// Of a list of objects: that text of each.
    std::vector<std::string> texts(std::string_view key) const;

private:
    explicit Json(bundle_reader::JsonValue value) : m_value{std::move(value)} {}

    bundle_reader::JsonValue m_value;
};

/// What the schema of that name says against an output; "" when it is valid.
std::string faultsBy(const std::string& schema, const std::string& output);

} // namespace ostrel::test
