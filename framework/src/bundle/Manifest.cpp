#include "bundle/Manifest.h"

#include "cppmicroservices/Constants.h"

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>

#include <cmath>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

namespace cppmicroservices::detail::core {

namespace {

/// True when brackets outside of strings nest deeper than the limit. Right for every text as far as it is JSON, which
/// is as far as the parser goes.
bool nestsTooDeep(std::string_view text)
{
    int depth = 0;
    bool inString = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char const c = text[i];
        if (inString) {
            if (c == '\\') {
                ++i;
            } else if (c == '"') {
                inString = false;
            }
        } else if (c == '"') {
            inString = true;
        } else if (c == '{' || c == '[') {
            if (++depth > manifestDepthLimit) {
                return true;
            }
        } else if (c == '}' || c == ']') {
            --depth;
        }
    }
    return false;
}

/// Thrown within this file only.
struct NumberTooBig {};

AnyMap toMap(rapidjson::Value const& object);

/// A text that begins with a percent sign names one to be looked up for the user's language. There are none, and then
/// the name itself is the text.
std::string localized(std::string_view text)
{
    return std::string(text.substr(text.rfind('%', 0) == 0 ? 1 : 0));
}

/// An empty Any stands for what is left out.
Any toAny(rapidjson::Value const& value)
{
    switch (value.GetType()) {
    case rapidjson::kObjectType:
        return toMap(value);
    case rapidjson::kArrayType: {
        std::vector<Any> items;
        for (auto const& item : value.GetArray()) {
            if (Any converted = toAny(item); !converted.Empty()) {
                items.push_back(std::move(converted));
            }
        }
        return items;
    }
    case rapidjson::kStringType:
        return localized({value.GetString(), value.GetStringLength()});
    case rapidjson::kTrueType:
    case rapidjson::kFalseType:
        return value.GetBool();
    case rapidjson::kNumberType:
        if (value.IsInt()) {
            return value.GetInt();
        }
        if (value.IsDouble()) {
            // Some versions of the parser let through a number that is too big by its last digits only.
            if (!std::isfinite(value.GetDouble())) {
                throw NumberTooBig{};
            }
            return value.GetDouble();
        }
        return {};
    case rapidjson::kNullType:
        break;
    }
    return {};
}

AnyMap toMap(rapidjson::Value const& object)
{
    AnyMap map(any_map::UNORDERED_MAP_CASEINSENSITIVE_KEYS);
    for (auto const& member : object.GetObject()) {
        if (Any converted = toAny(member.value); !converted.Empty()) {
            map.emplace(std::string(member.name.GetString(), member.name.GetStringLength()), std::move(converted));
        }
    }
    return map;
}

} // namespace

AnyMap parseManifest(std::string const& text, std::string const& bundle, std::string const& location)
{
    auto const failed = [&bundle, &location](std::string const& reason) {
        return std::runtime_error("Parsing of manifest.json for bundle " + bundle + " at " + location +
                                  " failed: " + reason);
    };
    if (nestsTooDeep(text)) {
        throw failed("The objects and arrays nest deeper than " + std::to_string(manifestDepthLimit) + " levels.");
    }
    // A plain stream, as the encoded ones skip a byte order mark, which is an error here.
    rapidjson::MemoryStream stream(text.data(), text.size());
    rapidjson::Document document;
    document.ParseStream(stream);
    if (document.HasParseError()) {
        throw failed(rapidjson::GetParseError_En(document.GetParseError()));
    }
    if (!document.IsObject()) {
        throw failed("The Json root element must be an object.");
    }
    try {
        return toMap(document);
    } catch (NumberTooBig const&) {
        throw failed(rapidjson::GetParseError_En(rapidjson::kParseErrorNumberTooBig));
    }
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
