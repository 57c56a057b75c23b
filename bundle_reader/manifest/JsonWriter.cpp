#include "bundle_reader/manifest/JsonWriter.h"

#include "bundle_reader/manifest/CheckedAllocator.h"

#include <rapidjson/prettywriter.h>

#include <cstdint>

namespace ostrel::bundle_reader {
namespace {

/// Where the writer puts its bytes.
class TextStream {
public:
    using Ch = char;

    void Put(char c) { m_text += c; }
    void Flush() {}

    std::string& text() { return m_text; }

private:
    std::string m_text;
};

using Writer = rapidjson::PrettyWriter<TextStream, rapidjson::UTF8<>, rapidjson::UTF8<>, CheckedAllocator>;

void write(Writer& writer, std::string_view text)
{
    writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

void write(Writer& writer, const JsonValue& value)
{
    switch (value.kind) {
    case JsonValue::Kind::null:
        writer.Null();
        break;
    case JsonValue::Kind::boolean:
        writer.Bool(value.boolean);
        break;
    case JsonValue::Kind::integer:
    case JsonValue::Kind::wideInteger:
        if (value.aboveSigned) {
            writer.Uint64(static_cast<std::uint64_t>(value.integer));
        } else {
            writer.Int64(value.integer);
        }
        break;
    case JsonValue::Kind::number:
        writer.Double(value.number);
        break;
    case JsonValue::Kind::text:
        write(writer, value.text);
        break;
    case JsonValue::Kind::list:
        writer.StartArray();
        for (const JsonValue& item : value.items) {
            write(writer, item);
        }
        writer.EndArray();
        break;
    case JsonValue::Kind::map:
        writer.StartObject();
        for (const JsonMember& member : value.members) {
            write(writer, member.key);
            write(writer, member.value);
        }
        writer.EndObject();
        break;
    }
}

template <typename Value>
std::string written(const Value& value)
{
    TextStream stream;
    CheckedAllocator memory;
    Writer writer{stream, &memory};
    write(writer, value);
    return std::move(stream.text());
}

} // namespace

std::string writeJson(const JsonValue& value)
{
    return written(value);
}

std::string writeJson(std::string_view text)
{
    return written(text);
}

} // namespace ostrel::bundle_reader
