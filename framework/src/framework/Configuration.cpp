#include "framework/Configuration.h"

#include "cppmicroservices/Constants.h"
#include "cppmicroservices/FrameworkConfig.h"

#include <cstdio>
#include <dlfcn.h>
#include <filesystem>
#include <random>
#include <system_error>
#include <utility>

namespace cppmicroservices::detail::core {

namespace {

template <class T, class Map>
T const* valueIn(Map const& properties, std::string const& key)
{
    auto const found = properties.find(key);
    return found != properties.cend() ? any_cast<T>(&found->second) : nullptr;
}

using Validation = std::function<bool(Bundle const&)>;

std::string currentFolder()
{
    std::error_code failed;
    return std::filesystem::current_path(failed).string();
}

/// Random, in the usual form.
std::string newUuid()
{
    std::random_device source;
    std::string text;
    for (int group = 0; group < 8; ++group) {
        unsigned bits = source() & 0xffffU;
        if (group == 3) {
            bits = (bits & 0x0fffU) | 0x4000U; // version: random
        } else if (group == 4) {
            bits = (bits & 0x3fffU) | 0x8000U; // variant
        }
        char digits[6];
        bool const dash = group >= 2 && group <= 5;
        std::snprintf(digits, sizeof digits, dash ? "-%04x" : "%04x", bits);
        text += digits;
    }
    return text;
}

} // namespace

AnyMap completeConfiguration(std::unordered_map<std::string, Any> const& given)
{
    AnyMap properties(given); // of the type UNORDERED_MAP
    properties[Constants::FRAMEWORK_VERSION] = std::string(US_FRAMEWORK_VERSION_STR);
    properties[Constants::FRAMEWORK_VENDOR] = std::string("CppMicroServices");
    properties[Constants::FRAMEWORK_THREADING_SUPPORT] = Constants::FRAMEWORK_THREADING_MULTI;
    properties.emplace(Constants::FRAMEWORK_WORKING_DIR, currentFolder());
    properties.emplace(Constants::FRAMEWORK_STORAGE, std::string("fwdir"));
    properties.emplace(Constants::FRAMEWORK_LOG, false);
    // Who does not care finds the documented default; see loadOptionsIn().
    properties.emplace(Constants::LIBRARY_LOAD_OPTIONS, static_cast<int>(RTLD_LAZY));
    properties.erase(Constants::FRAMEWORK_UUID); // each run gets one, and never a given one
    return properties;
}

AnyMap withNewUuid(AnyMap properties)
{
    properties[Constants::FRAMEWORK_UUID] = newUuid();
    return properties;
}

int loadOptionsIn(std::unordered_map<std::string, Any> const& given)
{
    auto const* const options = valueIn<int>(given, Constants::LIBRARY_LOAD_OPTIONS);
    return options != nullptr ? *options : RTLD_NOW;
}

bool loadOptionsAreUsable(AnyMap const& properties)
{
    return valueIn<int>(properties, Constants::LIBRARY_LOAD_OPTIONS) != nullptr;
}

bool logsIn(AnyMap const& properties)
{
    return any_cast<bool>(properties.at(Constants::FRAMEWORK_LOG));
}

std::function<bool(Bundle const&)> validationIn(AnyMap const& properties)
{
    auto const* const validation = valueIn<Validation>(properties, Constants::FRAMEWORK_BUNDLE_VALIDATION_FUNC);
    return validation != nullptr ? *validation : Validation();
}

void checkValidation(AnyMap const& properties)
{
    auto const found = properties.find(Constants::FRAMEWORK_BUNDLE_VALIDATION_FUNC);
    if (found != properties.cend()) {
        (void)ref_any_cast<Validation>(found->second);
    }
}

BundleIdentity systemBundleIdentity()
{
    std::string const version = US_FRAMEWORK_VERSION_STR;
    AnyMap headers(any_map::UNORDERED_MAP_CASEINSENSITIVE_KEYS);
    headers.emplace(Constants::BUNDLE_SYMBOLICNAME, Constants::SYSTEM_BUNDLE_SYMBOLICNAME);
    headers.emplace(Constants::BUNDLE_VERSION, version);
    headers.emplace(Constants::BUNDLE_NAME, Constants::SYSTEM_BUNDLE_LOCATION);
    headers.emplace(Constants::BUNDLE_VENDOR, std::string("C++ Micro Services"));
    headers.emplace(Constants::BUNDLE_DESCRIPTION, std::string("C++ Micro Services System Bundle"));
    headers.emplace(Constants::BUNDLE_MANIFESTVERSION, std::string("2"));
    return {0, Constants::SYSTEM_BUNDLE_SYMBOLICNAME, Constants::SYSTEM_BUNDLE_LOCATION, BundleVersion(version),
            std::move(headers)};
}

} // namespace cppmicroservices::detail::core
