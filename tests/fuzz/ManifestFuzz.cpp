// Any bytes as a manifest. What is accepted holds the documented types and comes back equal when it is written out and
// read again, and the check that runs before a framework sees the text agrees with the framework's own reading, as do
// the rules of manifests.
#include "bundle/Manifest.h"
#include "bundle_reader/manifest/Json.h"
#include "bundle_reader/manifest/ManifestRules.h"
#include "fuzz/FuzzTarget.h"
#include "platform/ManifestCheck.h"

#include <cmath>
#include <cstdio>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

using namespace cppmicroservices;
using ostrel::fuzz::require;

namespace {

using List = std::vector<Any>;

std::string written(const Any& value);

std::string quoted(const std::string& text)
{
    return Any(text).ToJSON();
}

std::string written(const AnyMap& map)
{
    std::string text;
    for (const auto& [key, value] : map) {
        text += (text.empty() ? "" : ",") + quoted(key) + ":" + written(value);
    }
    return "{" + text + "}";
}

std::string written(const List& list)
{
    std::string text;
    for (const Any& value : list) {
        text += (text.empty() ? "" : ",") + written(value);
    }
    return "[" + text + "]";
}

std::string written(double value)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.17g", value);
    const std::string result = text;
    // Without one of these it would be read as an integer.
    return result.find_first_of(".e") == std::string::npos ? result + ".0" : result;
}

/// JSON of one of the types that a manifest may hold.
std::string written(const Any& value)
{
    if (const auto* const map = any_cast<AnyMap>(&value)) {
        require(map->GetType() == AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS, "keys are found whatever their case");
        return written(*map);
    }
    if (const auto* const list = any_cast<List>(&value)) {
        return written(*list);
    }
    if (const auto* const number = any_cast<double>(&value)) {
        require(std::isfinite(*number), "numbers are finite");
        return written(*number);
    }
    if (const auto* const text = any_cast<std::string>(&value)) {
        // Reading takes a percent sign at the beginning away.
        return quoted(text->rfind('%', 0) == 0 ? '%' + *text : *text);
    }
    require(any_cast<int>(&value) || any_cast<bool>(&value), "a value has one of the types of a manifest");
    return value.ToJSON();
}

bool alike(const Any& left, const Any& right);

bool alike(const AnyMap& left, const AnyMap& right)
{
    bool result = left.size() == right.size();
    for (const auto& [key, value] : left) {
        const auto other = right.find(key);
        result = result && other != right.cend() && other->first == key && alike(value, other->second);
    }
    return result;
}

/// Equal, but for the last digits of a number: text to number and back is no exact way.
bool alike(const Any& left, const Any& right)
{
    if (left.Type() != right.Type()) {
        return false;
    }
    if (const auto* const map = any_cast<AnyMap>(&left)) {
        return alike(*map, ref_any_cast<AnyMap>(right));
    }
    if (const auto* const list = any_cast<List>(&left)) {
        const auto& other = ref_any_cast<List>(right);
        bool result = list->size() == other.size();
        for (std::size_t i = 0; result && i < list->size(); ++i) {
            result = alike((*list)[i], other[i]);
        }
        return result;
    }
    if (const auto* const number = any_cast<double>(&left)) {
        const double other = ref_any_cast<double>(right);
        return std::fabs(*number - other) <= 1e-14 * std::fabs(other) + 1e-307;
    }
    return left == right;
}

/// What is in a map is what the rules find there, and nothing that they find is missing.
void requireSameMembers(const ostrel::bundle_reader::JsonValue& value, const AnyMap& map)
{
    for (const auto& [key, kept] : map) {
        const auto* const member = ostrel::bundle_reader::findMember(value, key);
        require(member != nullptr && member->key == key, "a key that is kept is the first that counts");
        const auto* const inner = any_cast<AnyMap>(&kept);
        require((member->value.kind == ostrel::bundle_reader::JsonValue::Kind::map) == (inner != nullptr),
                "a map stays one");
        if (inner != nullptr) {
            requireSameMembers(member->value, *inner);
        }
    }
    for (const auto& member : value.members) {
        const bool counts = ostrel::bundle_reader::findMember(value, member.key) != nullptr;
        require(counts == (map.count(member.key) != 0), "a key is kept when one of its values is not dropped");
    }
}

std::optional<AnyMap> read(const std::string& text)
{
    try {
        return detail::core::parseManifest(text, "N", "/l");
    } catch (const std::runtime_error& e) {
        require(std::string_view{e.what()}.rfind("Parsing of manifest.json for bundle N at /l failed: ", 0) == 0,
                "an error says what failed, and where");
        return std::nullopt;
    }
}

std::optional<std::string> versionOf(const AnyMap& manifest)
{
    try {
        return detail::core::checkManifest(manifest, "N", "/l").ToString();
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text{ostrel::fuzz::textOf(data, size)};
    const auto check = ostrel::platform::checkManifest(text);
    const auto manifest = read(text);
    require(check.fault.empty() == manifest.has_value(), "the check accepts what the framework accepts, and no more");
    if (!manifest) {
        return 0;
    }
    const auto again = read(written(*manifest));
    require(again && alike(*manifest, *again), "a manifest that is written out and read again is the same");
    if (const auto version = versionOf(*manifest)) {
        require(check.version == *version, "the check finds the version that the framework finds");
    }
    const auto json = ostrel::bundle_reader::readJson(text);
    require(detail::core::asksForActivator(*manifest) == ostrel::bundle_reader::asksForActivator(json.root),
            "an activator is asked for by one rule");
    requireSameMembers(json.root, *manifest);
    Any(*manifest).ToString();
    return 0;
}
