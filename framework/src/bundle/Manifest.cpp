#include "bundle/Manifest.h"

#include "bundle_reader/manifest/Json.h"
#include "bundle_reader/manifest/ManifestRules.h"

#include "cppmicroservices/Constants.h"

#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

namespace cppmicroservices::detail::core {

namespace {

using ostrel::bundle_reader::isDropped;
using ostrel::bundle_reader::JsonMember;
using ostrel::bundle_reader::JsonValue;

Any toAny(JsonValue& value);

/// Takes the keys and values out of the manifest's.
AnyMap toMap(JsonValue& value)
{
    AnyMap map(any_map::UNORDERED_MAP_CASEINSENSITIVE_KEYS);
    for (JsonMember& member : value.members) {
        if (!isDropped(member.value)) {
            // Does nothing when the key is there already.
            map.emplace(std::move(member.key), toAny(member.value));
        }
    }
    return map;
}

std::vector<Any> toList(JsonValue& value)
{
    std::vector<Any> items;
    items.reserve(value.items.size());
    for (JsonValue& item : value.items) {
        if (!isDropped(item)) {
            items.push_back(toAny(item));
        }
    }
    return items;
}

/// @param value  none that is dropped
Any toAny(JsonValue& value)
{
    switch (value.kind) {
    case JsonValue::Kind::map:
        return toMap(value);
    case JsonValue::Kind::list:
        return toList(value);
    case JsonValue::Kind::text:
        value.text.erase(0, value.text.size() - ostrel::bundle_reader::localized(value.text).size());
        return std::move(value.text);
    case JsonValue::Kind::boolean:
        return value.boolean;
    case JsonValue::Kind::integer:
        return static_cast<int>(value.integer);
    case JsonValue::Kind::number:
        return value.number;
    case JsonValue::Kind::wideInteger:
    case JsonValue::Kind::null:
        break;
    }
    return {};
}

} // namespace

AnyMap parseManifest(std::string const& text, std::string const& bundle, std::string const& location)
{
    ostrel::bundle_reader::Json json = ostrel::bundle_reader::readJson(text);
    if (json.fault) {
        throw std::runtime_error("Parsing of manifest.json for bundle " + bundle + " at " + location +
                                 " failed: " + json.fault->words);
    }
    return toMap(json.root);
}

BundleVersion checkManifest(AnyMap const& manifest, std::string const& bundle, std::string const& location)
{
    auto const name = manifest.find(Constants::BUNDLE_SYMBOLICNAME);
    if (name == manifest.cend()) {
        throw std::runtime_error(Constants::BUNDLE_SYMBOLICNAME + " is not defined in the bundle manifest for bundle " +
                                 bundle + " (location=" + location + ").");
    }
    if (auto const* const text = any_cast<std::string>(&name->second); text != nullptr && text->empty()) {
        throw std::runtime_error(Constants::BUNDLE_SYMBOLICNAME + " is empty in the bundle manifest for bundle " +
                                 bundle + "(location=" + location + ").");
    }
    auto const version = manifest.find(Constants::BUNDLE_VERSION);
    if (version == manifest.cend()) {
        return BundleVersion::EmptyVersion();
    }
    auto const invalid = [&bundle, &location](std::string const& reason) {
        return std::runtime_error("The Json value for " + Constants::BUNDLE_VERSION + " for bundle " + bundle +
                                  " (location=" + location + ") is not valid: " + reason);
    };
    auto const* const text = any_cast<std::string>(&version->second);
    if (text == nullptr) {
        throw invalid("The version identifier must be a string");
    }
    try {
        return BundleVersion(*text);
    } catch (std::bad_alloc const&) {
        throw; // says nothing about the version
    } catch (std::exception const& e) {
        throw invalid(std::string("The version identifier is invalid: ") + e.what());
    }
}

bool asksForActivator(AnyMap const& manifest)
{
    auto const found = manifest.find(Constants::BUNDLE_ACTIVATOR);
    if (found == manifest.cend()) {
        return false;
    }
    auto const* const asked = any_cast<bool>(&found->second);
    return asked != nullptr && *asked;
}

} // namespace cppmicroservices::detail::core
