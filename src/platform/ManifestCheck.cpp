#include "platform/ManifestCheck.h"

#include <cppmicroservices/BundleVersion.h>

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <cmath>
#include <cstdint>
#include <exception>
#include <limits>
#include <optional>
#include <string_view>
#include <strings.h>

namespace ostrel::platform {
namespace {

// The frameworks read manifests by recursion; no manifest that means anything comes near.
constexpr int depthLimit = 256;

/// Sees that the text is one object and picks its version.
class ManifestHandler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, ManifestHandler> {
public:
    bool Default() { return value(); }

    // The framework leaves these out, so that a later key of the same name counts.
    bool Null() { return m_depth != 0; }
    bool Int64(std::int64_t /*number*/) { return m_depth != 0; }
    bool Uint64(std::uint64_t /*number*/) { return m_depth != 0; }
    bool Uint(unsigned number) { return number <= std::numeric_limits<int>::max() ? value() : m_depth != 0; }

    bool Double(double number)
    {
        tooBig = !std::isfinite(number);
        return !tooBig && value();
    }

    bool String(const char* text, rapidjson::SizeType length, bool /*copy*/)
    {
        if (isVersion()) {
            // Frameworks take a percent sign at the beginning of a text for the mark of one to be translated.
            const std::string_view whole{text, length};
            version = std::string{whole.substr(whole.rfind('%', 0) == 0 ? 1 : 0)};
        }
        return value();
    }

    bool Key(const char* text, rapidjson::SizeType length, bool /*copy*/)
    {
        // Headers are found whatever the case of their names, and of equal names the first one counts.
        constexpr std::string_view key = "bundle.version";
        m_isVersion = m_depth == 1 && length == key.size() && ::strncasecmp(text, key.data(), key.size()) == 0;
        return true;
    }

    bool StartObject()
    {
        m_sawVersion = m_sawVersion || isVersion();
        return enter();
    }
    bool EndObject(rapidjson::SizeType /*members*/) { return leave(); }
    bool StartArray() { return value() && enter(); }
    bool EndArray(rapidjson::SizeType /*elements*/) { return leave(); }

    std::optional<std::string> version;
    bool tooDeep = false;
    bool tooBig = false;

private:
    /// Whether the value being read is the version that counts.
    bool isVersion() const { return m_depth == 1 && m_isVersion && !m_sawVersion; }

    bool value()
    {
        m_sawVersion = m_sawVersion || isVersion();
        return m_depth != 0;
    }

    bool enter()
    {
        tooDeep = ++m_depth > depthLimit;
        return !tooDeep;
    }

    bool leave()
    {
        --m_depth;
        return true;
    }

    int m_depth = 0;
    bool m_isVersion = false;
    bool m_sawVersion = false;
};

std::string printed(const std::optional<std::string>& version)
{
    if (!version) {
        return cppmicroservices::BundleVersion::EmptyVersion().ToString();
    }
    try {
        return cppmicroservices::BundleVersion{*version}.ToString();
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace

ManifestCheck checkManifest(const std::string& text)
{
    ManifestHandler handler;
    rapidjson::Reader reader;
    rapidjson::MemoryStream stream{text.data(), text.size()};
    const auto result = reader.Parse<rapidjson::kParseIterativeFlag>(stream, handler);
    if (!result.IsError()) {
        return {{}, printed(handler.version)};
    }
    ManifestCheck check;
    if (handler.tooDeep) {
        check.fault = "it is nested deeper than " + std::to_string(depthLimit) + " levels";
    } else if (handler.tooBig) {
        check.fault = "a number is too big at offset " + std::to_string(result.Offset());
    } else if (result.Code() == rapidjson::kParseErrorTermination) {
        check.fault = "it is no JSON object";
    } else {
        check.fault =
            std::string{rapidjson::GetParseError_En(result.Code())} + " at offset " + std::to_string(result.Offset());
    }
    return check;
}

} // namespace ostrel::platform
