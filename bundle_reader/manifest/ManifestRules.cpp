#include "bundle_reader/manifest/ManifestRules.h"

#include "bundle_reader/manifest/ManifestKeys.h"

#include <algorithm>

namespace ostrel::bundle_reader {
namespace {

// Not std::tolower: keys must not depend on the process's locale.
char inLowerCase(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

bool isDropped(const JsonValue& value)
{
    return value.kind == JsonValue::Kind::null || value.kind == JsonValue::Kind::wideInteger;
}

bool isSameKey(std::string_view left, std::string_view right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char l, char r) { return inLowerCase(l) == inLowerCase(r); });
}

const JsonMember* findMember(const JsonValue& map, std::string_view key)
{
    const auto found = std::find_if(map.members.begin(), map.members.end(), [key](const JsonMember& member) {
        return isSameKey(member.key, key) && !isDropped(member.value);
    });
    return found == map.members.end() ? nullptr : &*found;
}

std::string_view localized(std::string_view text)
{
    return text.substr(text.substr(0, 1) == "%" ? 1 : 0);
}

std::optional<std::string_view> versionText(const JsonValue& manifest)
{
    const JsonMember* const member = findMember(manifest, keys::version);
    if (member == nullptr || member->value.kind != JsonValue::Kind::text) {
        return std::nullopt;
    }
    return localized(member->value.text);
}

bool asksForActivator(const JsonValue& manifest)
{
    const JsonMember* const member = findMember(manifest, keys::activator);
    return member != nullptr && member->value.boolean;
}

} // namespace ostrel::bundle_reader
