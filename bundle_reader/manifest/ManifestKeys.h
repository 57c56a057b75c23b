#pragma once

#include <array>
#include <string_view>

/// The keys of a manifest. Frameworks find them whatever the case of their ASCII letters.
namespace ostrel::bundle_reader::keys {

inline constexpr std::string_view activationPolicy = "bundle.activation_policy";
inline constexpr std::string_view activator = "bundle.activator";
inline constexpr std::string_view category = "bundle.category";
inline constexpr std::string_view contactAddress = "bundle.contact_address";
inline constexpr std::string_view copyright = "bundle.copyright";
inline constexpr std::string_view description = "bundle.description";
inline constexpr std::string_view docUrl = "bundle.doc_url";
inline constexpr std::string_view localization = "bundle.localization";
inline constexpr std::string_view manifestVersion = "bundle.manifest_version";
inline constexpr std::string_view bundleName = "bundle.name";
inline constexpr std::string_view symbolicName = "bundle.symbolic_name";
inline constexpr std::string_view vendor = "bundle.vendor";
inline constexpr std::string_view version = "bundle.version";

/// What frameworks know; all keys of theirs begin like this.
inline constexpr std::string_view ofFrameworks = "bundle.";
inline constexpr std::array framework{activationPolicy, activator, category,     contactAddress,  copyright,
                                      description,      docUrl,    localization, manifestVersion, bundleName,
                                      symbolicName,     vendor,    version};

/// What the container looks for: "zq" holds a map with the other two, "component" one with a "name".
inline constexpr std::string_view container = "zq";
inline constexpr std::string_view component = "component";
inline constexpr std::string_view componentName = "name";
inline constexpr std::string_view filters = "ostrelFilters";
inline constexpr std::array ofContainer{component, filters};

} // namespace ostrel::bundle_reader::keys
