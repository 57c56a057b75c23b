#include "ManifestText.h"

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

namespace {

// Without recursion, so that a deeply nested text cannot exhaust the stack. Comments are let through.
constexpr unsigned strict =
    rapidjson::kParseCommentsFlag | rapidjson::kParseIterativeFlag | rapidjson::kParseFullPrecisionFlag;
// For a text that is written anew.
constexpr unsigned lenient = strict | rapidjson::kParseTrailingCommasFlag;

template <unsigned flags>
rapidjson::Document parse(const std::string& text, const std::string& source)
{
    rapidjson::Document document;
    document.Parse<flags>(text.data(), text.size());
    if (document.HasParseError()) {
        throw ManifestError{source + ": " + rapidjson::GetParseError_En(document.GetParseError()) + " (at byte " +
                            std::to_string(document.GetErrorOffset()) + ")"};
    }
    if (!document.IsObject()) {
        throw ManifestError{source + ": a manifest must be a JSON object"};
    }
    return document;
}

std::string written(const rapidjson::Value& value)
{
    rapidjson::StringBuffer buffer;
    rapidjson::PrettyWriter<rapidjson::StringBuffer> writer{buffer};
    value.Accept(writer);
    return buffer.GetString();
}

} // namespace

void ManifestText::check(const std::string& text, const std::string& source)
{
    parse<strict>(text, source);
}

void ManifestText::add(const std::string& text, const std::string& source)
{
    const rapidjson::Document document = parse<lenient>(text, source);
    for (const auto& member : document.GetObject()) {
        const std::string key = written(member.name);
        if (!m_keys.insert(key).second) {
            throw ManifestError{std::string{"Duplicate key: "}.append(key).append(" found in ").append(source)};
        }
        m_members.append(m_members.empty() ? "\n" : ",\n").append(key).append(": ").append(written(member.value));
    }
}
