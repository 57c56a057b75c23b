#include "ManifestText.h"

#include "bundle_reader/manifest/Json.h"
#include "bundle_reader/manifest/JsonWriter.h"

namespace {

using namespace ostrel::bundle_reader;

JsonValue parse(const std::string& text, const std::string& source, JsonDialect dialect)
{
    Json json = readJson(text, dialect);
    if (!json.fault) {
        return std::move(json.root);
    }
    if (json.fault->kind == JsonFault::Kind::rootIsNoMap) {
        throw ManifestError{source + ": a manifest must be a JSON object"};
    }
    throw ManifestError{source + ": " + json.fault->words + " (at byte " + std::to_string(json.fault->offset) + ")"};
}

} // namespace

void ManifestText::check(const std::string& text, const std::string& source)
{
    parse(text, source, JsonDialect::commented);
}

void ManifestText::add(const std::string& text, const std::string& source)
{
    const JsonValue manifest = parse(text, source, JsonDialect::lenient);
    for (const JsonMember& member : manifest.members) {
        const std::string key = writeJson(member.key);
        if (!m_keys.insert(key).second) {
            throw ManifestError{std::string{"Duplicate key: "}.append(key).append(" found in ").append(source)};
        }
        m_members.append(m_members.empty() ? "\n" : ",\n").append(key).append(": ").append(writeJson(member.value));
    }
}
