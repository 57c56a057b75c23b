#include "platform/ManifestCheck.h"

#include "bundle_reader/manifest/Json.h"
#include "bundle_reader/manifest/ManifestRules.h"
#include "bundle_reader/manifest/Version.h"

#include <string_view>

namespace ostrel::platform {
namespace {

using bundle_reader::JsonFault;

std::string versionOf(const bundle_reader::JsonValue& manifest)
{
    const auto text = bundle_reader::versionText(manifest);
    if (!text) {
        return toText(bundle_reader::Version{});
    }
    const auto reading = bundle_reader::readVersion(*text);
    return reading.fault.empty() ? toText(reading.version) : std::string{};
}

/// True when the text begins with what may only stand behind a value.
bool beginsLikeAnEnd(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    return first != std::string::npos && std::string_view{",:]}"}.find(text[first]) != std::string_view::npos;
}

std::string told(const JsonFault& fault, const std::string& text)
{
    const std::string place = " at offset " + std::to_string(fault.offset);
    if (fault.otherRoot) {
        return "it is no JSON object";
    }
    if (fault.kind == JsonFault::Kind::infiniteNumber) {
        return "a number is too big" + place;
    }
    if (fault.kind == JsonFault::Kind::tooDeep) {
        return "it is nested deeper than " + std::to_string(bundle_reader::nestingLimit) + " levels";
    }
    // KEPT ON PURPOSE: the words for an empty text, though it is none. Hosts have always been told so.
    // Pinned by ManifestCheck.GivenTextThatBeginsLikeAnEnd_WhenChecked_ThenItCountsAsEmpty
    return (beginsLikeAnEnd(text) ? "The document is empty." : fault.words) + place;
}

} // namespace

ManifestCheck checkManifest(const std::string& text)
{
    const bundle_reader::Json json = bundle_reader::readJson(text);
    if (json.fault) {
        return {told(*json.fault, text), {}};
    }
    return {{}, versionOf(json.root)};
}

} // namespace ostrel::platform
